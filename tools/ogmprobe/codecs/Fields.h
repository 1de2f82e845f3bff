// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

namespace ogmprobe {

/**
 * Returns the number of `width` bytes at the offset, the least significant first. Bytes past the
 * end are 0.
 */
inline uint64_t numberAt(std::span<const uint8_t> bytes, size_t offset, size_t width) {
    uint64_t value = 0;
    for (size_t i = width; i-- > 0;) {
        value = value << 8 | (offset + i < bytes.size() ? bytes[offset + i] : 0U);
    }
    return value;
}

/** Returns whether the whole text is at the offset. */
inline bool holdsAt(std::span<const uint8_t> bytes, size_t offset, std::string_view text) {
    return bytes.size() >= offset + text.size() &&
           std::memcmp(bytes.data() + offset, text.data(), text.size()) == 0;
}

}  // namespace ogmprobe
