// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace ogmprobe {

/**
 * Returns `later` minus `earlier`. Times come from the file and may have any value: a difference
 * that does not fit wraps, as on the device.
 */
constexpr int64_t timeDifferenceUs(int64_t later, int64_t earlier) {
    return static_cast<int64_t>(static_cast<uint64_t>(later) - static_cast<uint64_t>(earlier));
}

/** Returns the `step`-th of `steps` equal parts of a non-negative time, rounded down. */
constexpr int64_t partOfTimeUs(int64_t wholeUs, uint32_t step, uint32_t steps) {
    return wholeUs / steps * step + wholeUs % steps * step / steps;
}

}  // namespace ogmprobe
