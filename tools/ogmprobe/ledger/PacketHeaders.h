// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/** The size of a packet's header, computed from its first byte, the flags. */
namespace ogmprobe {

/** The format's rule: the flags, then a duration; bits 1, 7 and 6 of the flags give its size. */
constexpr uint64_t headerByFormat(uint8_t flags) {
    return 1U + ((flags & 2U) << 1 | flags >> 6);
}

/** The plug-in's rule for audio: bits 1, 0 and 6, and two more bytes. */
constexpr uint64_t headerByPlugin(uint8_t flags) {
    return 3U + ((flags << 1 & 6U) | (flags >> 6 & 1U));
}

}  // namespace ogmprobe
