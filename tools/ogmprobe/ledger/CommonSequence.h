// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ogmprobe {

/** Two places that hold the same. */
struct Pairing {
    size_t a = 0;
    size_t b = 0;
};

/**
 * A long sequence that both have in common, in the order of both: the longest one where they do not
 * differ by thousands of numbers on end. Myers, "An O(ND) difference algorithm and its variations".
 */
std::vector<Pairing> commonSequence(std::span<const uint32_t> a, std::span<const uint32_t> b);

}  // namespace ogmprobe
