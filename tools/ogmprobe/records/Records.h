// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "ExitCode.h"
#include "plugin/PluginFunction.h"
#include "plugin/TrackDescription.h"
#include "records/Packet.h"

/**
 * The results of a job (see Job.h), in the order in which they happen. Commands depend only on
 * these records, not on where the plug-in runs.
 *
 * Tracks are named by their index in the file.
 */
namespace ogmprobe {

/** The file is open. */
struct FileOpened {
    /** The plug-in's name, from its definition. */
    std::string extractor;
    std::string mime;
    /** 0 where the plug-in does not know it. */
    std::optional<int64_t> durationUs;
    uint64_t trackCount = 0;
    uint64_t sizeBytes = 0;
    /** All entries of the container's format. */
    std::vector<FormatEntry> entries = {};
};

/** A track in the file's list of tracks. */
struct TrackListed {
    TrackDescription track;
};

/** A track is ready to be read. The description is what configures a decoder. */
struct TrackStarted {
    TrackDescription track;
};

/** All requested tracks are started: packets follow. */
struct PlaybackReady {
    uint64_t trackCount = 0;
};

/** The packets that follow were read after this seek. */
struct SeekBegun {
    int64_t targetUs = 0;
};

/** The packets of all tracks are in the order of their times. */
struct PacketPlayed {
    uint64_t track = 0;
    Packet packet;
    /**
     * Time of the track's next packet minus this one's; negative where pictures are stored in
     * another order than they are shown. Nothing for a track's last packet.
     */
    std::optional<int64_t> untilNextUs;
};

/** The track returns no more packets before the next seek. */
struct TrackEnded {
    uint64_t track = 0;
    /** Nothing at the end of the stream. */
    std::optional<std::string> failure;
};

/** The range that the targets of a seek test are spread over, from 0. */
struct SeekRange {
    bool durationKnown = false;
    int64_t lastTargetUs = 0;
};

/** Where one track landed after a seek; without a time it returned no buffer. */
struct Landing {
    uint64_t track = 0;
    std::optional<int64_t> timeUs;
    bool isSync = false;
};

/** One seek of a seek test. */
struct SeekLanded {
    int64_t targetUs = 0;
    /** Of all tracks, in the order of seeking. */
    std::vector<Landing> landings;
    /** The cost of seeking in all tracks. */
    uint64_t reads = 0;
    uint64_t bytes = 0;
};

/** The work continues without other records. */
struct Progress {
    uint64_t readUpTo = 0;
};

/** Why the work on the file has ended. */
struct Failure {
    ExitCode code = ExitCode::kFile;
    std::string message;
    /** Whether the plug-in cannot be used at all, so that all files would fail. */
    bool ofPlugin = false;
};

/** A line that was logged by the plug-in or the platform libraries. */
struct LogLine {
    int32_t priority = 0;
    std::string tag;
    std::string text;
};

/** The kernel does not filter the system calls of the plug-in's process. */
struct Unconfined {
    std::string reason;
};

// The records below come only in a traced job.

/** The plug-in is called. Log lines and reads up to the end of the call belong to it. */
struct CallBegun {
    PluginFunction function = PluginFunction::kNone;
    std::optional<uint64_t> track;
};

struct CallEnded {
    PluginFunction function = PluginFunction::kNone;
    std::optional<uint64_t> track;
    /** For functions that return one. */
    std::optional<int32_t> status;
};

/** The buffer of the read that has just ended; it follows again as `PacketPlayed`. */
struct BufferRead {
    uint64_t track = 0;
    std::optional<int64_t> timeUs;
    bool isSync = false;
    uint64_t size = 0;
};

/**
 * The plug-in has read its data source. A byte-by-byte search is a single record: reads of the same
 * size and result, each beginning one byte after the previous one.
 */
struct SourceRead {
    /** Of the first read. */
    int64_t offset = 0;
    uint64_t size = 0;
    /** The number of bytes of each read, or a negative error. */
    int64_t result = 0;
    uint64_t count = 1;

    int64_t lastOffset() const {
        return static_cast<int64_t>(static_cast<uint64_t>(offset) + count - 1);
    }
};

using Record = std::variant<FileOpened, TrackListed, TrackStarted, PlaybackReady, SeekBegun,
                            PacketPlayed, TrackEnded, SeekRange, SeekLanded, Progress, Failure,
                            LogLine, Unconfined, CallBegun, CallEnded, BufferRead, SourceRead>;

}  // namespace ogmprobe
