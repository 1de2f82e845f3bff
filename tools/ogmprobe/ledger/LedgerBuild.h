// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

#include "explain/PluginTrace.h"
#include "ledger/Delivery.h"
#include "ledger/FalseFrames.h"
#include "ledger/Ledger.h"

namespace ogmprobe {

/** A stream's ledger and the data that it is made from. */
struct StreamAccount {
    Ledger ledger;
    UnitKind kind;
    StreamPackets packets;
    std::vector<FileUnit> units;
    Delivery delivery;
    /** Of the foreign buffers of a stream of frames. */
    FalseFrames falseFrames;
};

/**
 * Returns the bits per sample of the stream header that the plug-in accepted last; they apply to
 * all tracks.
 */
uint16_t bitsPerSampleTaken(const OggFile& file, const PluginTrace& trace);

/** Returns the accounts of all streams of the file, by serial number. Throws `ProbeError`. */
std::map<uint32_t, StreamAccount> accountsOf(const std::string& path, const OggFile& file,
                                             const PluginTrace& trace);

}  // namespace ogmprobe
