// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

namespace ogmprobe {

/** The digest of no bytes. */
inline constexpr uint64_t kEmptyDigest = 0xcbf29ce484222325;

/**
 * Returns the 64-bit FNV-1a digest, continued from `digest`, that of the bytes before. Equal
 * buffers have equal digests. It does not protect against deliberate collisions.
 */
constexpr uint64_t fnv1a64(std::span<const uint8_t> bytes, uint64_t digest = kEmptyDigest) {
    constexpr uint64_t kPrime = 0x100000001b3;
    for (const uint8_t byte : bytes) {
        digest = (digest ^ byte) * kPrime;
    }
    return digest;
}

}  // namespace ogmprobe
