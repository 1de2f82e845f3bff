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

/** What a verdict rests on: a file that was played to its end, and explained. */
struct Evidence {
    const Explanation& explanation;
    const PlayedTracksPackets& packets;
    const DecoderList& decoders;
};

/** Fills in tracks and reasons. */
void judge(const Evidence& evidence, CheckedFile& file);

/** Adds what is to be said of sound that is not with the picture. */
void judgeSync(const Explanation& explanation, CheckedFile& file);

// Each of these adds reasons to a track.

/** What its format lacks that a decoder is set up with. */
void judgeFormat(const TrackDescription& track, std::vector<Reason>& reasons);
/** What the ledger of its stream says. */
void judgeLosses(const Ledger& ledger, const TrackDescription& track, std::vector<Reason>& reasons);
/** Pictures of which several have one time. */
void judgeTimes(const TrackDescription& track, const PlayedPackets& packets,
                std::vector<Reason>& reasons);
/** Sync frames. */
void judgeSeeking(const TrackDescription& track, const PlayedPackets& packets,
                  std::vector<Reason>& reasons);

}  // namespace ogmprobe::check
