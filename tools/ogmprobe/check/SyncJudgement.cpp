// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "check/Judgement.h"
#include "check/Thresholds.h"
#include "sync/FileSync.h"
#include "text/TimeText.h"
#include "text/TimeUnits.h"

namespace ogmprobe::check {
namespace {

/**
 * The audio points without those that have the same time as the point before. All packets on a page
 * have one time, and players continue from it by counting samples. So the times of audio are only
 * meaningful where they change.
 */
TrackSync whereTimesChange(TrackSync audio) {
    std::optional<int64_t> before;
    for (SyncPoint& point : audio.points) {
        if (point.pluginUs && point.pluginUs == before) {
            point.lateUs.reset();
        }
        before = point.pluginUs ? point.pluginUs : before;
    }
    return audio;
}

/** Only the first picture of each page, for the same reason. */
TrackSync firstOnPages(TrackSync video, const OggFile& file) {
    std::optional<size_t> before;
    for (SyncPoint& point : video.points) {
        const auto page = file.pageAt(static_cast<int64_t>(point.offset));
        if (page == before) {
            point.lateUs.reset();
        }
        before = page;
    }
    return video;
}

void addReason(const TrackSync& about, Reason reason, CheckedFile& file) {
    const auto track = std::find_if(
            file.tracks.begin(), file.tracks.end(),
            [&about](const CheckedTrack& checked) { return checked.index == about.track; });
    if (track != file.tracks.end()) {
        track->reasons.push_back(std::move(reason));
    }
}

double distanceAt(const PairPoint& point) {
    return std::abs(static_cast<double>(point.lateUs.certainUs()));
}

Reason apart(const TrackSync& audio, const TrackSync& video, const PairPoint& at) {
    const SyncPoint& heard = audio.points[at.audioPoint];
    // The lowest number's magnitude does not fit its type.
    const int64_t lateUs = std::max(at.lateUs.certainUs(), -std::numeric_limits<int64_t>::max());
    return reasonOf(
            "audio-against-video",
            fmt::format(
                    "the sound is up to {} s too {} against the picture of track {}, at {} s by "
                    "the pages; more than {} s is noticeable",
                    secondsText(lateUs < 0 ? -lateUs : lateUs), lateUs < 0 ? "early" : "late",
                    video.track,
                    secondsText(heard.pageUs ? std::optional(heard.pageUs->middleUs())
                                             : std::nullopt),
                    secondsText(threshold::kAudioAgainstVideoUs)),
            static_cast<double>(lateUs), static_cast<double>(threshold::kAudioAgainstVideoUs));
}

void judgePair(const TrackSync& audio, const TrackSync& video, CheckedFile& file) {
    const std::vector<PairPoint> points = pairPointsOf(audio, video);
    const auto worst = std::max_element(
            points.begin(), points.end(),
            [](const PairPoint& a, const PairPoint& b) { return distanceAt(a) < distanceAt(b); });
    if (worst != points.end() &&
        distanceAt(*worst) > static_cast<double>(threshold::kAudioAgainstVideoUs)) {
        addReason(audio, apart(audio, video, *worst), file);
    }
}

/** How far the times of an audio stream's pages drift from its samples. */
double contentDriftUs(const TrackSync& audio) {
    std::optional<TimeRange> first;
    std::optional<TimeRange> last;
    for (const SyncPoint& point : audio.points) {
        first = first ? first : point.pageUs;
        last = point.pageUs ? point.pageUs : last;
    }
    const double spanUs =
            last ? static_cast<double>(nearestDifferenceUs(last->middleUs(), first->middleUs()))
                 : 0;
    return audio.contentDriftPpm.value_or(0) * spanUs / static_cast<double>(kUsPerSecond);
}

void judgeDrift(const TrackSync& audio, CheckedFile& file) {
    const double driftUs = contentDriftUs(audio);
    if (std::abs(driftUs) <= static_cast<double>(threshold::kAudioAgainstVideoUs)) {
        return;
    }
    const std::string text = fmt::format(
            "the times of the sound's pages run away from its samples, by {:.0f} ppm and {:.3f} s "
            "over the file; more than {} s is noticeable",
            *audio.contentDriftPpm, driftUs / static_cast<double>(kUsPerSecond),
            secondsText(threshold::kAudioAgainstVideoUs));
    addReason(audio,
              reasonOf("audio-drifts", text, driftUs,
                       static_cast<double>(threshold::kAudioAgainstVideoUs)),
              file);
}

}  // namespace

void judgeSync(const Explanation& explanation, CheckedFile& file) {
    const FileSync sync =
            fileSyncOf(explanation.file(), explanation.trace(), explanation.accounts());
    for (const TrackSync& track : sync.tracks) {
        judgeDrift(track, file);
    }
    for (const PairSync& pair : sync.pairs) {
        judgePair(whereTimesChange(sync.tracks[pair.audio]),
                  firstOnPages(sync.tracks[pair.video], explanation.file()), file);
    }
}

}  // namespace ogmprobe::check
