// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include "compare/Difference.h"
#include "text/Json.h"
#include "text/TextTable.h"

namespace ogmprobe {

std::string tracksText(const std::vector<TrackComparison>& tracks, bool color) {
    if (tracks.empty()) {
        return "";
    }
    constexpr auto kRight = TextTable::Align::kRight;
    TextTable table({{"Track", kRight},
                     {"MIME type"},
                     {"Packets in A", kRight},
                     {"in B", kRight},
                     {"Only in A", kRight},
                     {"Only in B", kRight},
                     {"First that differs", kRight}});
    for (const TrackComparison& track : tracks) {
        table.add({fmt::format("{}", track.track), track.mime, fmt::format("{}", track.packetsA),
                   fmt::format("{}", track.packetsB), fmt::format("{}", track.onlyInA),
                   fmt::format("{}", track.onlyInB),
                   track.firstDifference ? fmt::format("{}", *track.firstDifference) : "-"});
    }
    return table.text("", color);
}

nlohmann::ordered_json tracksJson(const std::vector<TrackComparison>& tracks) {
    auto all = nlohmann::ordered_json::array();
    for (const TrackComparison& track : tracks) {
        all.push_back({{"track", track.track},
                       {"mime", track.mime},
                       {"packets", {{"a", track.packetsA}, {"b", track.packetsB}}},
                       {"only_in", {{"a", track.onlyInA}, {"b", track.onlyInB}}},
                       {"first_difference", orNull(track.firstDifference)}});
    }
    return all;
}

}  // namespace ogmprobe
