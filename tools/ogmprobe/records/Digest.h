// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

namespace ogmprobe {

/** FNV-1a with 64 bits: equal buffers have equal digests; no protection against intent. */
constexpr uint64_t fnv1a64(std::span<const uint8_t> bytes) {
    constexpr uint64_t kOffsetBasis = 0xcbf29ce484222325;
    constexpr uint64_t kPrime = 0x100000001b3;
    uint64_t digest = kOffsetBasis;
    for (const uint8_t byte : bytes) {
        digest = (digest ^ byte) * kPrime;
    }
    return digest;
}

}  // namespace ogmprobe
