// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "FileExtents.h"
#include "FrameType.h"
#include "records/Records.h"

/** What a timeline shows of a file, gathered while the file is played. */
namespace ogmprobe::timeline {

/** What is kept of a packet. */
struct PacketPoint {
    int64_t timeUs = 0;
    uint64_t size = 0;
    /** Where in the file the last read had ended when the packet came out. */
    uint64_t readUpTo = 0;
    bool isSync = false;
    FrameType type = FrameType::kUnknown;
};

/** A track with its packets in the order of the file. */
struct Lane {
    TrackDescription track;
    std::vector<PacketPoint> packets;
};

/** What a piece of work read from the file. */
struct ReadCost {
    uint64_t reads = 0;
    uint64_t bytes = 0;
    FileExtents extents;

    void add(const SourceRead& read);
};

struct Seek {
    int64_t targetUs = 0;
    /** Where the track landed that is sought first; nothing at the end. */
    std::optional<int64_t> landedUs;
    bool isSync = false;
    ReadCost cost;
};

struct Timeline {
    /** Without its folder. */
    std::string fileName;
    FileOpened file;
    std::vector<Lane> lanes;
    /** Up to the first packet, and from there to the end. */
    ReadCost opening;
    ReadCost playing;
    std::vector<Seek> seeks;
    /** What went wrong, in sentences. */
    std::vector<std::string> failures;
};

/** Times from the first to the last packet or seek; nothing if there is neither. */
struct TimeSpan {
    int64_t firstUs = 0;
    int64_t lastUs = 0;
};
std::optional<TimeSpan> spanOf(const Timeline& timeline);

}  // namespace ogmprobe::timeline
