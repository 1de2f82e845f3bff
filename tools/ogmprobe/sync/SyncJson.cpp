// SPDX-License-Identifier: Apache-2.0
#include "sync/SyncText.h"
#include "text/Json.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

ordered_json toJson(const std::optional<TimeRange>& range) {
    return range ? ordered_json{{"least", range->leastUs}, {"most", range->mostUs}}
                 : ordered_json(nullptr);
}

/** A packet or frame at which a difference was found. */
ordered_json placeJson(const SyncPoint& point, const TimeRange& lateUs) {
    return {{"late_us", toJson(lateUs)},
            {"page_us", toJson(point.pageUs)},
            {"number", orNull(point.buffer)},
            {"offset", point.offset}};
}

/** `place` converts an index to a place. */
template <typename Place>
void addDeviation(const Deviation& deviation, const Place& place, ordered_json& json) {
    json["compared"] = deviation.compared;
    json["exact"] = deviation.exact;
    json["offset_us"] = toJson(deviation.offsetUs);
    json["drift_ppm"] = orNull(deviation.driftPpm);
    json["spread_us"] = toJson(deviation.spreadUs);
    json["earliest"] = deviation.earliest ? place(*deviation.earliest) : ordered_json(nullptr);
    json["latest"] = deviation.latest ? place(*deviation.latest) : ordered_json(nullptr);
}

ordered_json toJson(const SyncPoint& point) {
    return {{"number", orNull(point.buffer)},
            {"offset", point.offset},
            {"page_us", toJson(point.pageUs)},
            {"time_us", orNull(point.pluginUs)},
            {"late_us", toJson(point.lateUs)}};
}

ordered_json toJson(const TrackSync& track) {
    auto packets = ordered_json::array();
    for (const SyncPoint& point : track.points) {
        packets.push_back(toJson(point));
    }
    ordered_json json = {{"track", track.track},
                         {"serial", track.serial},
                         {"kind", kindName(track.kind)},
                         {"granules_are", readingName(track.reading)},
                         {"read_like_others", track.isReadLikeOthers},
                         {"content_drift_ppm", orNull(track.contentDriftPpm)}};
    addDeviation(
            track.deviation,
            [&track](size_t index) {
                return placeJson(track.points[index], *track.points[index].lateUs);
            },
            json);
    json["packets"] = std::move(packets);
    return json;
}

ordered_json toJson(const FileSync& sync, const PairSync& pair) {
    const TrackSync& audio = sync.tracks[pair.audio];
    ordered_json json = {{"audio", audio.track}, {"video", sync.tracks[pair.video].track}};
    addDeviation(
            pair.deviation,
            [&](size_t index) {
                const PairPoint& point = pair.points[index];
                return placeJson(audio.points[point.audioPoint], point.lateUs);
            },
            json);
    return json;
}

}  // namespace

ordered_json tracksJson(const FileSync& sync) {
    auto tracks = ordered_json::array();
    for (const TrackSync& track : sync.tracks) {
        tracks.push_back(toJson(track));
    }
    return tracks;
}

ordered_json pairsJson(const FileSync& sync) {
    auto pairs = ordered_json::array();
    for (const PairSync& pair : sync.pairs) {
        pairs.push_back(toJson(sync, pair));
    }
    return pairs;
}

}  // namespace ogmprobe
