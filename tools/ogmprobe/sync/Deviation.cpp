// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "sync/TrackSync.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

/** With fewer points, or a shorter time, a drift would be mostly chance. */
constexpr size_t kMinPoints = 8;
constexpr int64_t kMinSpanUs = 2 * kUsPerSecond;

template <typename T>
T medianOf(std::vector<T> values) {
    const auto middle = values.begin() + static_cast<ptrdiff_t>((values.size() - 1) / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/**
 * The median of the slopes between points that are half the data apart. Single outliers do not
 * change it (after Theil and Sen).
 */
std::optional<double> driftOf(const std::vector<LatePoint>& points) {
    std::vector<LatePoint> chosen;
    std::copy_if(points.begin(), points.end(), std::back_inserter(chosen),
                 [](const LatePoint& point) { return point.showsDrift; });
    if (chosen.size() < kMinPoints) {
        return std::nullopt;
    }
    const size_t half = chosen.size() / 2;
    std::vector<double> slopes;
    for (size_t i = 0; i + half < chosen.size(); ++i) {
        const LatePoint& from = chosen[i];
        const LatePoint& to = chosen[i + half];
        if (nearestDifferenceUs(to.timeUs, from.timeUs) >= kMinSpanUs / 2) {
            const double rise = static_cast<double>(to.lateUs.middleUs()) -
                                static_cast<double>(from.lateUs.middleUs());
            slopes.push_back(rise * static_cast<double>(kUsPerSecond) /
                             static_cast<double>(to.timeUs - from.timeUs));
        }
    }
    return slopes.empty() ? std::nullopt : std::optional(medianOf(std::move(slopes)));
}

TimeRange medianRange(const std::vector<LatePoint>& points) {
    std::vector<int64_t> least;
    std::vector<int64_t> most;
    for (const LatePoint& point : points) {
        least.push_back(point.lateUs.leastUs);
        most.push_back(point.lateUs.mostUs);
    }
    return {medianOf(std::move(least)), medianOf(std::move(most))};
}

}  // namespace

Deviation deviationOf(const std::vector<LatePoint>& points) {
    Deviation deviation;
    deviation.compared = points.size();
    if (points.empty()) {
        return deviation;
    }
    deviation.offsetUs = medianRange(points);
    deviation.driftPpm = driftOf(points);
    TimeRange spread = points.front().lateUs;
    TimeRange worst;
    for (const LatePoint& point : points) {
        const TimeRange& late = point.lateUs;
        deviation.exact += late.isExact() ? 1 : 0;
        spread = {std::min(spread.leastUs, late.leastUs), std::max(spread.mostUs, late.mostUs)};
        if (late.certainUs() < worst.leastUs) {
            worst.leastUs = late.certainUs();
            deviation.earliest = point.index;
        } else if (late.certainUs() > worst.mostUs) {
            worst.mostUs = late.certainUs();
            deviation.latest = point.index;
        }
    }
    deviation.spreadUs = spread;
    return deviation;
}

}  // namespace ogmprobe
