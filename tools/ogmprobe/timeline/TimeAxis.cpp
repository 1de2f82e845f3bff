// SPDX-License-Identifier: Apache-2.0
#include "TimeAxis.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "text/TimeUnits.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kUsPerMinute = 60 * kUsPerSecond;
constexpr double kUsPerHour = 60 * kUsPerMinute;

// Keeps the bars at both ends away from the frame.
constexpr double kMargin = 0.006;

constexpr auto kStepsUs = std::to_array<double>({1e3,
                                                 2e3,
                                                 5e3,
                                                 1e4,
                                                 2e4,
                                                 5e4,
                                                 1e5,
                                                 2e5,
                                                 5e5,
                                                 1 * kUsPerSecond,
                                                 2 * kUsPerSecond,
                                                 5 * kUsPerSecond,
                                                 10 * kUsPerSecond,
                                                 15 * kUsPerSecond,
                                                 30 * kUsPerSecond,
                                                 1 * kUsPerMinute,
                                                 2 * kUsPerMinute,
                                                 5 * kUsPerMinute,
                                                 10 * kUsPerMinute,
                                                 15 * kUsPerMinute,
                                                 30 * kUsPerMinute,
                                                 1 * kUsPerHour,
                                                 2 * kUsPerHour,
                                                 5 * kUsPerHour,
                                                 10 * kUsPerHour});

double stepUs(double lengthUs, int most) {
    const double leastUs = lengthUs / most;
    const auto* step = std::lower_bound(kStepsUs.begin(), kStepsUs.end(), leastUs);
    if (step != kStepsUs.end()) {
        return *step;
    }
    double beyondUs = kStepsUs.back();
    while (beyondUs < leastUs) {
        beyondUs *= 10;
    }
    return beyondUs;
}

int decimalsOf(double stepUs) {
    int decimals = 0;
    for (double unitUs = kUsPerSecond; stepUs < unitUs * 0.999; unitUs /= 10) {
        ++decimals;
    }
    return decimals;
}

}  // namespace

TimeAxis::TimeAxis(const TimeSpan& span) {
    const auto firstUs = static_cast<double>(span.firstUs);
    // A single time is at the beginning of a second.
    const double coveredUs = static_cast<double>(span.lastUs) - firstUs;
    const double shownUs = coveredUs > 0 ? coveredUs : kUsPerSecond;
    mStartUs = firstUs - kMargin * shownUs;
    mLengthUs = shownUs * (1 + 2 * kMargin);
}

std::span<const double> tickStepsUs() {
    return kStepsUs;
}

std::vector<Tick> ticksOf(const TimeAxis& axis, int most) {
    const double step = stepUs(axis.lengthUs(), most);
    const double endUs = axis.startUs() + axis.lengthUs();
    const double first = std::ceil(axis.startUs() / step);
    std::vector<Tick> ticks;
    for (int i = 0; i <= most && (first + i) * step <= endUs; ++i) {
        const double timeUs = (first + i) * step;
        ticks.push_back({timeUs, tickLabel(timeUs, step)});
    }
    return ticks;
}

std::string tickLabel(double timeUs, double stepUs) {
    const int decimals = decimalsOf(stepUs);
    const double scale = std::pow(10, decimals);
    // Rounded first, so that there are never 60 seconds.
    const double seconds = std::round(std::abs(timeUs) / kUsPerSecond * scale) / scale;
    const double minutes = std::floor(seconds / 60);
    const double hours = std::floor(minutes / 60);
    std::string text = timeUs < 0 && seconds > 0 ? "-" : "";
    text += hours > 0 ? fmt::format("{:.0f}:{:02.0f}", hours, minutes - hours * 60)
                      : fmt::format("{:.0f}", minutes);
    const int width = decimals > 0 ? decimals + 3 : 2;
    return text + fmt::format(":{:0{}.{}f}", seconds - minutes * 60, width, decimals);
}

}  // namespace ogmprobe::timeline
