// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace ogmprobe {

/** The beginning of every start code of MPEG video and H.264; the code itself follows. */
inline constexpr std::array<uint8_t, 3> kStartCodePrefix = {0x00, 0x00, 0x01};

/**
 * Returns the bytes from the last byte of the first start code whose last byte is within the
 * bounds.
 */
inline std::optional<std::span<const uint8_t>> afterStartCode(std::span<const uint8_t> stream,
                                                              uint8_t first, uint8_t last) {
    auto from = stream.begin();
    while (true) {
        const auto prefix =
                std::search(from, stream.end(), kStartCodePrefix.begin(), kStartCodePrefix.end());
        if (stream.end() - prefix <= static_cast<ptrdiff_t>(kStartCodePrefix.size())) {
            return std::nullopt;
        }
        from = prefix + kStartCodePrefix.size();
        if (*from >= first && *from <= last) {
            return stream.subspan(static_cast<size_t>(from - stream.begin()));
        }
    }
}

}  // namespace ogmprobe
