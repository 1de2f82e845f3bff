// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "sync/PageTimes.h"

namespace ogmprobe {

/** A packet or frame with its two times. */
struct SyncPoint {
    /** Index of the unit in the stream's account, and where in the file it begins. */
    size_t unit = 0;
    uint64_t offset = 0;
    std::optional<TimeRange> pageUs;
    /** The number of its buffer in the track, and the plug-in's time. */
    std::optional<size_t> buffer;
    std::optional<int64_t> pluginUs;
    /** The plug-in's time minus the page's; negative if it is early. */
    std::optional<TimeRange> lateUs;
};

/** Differences of times over a file. Indices say where they were found. */
struct Deviation {
    size_t compared = 0;
    /** How many of the compared differences are known exactly. */
    size_t exact = 0;
    /** The medians of the least and the greatest possible differences. */
    std::optional<TimeRange> offsetUs;
    /** Growth of the difference in microseconds per second; nothing if there are too few data. */
    std::optional<double> driftPpm;
    /** Where it is earliest and latest for certain; nothing if it is never early, or late. */
    std::optional<size_t> earliest;
    std::optional<size_t> latest;
    /** The range of all possible differences. */
    std::optional<TimeRange> spreadUs;
};

/** A track against the pages of its stream. */
struct TrackSync {
    uint64_t track = 0;
    uint32_t serial = 0;
    TrackKind kind = TrackKind::kOther;
    GranuleReading reading = GranuleReading::kUnknown;
    bool isReadLikeOthers = false;
    /** The drift of the pages' time against the audio's own; see `PageTimes`. */
    std::optional<double> contentDriftPpm;
    /** All packets or frames of the stream except comments, in the order of the file. */
    std::vector<SyncPoint> points;
    /** Its indices are those in `points`. */
    Deviation deviation;
};

TrackSync trackSyncOf(const OggFile& file, const StreamAccount& account, const PageTimes& times,
                      const PlayedTrack& track);

/** One difference at one time, for `deviationOf`. */
struct LatePoint {
    /** Identifies the point. */
    size_t index = 0;
    int64_t timeUs = 0;
    TimeRange lateUs;
    /** Whether this point is used for the drift. */
    bool showsDrift = true;
};

Deviation deviationOf(const std::vector<LatePoint>& points);

}  // namespace ogmprobe
