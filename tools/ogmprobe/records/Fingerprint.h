// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace ogmprobe {

/**
 * Identifies bytes without storing them. Equal beginnings with different rests suggest the same
 * bytes, with some cut off or added.
 */
struct Fingerprint {
    static constexpr size_t kBeginning = 16;

    uint64_t size = 0;
    uint64_t digest = 0;
    std::array<uint8_t, kBeginning> beginning{};

    Fingerprint() = default;
    explicit Fingerprint(std::span<const uint8_t> bytes);

    bool isSame(const Fingerprint& other) const {
        return size == other.size && digest == other.digest;
    }
    bool hasSameBeginning(const Fingerprint& other) const;
};

}  // namespace ogmprobe
