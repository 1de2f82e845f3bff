// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/** How many bytes a packet's header has, by its first byte, the flags. */
namespace ogmprobe {

/** The format's rule: the flags, then as many bytes of a duration as their bits 1, 7 and 6 say. */
constexpr uint64_t headerByFormat(uint8_t flags) {
    return 1U + ((flags & 2U) << 1 | flags >> 6);
}

/** The plug-in's rule for audio takes bits 1, 0 and 6, and two bytes more. */
constexpr uint64_t headerByPlugin(uint8_t flags) {
    return 3U + ((flags << 1 & 6U) | (flags >> 6 & 1U));
}

}  // namespace ogmprobe
