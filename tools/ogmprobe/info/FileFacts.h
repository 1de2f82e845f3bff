// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "codecs/Comments.h"
#include "codecs/VideoFacts.h"
#include "explain/OggFile.h"
#include "info/AudioDetails.h"
#include "info/AudioFacts.h"
#include "records/Records.h"

namespace ogmprobe {

/** What the file itself says about one of its streams, independent of the plug-in. */
struct StreamFacts {
    uint32_t serial = 0;
    /** "video", "audio", "text", "Vorbis", "Theora", "unknown". */
    std::string kind;
    /** FOURCC or format tag; empty for other kinds. */
    std::string codec;
    std::optional<uint64_t> track;
    /** In a few words; empty for a stream with a track, and if nothing is known about tracks. */
    std::string whyNoTrack;
    std::optional<uint16_t> bitsPerSample;
    /** Without headers. */
    uint64_t packets = 0;
    uint64_t bytes = 0;
    /** Percentage of the file's bytes that the stream's packets take. */
    double percentOfFile = 0;
    /** The last time on a page. */
    std::optional<int64_t> durationUs;
    /** Bits per second over the whole duration, and in the second with the most. */
    std::optional<double> averageBitrate;
    std::optional<double> largestBitrate;
    /** Of video: pictures per second by the stream header. */
    std::optional<double> frameRate;
    std::optional<VideoFacts> video;
    std::optional<AudioFacts> audio;
    AudioDetails audioDetails;
    Comments comments;
};

/** What the file itself says. */
struct FileFacts {
    /** The longest duration of its streams. */
    std::optional<int64_t> durationUs;
    /** Bits per second of the whole file. */
    std::optional<double> bitrate;
    /** In the order of the file. */
    std::vector<StreamFacts> streams;
    std::vector<Chapter> chapters;

    uint64_t streamsWithoutTrack() const;
};

/** What the plug-in's log lines say about the tracks of streams. */
struct TrackSources {
    uint64_t tracks = 0;
    /** The streams that were accepted, one after the other, and the codecs that were not. */
    std::vector<uint32_t> accepted;
    bool refusedVideo = false;
    bool refusedAudio = false;

    void add(const LogLine& line);
};

/** Throws `ProbeError`. A file without an Ogg page has no streams. */
FileFacts fileFacts(const std::string& path, const TrackSources& sources);

}  // namespace ogmprobe
