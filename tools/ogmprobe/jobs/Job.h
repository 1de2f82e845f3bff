// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "plugin/FileSource.h"
#include "plugin/PluginLibrary.h"
#include "records/Records.h"

namespace ogmprobe {

/** What a job works with. */
struct JobContext {
    const PluginLibrary& library;
    FileSource& source;
    /** Where everything goes that the job finds out. */
    const RecordSink& sink;
};

/**
 * All work on one file that talks to the plug-in. It runs in a process of its own, so it can tell
 * what it finds only by records. A `ProbeError` that it throws becomes a `Failure`.
 */
using Job = std::function<void(const JobContext&)>;

/** `FileOpened`, then a `TrackListed` for each track. */
Job describeJob();

struct PlayRequest {
    /** Empty: all. */
    std::vector<size_t> tracks;
    /** Empty: read from the beginning. */
    std::vector<int64_t> seeksUs;
    /** Packets a track, after each seek. */
    std::optional<uint64_t> count;
    /** Whether packets have the entries that their buffers carry. */
    bool keepEntries = false;
};

/**
 * `FileOpened`, a `TrackStarted` for each track, `PlaybackReady`, then a `PacketPlayed` for each
 * packet, with a `SeekBegun` before those of each seek.
 */
Job playJob(PlayRequest request);

/**
 * `FileOpened`, a `TrackStarted` for each track, `PlaybackReady`, and unless there is no track,
 * `SeekRange` and a `SeekLanded` for each end of the given number of equal spaces.
 */
Job seekTestJob(uint32_t steps);

}  // namespace ogmprobe
