// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace ogmprobe {

/**
 * `later` minus `earlier`, limited to what fits: times come from the file and may have any value.
 */
constexpr int64_t nearestDifferenceUs(int64_t later, int64_t earlier) {
    int64_t difference = 0;
    if (__builtin_sub_overflow(later, earlier, &difference)) {
        return later < earlier ? std::numeric_limits<int64_t>::min()
                               : std::numeric_limits<int64_t>::max();
    }
    return difference;
}

/** The range of a time, or of a difference of times; both ends are included. */
struct TimeRange {
    int64_t leastUs = 0;
    int64_t mostUs = 0;

    static constexpr TimeRange at(int64_t timeUs) { return {timeUs, timeUs}; }

    constexpr bool isExact() const { return leastUs == mostUs; }
    constexpr int64_t middleUs() const {
        return leastUs +
               static_cast<int64_t>(
                       (static_cast<uint64_t>(mostUs) - static_cast<uint64_t>(leastUs)) / 2);
    }
    /** Returns the value that is nearest to 0; 0 if the range includes it. */
    constexpr int64_t certainUs() const {
        return leastUs > 0 ? leastUs : std::min<int64_t>(mostUs, 0);
    }

    bool operator==(const TimeRange&) const = default;
};

/** Returns the range of `a` minus `b`. */
constexpr TimeRange operator-(const TimeRange& a, const TimeRange& b) {
    return {nearestDifferenceUs(a.leastUs, b.mostUs), nearestDifferenceUs(a.mostUs, b.leastUs)};
}

}  // namespace ogmprobe
