// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "check/CheckedFile.h"
#include "check/Decoder.h"
#include "check/PlayedPackets.h"
#include "explain/Finding.h"

namespace ogmprobe::check {

/** By the indices of tracks. */
using PlayedTracksPackets = std::map<uint64_t, PlayedPackets>;

/** What a verdict is based on: a file that was played to its end, and explained. */
struct Evidence {
    const Explanation& explanation;
    const PlayedTracksPackets& packets;
    const DecoderList& decoders;
};

/** Fills in tracks and reasons. */
void judge(const Evidence& evidence, CheckedFile& file);

/** Adds reasons about sound that does not fit the picture. */
void judgeSync(const Explanation& explanation, CheckedFile& file);

// Each of these adds reasons to a track.

/** What the format lacks to configure a decoder. */
void judgeFormat(const TrackDescription& track, std::vector<Reason>& reasons);
/** Losses in the ledger of its stream. */
void judgeLosses(const Ledger& ledger, const TrackDescription& track, std::vector<Reason>& reasons);
/** Pictures that share one time. */
void judgeTimes(const TrackDescription& track, const PlayedPackets& packets,
                std::vector<Reason>& reasons);
/** Sync frames. */
void judgeSeeking(const TrackDescription& track, const PlayedPackets& packets,
                  std::vector<Reason>& reasons);

}  // namespace ogmprobe::check
