// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

#include "explain/PluginTrace.h"
#include "ledger/Delivery.h"
#include "ledger/Ledger.h"

namespace ogmprobe {

/** A stream's ledger, and what it is made of. */
struct StreamAccount {
    Ledger ledger;
    UnitKind kind;
    StreamPackets packets;
    std::vector<FileUnit> units;
    Delivery delivery;
};

/** The bits per sample of the stream header that the plug-in accepted last hold for all tracks. */
uint16_t bitsPerSampleTaken(const OggFile& file, const PluginTrace& trace);

/** The accounts of all streams of the file, by their serial numbers. Throws `ProbeError`. */
std::map<uint32_t, StreamAccount> accountsOf(const std::string& path, const OggFile& file,
                                             const PluginTrace& trace);

}  // namespace ogmprobe
