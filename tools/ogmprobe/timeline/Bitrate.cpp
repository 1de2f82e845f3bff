// SPDX-License-Identifier: Apache-2.0
#include "Bitrate.h"

#include <algorithm>
#include <cmath>

#include "text/TimeUnits.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kMinWindowUs = kUsPerSecond / 2.0;
constexpr double kMaxWindows = 240;

/** The bytes of a lane up to a time. */
class ByteCurve {
  public:
    ByteCurve(const Lane& lane, const Timing& timing) {
        auto gap = timing.gaps.begin();
        for (size_t i = 0; i < timing.groups.size(); ++i) {
            const TimeGroup& group = timing.groups[i];
            const auto timeUs = static_cast<double>(group.timeUs);
            add(timeUs, 0);
            double bytes = 0;
            for (const size_t index : group.packets) {
                bytes += static_cast<double>(lane.packets[index].size);
            }
            const bool isLast = i + 1 == timing.groups.size();
            const double nextUs = isLast ? timeUs + lastsUs(group, timing)
                                         : static_cast<double>(timing.groups[i + 1].timeUs);
            const bool endsInGap = gap != timing.gaps.end() && gap->fromUs < nextUs;
            add(endsInGap ? (gap++)->fromUs : nextUs, bytes);
        }
    }

    double at(double timeUs) const {
        const auto next = std::upper_bound(
                mPoints.begin(), mPoints.end(), timeUs,
                [](double time, const Point& point) { return time < point.timeUs; });
        if (next == mPoints.begin()) {
            return 0;
        }
        const Point& last = *(next - 1);
        if (next == mPoints.end()) {
            return last.bytes;
        }
        const double part = (timeUs - last.timeUs) / (next->timeUs - last.timeUs);
        return last.bytes + part * (next->bytes - last.bytes);
    }

  private:
    struct Point {
        double timeUs = 0;
        double bytes = 0;
    };

    // If all packets have the same time, they last as long as the shortest window.
    static double lastsUs(const TimeGroup& group, const Timing& timing) {
        return timing.packetUs > 0 ? static_cast<double>(group.packets.size()) * timing.packetUs
                                   : kMinWindowUs;
    }

    void add(double timeUs, double bytes) {
        mPoints.push_back({timeUs, bytes + (mPoints.empty() ? 0 : mPoints.back().bytes)});
    }

    std::vector<Point> mPoints;
};

}  // namespace

Bitrate bitrateOf(const Timeline& timeline, const std::vector<Timing>& timings,
                  const TimeSpan& span) {
    Bitrate rate;
    rate.startUs = static_cast<double>(span.firstUs);
    const double lengthUs = static_cast<double>(span.lastUs) - rate.startUs;
    // A shorter last window would show a wrong rate.
    const double windows = std::clamp(std::floor(lengthUs / kMinWindowUs), 1.0, kMaxWindows);
    rate.windowUs = lengthUs > 0 ? lengthUs / windows : kMinWindowUs;
    rate.total.resize(static_cast<size_t>(windows));
    for (size_t i = 0; i < timeline.lanes.size(); ++i) {
        const ByteCurve curve(timeline.lanes[i], timings[i]);
        std::vector<double>& lane = rate.lanes.emplace_back();
        double before = curve.at(rate.startUs);
        for (size_t window = 0; window < rate.total.size(); ++window) {
            const double upTo =
                    curve.at(rate.startUs + static_cast<double>(window + 1) * rate.windowUs);
            lane.push_back((upTo - before) * 8 / rate.windowUs * kUsPerSecond);
            rate.total[window] += lane.back();
            before = upTo;
        }
    }
    rate.highest = *std::max_element(rate.total.begin(), rate.total.end());
    return rate;
}

}  // namespace ogmprobe::timeline
