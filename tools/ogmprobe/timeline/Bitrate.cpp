// SPDX-License-Identifier: Apache-2.0
#include "Bitrate.h"

#include <algorithm>
#include <cmath>

#include "text/TimeUnits.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kLeastWindowUs = kUsPerSecond / 2.0;
constexpr double kMostWindows = 240;

size_t windowOf(const PacketPoint& packet, const Bitrate& rate) {
    const double window = (static_cast<double>(packet.timeUs) - rate.startUs) / rate.windowUs;
    return std::min(static_cast<size_t>(window), rate.total.size() - 1);
}

}  // namespace

Bitrate bitrateOf(const Timeline& timeline, const TimeSpan& span) {
    Bitrate rate;
    rate.startUs = static_cast<double>(span.firstUs);
    const double lengthUs = static_cast<double>(span.lastUs) - rate.startUs;
    // A last window that is cut short would show a rate that the file does not have.
    const double windows = std::clamp(std::floor(lengthUs / kLeastWindowUs), 1.0, kMostWindows);
    rate.windowUs = lengthUs > 0 ? lengthUs / windows : kLeastWindowUs;
    rate.total.resize(static_cast<size_t>(windows));
    for (const Lane& lane : timeline.lanes) {
        std::vector<double>& bits = rate.lanes.emplace_back(rate.total.size());
        for (const PacketPoint& packet : lane.packets) {
            const size_t window = windowOf(packet, rate);
            const double added =
                    static_cast<double>(packet.size) * 8 / rate.windowUs * kUsPerSecond;
            bits[window] += added;
            rate.total[window] += added;
        }
    }
    rate.highest = *std::max_element(rate.total.begin(), rate.total.end());
    return rate;
}

}  // namespace ogmprobe::timeline
