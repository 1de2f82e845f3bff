// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <vector>

#include "sync/TrackSync.h"

namespace ogmprobe {

/** The audio's lateness minus the video's at the same time of the file. */
struct PairPoint {
    /** Index of the audio track's point. */
    size_t audioPoint = 0;
    TimeRange lateUs;
};

/** An audio track against a video track: positive if the sound is late, negative if it is early. */
struct PairSync {
    /** Indices into `FileSync::tracks`, not the plug-in's numbers. */
    size_t audio = 0;
    size_t video = 0;
    std::vector<PairPoint> points;
    /** Its indices are those in `points`. */
    Deviation deviation;
};

/**
 * The plug-in's times against those of the file's pages. Used after the file has been played,
 * traced, to its end:
 *
 *     const FileSync sync = fileSyncOf(file, trace, accountsOf(path, file, trace));
 */
struct FileSync {
    /** Streams with a track, in the order of the plug-in's track numbers. */
    std::vector<TrackSync> tracks;
    /** Each audio track, paired with the first video track. */
    std::vector<PairSync> pairs;
};

FileSync fileSyncOf(const OggFile& file, const PluginTrace& trace,
                    const std::map<uint32_t, StreamAccount>& accounts);
/** The same, with known times of the pages. */
FileSync fileSyncOf(const OggFile& file, const PluginTrace& trace,
                    const std::map<uint32_t, StreamAccount>& accounts,
                    const std::map<uint32_t, PageTimes>& times);

/** Compares the points with a difference; `audio` and `video` are from the same file. */
std::vector<PairPoint> pairPointsOf(const TrackSync& audio, const TrackSync& video);

}  // namespace ogmprobe
