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

/** Facts about a stream from the file itself, without the plug-in. */
struct StreamFacts {
    uint32_t serial = 0;
    /** "video", "audio", "text", "Vorbis", "Theora", "unknown". */
    std::string kind;
    /** FOURCC or format tag; empty for other kinds. */
    std::string codec;
    std::optional<uint64_t> track;
    /** Why it has no track; empty if it has one, and if nothing is known about tracks. */
    std::string whyNoTrack;
    std::optional<uint16_t> bitsPerSample;
    /** Number of packets, without headers. */
    uint64_t packets = 0;
    uint64_t bytes = 0;
    /** Percentage of the file's bytes that the stream's packets take. */
    double percentOfFile = 0;
    /** The last time on a page. */
    std::optional<int64_t> durationUs;
    /** Bits per second over the whole duration, and in the second with the most. */
    std::optional<double> averageBitrate;
    std::optional<double> largestBitrate;
    /** Only for video: pictures per second, from the stream header. */
    std::optional<double> frameRate;
    std::optional<VideoFacts> video;
    std::optional<AudioFacts> audio;
    AudioDetails audioDetails;
    Comments comments;
};

/** Facts from the file itself. */
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

/** Facts about the tracks of streams, from the plug-in's log lines. */
struct TrackSources {
    uint64_t tracks = 0;
    /** The accepted streams, in order, and the refused codecs. */
    std::vector<uint32_t> accepted;
    bool refusedVideo = false;
    bool refusedAudio = false;

    void add(const LogLine& line);
};

/** Throws `ProbeError`. A file without an Ogg page has no streams. */
FileFacts fileFacts(const std::string& path, const TrackSources& sources);

}  // namespace ogmprobe
