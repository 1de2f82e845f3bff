// SPDX-License-Identifier: Apache-2.0
#include "sync/FileSync.h"

#include <algorithm>
#include <optional>

namespace ogmprobe {
namespace {

/** How many pictures on each side are averaged if pictures are stored out of order. */
constexpr size_t kPicturesAround = 4;

/** Up to this the sum is exact. */
constexpr double kMaxMean = 9.0e15;

struct LateAt {
    int64_t timeUs = 0;
    TimeRange lateUs;
};

std::vector<LateAt> lateness(const TrackSync& track) {
    std::vector<LateAt> all;
    for (const SyncPoint& point : track.points) {
        if (point.lateUs) {
            all.push_back({point.pageUs->middleUs(), *point.lateUs});
        }
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const LateAt& a, const LateAt& b) { return a.timeUs < b.timeUs; });
    return all;
}

bool stepsBack(const TrackSync& track) {
    std::optional<int64_t> before;
    for (const SyncPoint& point : track.points) {
        if (point.pluginUs && before && *point.pluginUs < *before) {
            return true;
        }
        before = point.pluginUs ? point.pluginUs : before;
    }
    return false;
}

TimeRange meanOf(const LateAt* first, size_t count) {
    double least = 0;
    double most = 0;
    for (size_t i = 0; i < count; ++i) {
        least += static_cast<double>(first[i].lateUs.leastUs);
        most += static_cast<double>(first[i].lateUs.mostUs);
    }
    const auto part = [count](double sum) {
        return static_cast<int64_t>(
                std::clamp(sum / static_cast<double>(count), -kMaxMean, kMaxMean));
    };
    return {part(least), part(most)};
}

/**
 * Pages have the time at which a picture is stored, the plug-in that at which it is shown. Some
 * pictures are shifted back and others forward by the same amount, so the mean of several does not
 * change.
 */
std::vector<LateAt> smoothed(const std::vector<LateAt>& all) {
    std::vector<LateAt> smooth;
    for (size_t i = 0; i < all.size(); ++i) {
        const size_t from = i - std::min(i, kPicturesAround);
        const size_t end = std::min(i + kPicturesAround + 1, all.size());
        smooth.push_back({all[i].timeUs, meanOf(&all[from], end - from)});
    }
    return smooth;
}

std::vector<LatePoint> latePoints(const TrackSync& audio, const std::vector<PairPoint>& points) {
    std::vector<LatePoint> late;
    for (size_t i = 0; i < points.size(); ++i) {
        late.push_back(
                {i, audio.points[points[i].audioPoint].pageUs->middleUs(), points[i].lateUs});
    }
    return late;
}

/** Pages of audio and video have different lengths, so the difference rises and falls with them. */
std::optional<double> driftBetween(const TrackSync& audio, const TrackSync& video) {
    const auto& ofAudio = audio.deviation.driftPpm;
    const auto& ofVideo = video.deviation.driftPpm;
    return ofAudio && ofVideo ? std::optional(*ofAudio - *ofVideo) : std::nullopt;
}

std::vector<PairSync> pairsOf(const std::vector<TrackSync>& tracks) {
    const auto video = std::find_if(tracks.begin(), tracks.end(), [](const TrackSync& track) {
        return track.kind == TrackKind::kVideo;
    });
    std::vector<PairSync> pairs;
    for (size_t i = 0; i < tracks.size() && video != tracks.end(); ++i) {
        if (tracks[i].kind == TrackKind::kAudio) {
            PairSync pair;
            pair.audio = i;
            pair.video = static_cast<size_t>(video - tracks.begin());
            pair.points = pairPointsOf(tracks[i], *video);
            pair.deviation = deviationOf(latePoints(tracks[i], pair.points));
            pair.deviation.driftPpm = driftBetween(tracks[i], *video);
            pairs.push_back(std::move(pair));
        }
    }
    return pairs;
}

}  // namespace

std::vector<PairPoint> pairPointsOf(const TrackSync& audio, const TrackSync& video) {
    std::vector<LateAt> pictures = lateness(video);
    if (stepsBack(video)) {
        pictures = smoothed(pictures);
    }
    std::vector<PairPoint> points;
    for (size_t i = 0; i < audio.points.size() && !pictures.empty(); ++i) {
        const SyncPoint& heard = audio.points[i];
        if (!heard.lateUs) {
            continue;
        }
        // The picture that is shown at that time.
        auto shown = std::upper_bound(
                pictures.begin(), pictures.end(), heard.pageUs->middleUs(),
                [](int64_t timeUs, const LateAt& picture) { return timeUs < picture.timeUs; });
        shown = shown == pictures.begin() ? shown : shown - 1;
        points.push_back({i, *heard.lateUs - shown->lateUs});
    }
    return points;
}

FileSync fileSyncOf(const OggFile& file, const PluginTrace& trace,
                    const std::map<uint32_t, StreamAccount>& accounts) {
    return fileSyncOf(file, trace, accounts, pageTimesOf(file, accounts));
}

FileSync fileSyncOf(const OggFile& file, const PluginTrace& trace,
                    const std::map<uint32_t, StreamAccount>& accounts,
                    const std::map<uint32_t, PageTimes>& times) {
    FileSync sync;
    for (const auto& [serial, account] : accounts) {
        if (account.ledger.track) {
            sync.tracks.push_back(trackSyncOf(file, account, times.at(serial),
                                              trace.tracks().at(*account.ledger.track)));
        }
    }
    std::sort(sync.tracks.begin(), sync.tracks.end(),
              [](const TrackSync& a, const TrackSync& b) { return a.track < b.track; });
    sync.pairs = pairsOf(sync.tracks);
    return sync;
}

}  // namespace ogmprobe
