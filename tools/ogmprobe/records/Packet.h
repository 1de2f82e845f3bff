// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "plugin/FormatEntries.h"

namespace ogmprobe {

/** What a track gave in one buffer: a packet or an access unit. */
struct Packet {
    int64_t timeUs = 0;
    bool isSync = false;
    std::vector<uint8_t> bytes;
    /** Where in the file the last read had ended when the packet came out. */
    uint64_t readUpTo = 0;
    /** What the buffer carries beside its bytes; only where that is wanted. */
    std::vector<FormatEntry> entries = {};
};

}  // namespace ogmprobe
