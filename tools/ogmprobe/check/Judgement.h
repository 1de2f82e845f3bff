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

/** By track index. */
using PlayedTracksPackets = std::map<uint64_t, PlayedPackets>;

/** The basis of a verdict: a file that was played to its end, with its findings. */
struct Evidence {
    const Explanation& explanation;
    const PlayedTracksPackets& packets;
    const DecoderList& decoders;
};

/** Fills in tracks and reasons. */
void judge(const Evidence& evidence, CheckedFile& file);

/** Adds reasons about audio that is not in sync with the video. */
void judgeSync(const Explanation& explanation, CheckedFile& file);

// Each of these adds reasons to a track.

/** About entries that the format lacks to configure a decoder. */
void judgeFormat(const TrackDescription& track, std::vector<Reason>& reasons);
/** About losses in the ledger of its stream. */
void judgeLosses(const Ledger& ledger, const TrackDescription& track, std::vector<Reason>& reasons);
/** About pictures with the same time. */
void judgeTimes(const TrackDescription& track, const PlayedPackets& packets,
                std::vector<Reason>& reasons);
/** About sync frames. */
void judgeSeeking(const TrackDescription& track, const PlayedPackets& packets,
                  std::vector<Reason>& reasons);

}  // namespace ogmprobe::check
