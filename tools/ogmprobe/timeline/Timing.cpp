// SPDX-License-Identifier: Apache-2.0
#include "Timing.h"

#include <algorithm>
#include <numeric>

namespace ogmprobe::timeline {
namespace {

// A single lost packet doubles the distance of its neighbours; times are rounded.
constexpr double kGapFactor = 1.9;
// Pages end before key frames, so some groups are smaller than the distance to the next one.
constexpr size_t kGroupsAround = 2;

std::vector<TimeGroup> groupsOf(const std::vector<PacketPoint>& packets) {
    std::vector<size_t> order(packets.size());
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(), [&packets](size_t left, size_t right) {
        return packets[left].timeUs < packets[right].timeUs;
    });
    std::vector<TimeGroup> groups;
    for (const size_t index : order) {
        const int64_t timeUs = packets[index].timeUs;
        if (groups.empty() || groups.back().timeUs != timeUs) {
            groups.push_back({timeUs, {}});
        }
        groups.back().packets.push_back(index);
    }
    return groups;
}

/** Returns the distance between two groups. The difference may not fit the type of a time. */
double distanceUs(const TimeGroup& group, const TimeGroup& next) {
    return static_cast<double>(next.timeUs) - static_cast<double>(group.timeUs);
}

double usualPacketUs(const std::vector<TimeGroup>& groups) {
    std::vector<double> lengths;
    for (size_t i = 0; i + 1 < groups.size(); ++i) {
        lengths.push_back(distanceUs(groups[i], groups[i + 1]) /
                          static_cast<double>(groups[i].packets.size()));
    }
    if (lengths.empty()) {
        return 0;
    }
    const auto middle = lengths.begin() + static_cast<ptrdiff_t>(lengths.size() / 2);
    std::nth_element(lengths.begin(), middle, lengths.end());
    return *middle;
}

/** Returns the size of the largest group near the distance to the next one. */
double largestAround(const std::vector<TimeGroup>& groups, size_t group) {
    const size_t from = group - std::min(group, kGroupsAround - 1);
    const size_t to = std::min(group + kGroupsAround, groups.size() - 1);
    size_t largest = 0;
    for (size_t i = from; i <= to; ++i) {
        largest = std::max(largest, groups[i].packets.size());
    }
    return static_cast<double>(largest);
}

std::vector<Gap> gapsOf(const std::vector<TimeGroup>& groups, double packetUs) {
    std::vector<Gap> gaps;
    for (size_t i = 0; i + 1 < groups.size(); ++i) {
        const TimeGroup& group = groups[i];
        const TimeGroup& next = groups[i + 1];
        if (distanceUs(group, next) > kGapFactor * largestAround(groups, i) * packetUs) {
            const double lastsUs = static_cast<double>(group.packets.size()) * packetUs;
            gaps.push_back({static_cast<double>(group.timeUs) + lastsUs,
                            static_cast<double>(next.timeUs)});
        }
    }
    return gaps;
}

}  // namespace

Timing timingOf(const std::vector<PacketPoint>& packets) {
    Timing timing;
    timing.groups = groupsOf(packets);
    timing.repeatedTimes = packets.size() - timing.groups.size();
    for (size_t i = 1; i < packets.size(); ++i) {
        if (packets[i].timeUs < packets[i - 1].timeUs) {
            timing.backwardSteps.push_back(i);
        }
    }
    timing.packetUs = usualPacketUs(timing.groups);
    timing.gaps = gapsOf(timing.groups, timing.packetUs);
    return timing;
}

}  // namespace ogmprobe::timeline
