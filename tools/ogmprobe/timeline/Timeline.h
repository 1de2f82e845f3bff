// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "FileExtents.h"
#include "FrameType.h"
#include "records/Records.h"
#include "sync/TimeRange.h"

/** The contents of a file's timeline, collected while the file is played. */
namespace ogmprobe::timeline {

struct TimeSpan {
    int64_t firstUs = 0;
    int64_t lastUs = 0;
};

/** The stored data of a packet. */
struct PacketPoint {
    int64_t timeUs = 0;
    uint64_t size = 0;
    /** Where in the file the last read had ended when the packet was returned. */
    uint64_t readUpTo = 0;
    bool isSync = false;
    FrameType type = FrameType::kUnknown;
    uint64_t digest = 0;
    /** Index of the page on which it begins; nothing if unknown. */
    std::optional<uint32_t> page = {};
    /** Its time by the file's pages; nothing if they do not show it. */
    std::optional<TimeRange> pageUs = {};
    /** Only for audio: how late it is played relative to the video, compared with the pages. */
    std::optional<TimeRange> lateByVideoUs = {};
};

/** A packet or frame of the file that is not returned. */
struct LostPacket {
    /** Its time by the file's pages. */
    int64_t timeUs = 0;
    uint64_t size = 0;
    uint32_t page = 0;
    /** Why, in a few words. */
    const char* reason = "";
};

/** A track with its packets in the order of the file. */
struct Lane {
    TrackDescription track;
    std::vector<PacketPoint> packets;
    std::vector<LostPacket> lost = {};
    /** Whether frames are counted instead of packets. */
    bool countsFrames = false;
};

/** A stream of the file that has no track. */
struct RefusedStream {
    std::string name;
    /** Why, in a few words. */
    std::string reason;
    std::vector<LostPacket> packets;
};

/** A page of the file. */
struct FilePage {
    uint64_t offset = 0;
    uint64_t size = 0;
    uint32_t serial = 0;
    uint32_t sequence = 0;
    /** Nothing if its granule position does not show it. */
    std::optional<int64_t> timeUs;
};

/** Log lines that were written at a page. */
struct PageLine {
    uint32_t page = 0;
    std::string text;
};

/** Something in the plug-in's results that a user may not expect. */
struct ShownFinding {
    std::string id;
    std::string text;
    /** The log line that shows it; may be empty. */
    std::string line;
    /** The same for every such file. */
    bool usual = false;
    /** Indices of the lane or stream that it is about; neither: the whole file. */
    std::optional<size_t> lane;
    std::optional<size_t> refused;
    std::optional<uint64_t> offset;
    /** Nothing: all of the time. */
    std::optional<TimeSpan> span;
};

/** What made the timeline. */
struct Origin {
    std::string program;
    std::string plugin;
    /** The digest of all bytes of the file. */
    std::optional<uint64_t> fileDigest;
    /** Only if requested, because without it the same file gives the same page. */
    std::string date;
};

/** What a step of playing read from the file. */
struct ReadCost {
    uint64_t reads = 0;
    uint64_t bytes = 0;
    FileExtents extents;

    void add(const SourceRead& read);
};

struct Seek {
    int64_t targetUs = 0;
    /** Where the track that seeks first landed; nothing at the end. */
    std::optional<int64_t> landedUs;
    bool isSync = false;
    ReadCost cost;
};

struct Timeline {
    /** Without its folder. */
    std::string fileName;
    FileOpened file;
    Origin origin;
    std::vector<Lane> lanes;
    std::vector<RefusedStream> refused;
    std::vector<FilePage> pages;
    std::vector<PageLine> lines;
    std::vector<ShownFinding> findings;
    /** The largest difference from the pages' times, as a sentence; may be empty. */
    std::string worstTimes;
    /** Up to the first packet, and from there to the end. */
    ReadCost opening;
    ReadCost playing;
    std::vector<Seek> seeks;
    /** Failures, as sentences. */
    std::vector<std::string> failures;
};

/** Returns the times from the first to the last packet or seek; nothing if there is neither. */
std::optional<TimeSpan> spanOf(const Timeline& timeline);

/** Removes everything before `fromUs` and everything from `untilUs` on. */
void cutTo(const std::optional<int64_t>& fromUs, const std::optional<int64_t>& untilUs,
           Timeline& timeline);

}  // namespace ogmprobe::timeline
