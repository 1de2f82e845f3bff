// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ogmprobe {

/** Two places with the same element. */
struct Pairing {
    size_t a = 0;
    size_t b = 0;
};

/**
 * Returns a long common subsequence: the longest one unless thousands of numbers in a row differ.
 * Myers, "An O(ND) difference algorithm and its variations".
 */
std::vector<Pairing> commonSequence(std::span<const uint32_t> a, std::span<const uint32_t> b);

}  // namespace ogmprobe
