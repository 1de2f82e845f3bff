// SPDX-License-Identifier: Apache-2.0
#include "Chart.h"

#include <fmt/core.h>

#include <algorithm>
#include <map>

namespace ogmprobe::timeline {
namespace {

// The number of colours that the style sheet has for each kind.
constexpr int kColoursOfAKind = 4;

TimeSpan shownSpan(const Timeline& timeline) {
    return spanOf(timeline).value_or(TimeSpan{0, timeline.file.durationUs.value_or(0)});
}

std::vector<std::string> classesOf(const std::vector<Lane>& lanes) {
    std::map<TrackKind, int> counts;
    std::vector<std::string> classes;
    for (const Lane& lane : lanes) {
        const int number = counts[lane.track.kind]++ % kColoursOfAKind;
        classes.push_back(fmt::format("{}{}", kindName(lane.track.kind), number));
    }
    return classes;
}

}  // namespace

Chart::Chart(const Timeline& shown)
    : timeline(shown),
      span(shownSpan(shown)),
      axis(span),
      detail(detailOf(shown)),
      trackClasses(classesOf(shown.lanes)) {
    for (const Lane& lane : shown.lanes) {
        timings.push_back(timingOf(lane.packets));
        bars.push_back(barsOf(lane, timings.back(), axis, detail));
    }
    bitrate = bitrateOf(shown, timings, span);
}

bool marksSyncs(const Lane& lane) {
    const auto syncs = std::count_if(lane.packets.begin(), lane.packets.end(),
                                     [](const PacketPoint& packet) { return packet.isSync; });
    return syncs > 0 && static_cast<size_t>(syncs) * 2 <= lane.packets.size();
}

}  // namespace ogmprobe::timeline
