// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "plugin/FormatEntries.h"

namespace ogmprobe {

/** The contents of one buffer of a track: a packet or an access unit. */
struct Packet {
    int64_t timeUs = 0;
    bool isSync = false;
    std::vector<uint8_t> bytes;
    /** Where in the file the last read had ended when the packet was returned. */
    uint64_t readUpTo = 0;
    /** The buffer's format entries; only if requested. */
    std::vector<FormatEntry> entries = {};
};

}  // namespace ogmprobe
