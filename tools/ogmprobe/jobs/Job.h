// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "records/RecordSink.h"

namespace ogmprobe {

class FileSource;
class PluginLibrary;

/** The parts that a job uses. */
struct JobContext {
    const PluginLibrary& library;
    FileSource& source;
    /** Receives all results of the job. */
    const RecordSink& sink;
};

/**
 * All work on one file that calls the plug-in. It runs in a separate process, so it reports results
 * only by records. A `ProbeError` that it throws becomes a `Failure`.
 */
using Job = std::function<void(const JobContext&)>;

/** Records `FileOpened`, then a `TrackListed` for each track. */
Job describeJob();

struct PlayRequest {
    /** Empty: all. */
    std::vector<size_t> tracks;
    /** Empty: read from the beginning. */
    std::vector<int64_t> seeksUs;
    /** Maximum number of packets of each track after each seek. */
    std::optional<uint64_t> count;
    /** Whether packets include the format entries of their buffers. */
    bool keepEntries = false;
};

/**
 * Records `FileOpened`, a `TrackStarted` for each track, `PlaybackReady`, then a `PacketPlayed` for
 * each packet, with a `SeekBegun` before those of each seek.
 */
Job playJob(PlayRequest request);

/**
 * Records `FileOpened`, a `TrackStarted` for each track, `PlaybackReady`, and if there are tracks,
 * `SeekRange` and a `SeekLanded` for each end of `steps` equal spaces.
 */
Job seekTestJob(uint32_t steps);

}  // namespace ogmprobe
