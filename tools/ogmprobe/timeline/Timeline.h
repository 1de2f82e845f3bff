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

/** What a timeline shows of a file, gathered while the file is played. */
namespace ogmprobe::timeline {

struct TimeSpan {
    int64_t firstUs = 0;
    int64_t lastUs = 0;
};

/** What is kept of a packet. */
struct PacketPoint {
    int64_t timeUs = 0;
    uint64_t size = 0;
    /** Where in the file the last read had ended when the packet came out. */
    uint64_t readUpTo = 0;
    bool isSync = false;
    FrameType type = FrameType::kUnknown;
    uint64_t digest = 0;
    /** The page of the file that it begins on, by its number among them; nothing if unknown. */
    std::optional<uint32_t> page = {};
    /** When it begins by the file's pages; nothing where they do not tell. */
    std::optional<TimeRange> pageUs = {};
    /** Of audio: how much later than the video it is shown, compared with the pages. */
    std::optional<TimeRange> behindVideoUs = {};
};

/** A packet or frame of the file that does not come out. */
struct LostPacket {
    /** By the file's pages. */
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
    /** Frames are counted, not packets. */
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
    /** Nothing where its granule position does not tell. */
    std::optional<int64_t> timeUs;
};

/** Log lines that were written at a page. */
struct PageLine {
    uint32_t page = 0;
    std::string text;
};

/** Something that the plug-in makes of the file otherwise than its user may expect. */
struct ShownFinding {
    std::string id;
    std::string text;
    /** The log line that shows it; may be empty. */
    std::string line;
    /** So with every such file. */
    bool usual = false;
    /** Indices of what it is about; neither: the whole file. */
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
    /** Of all bytes of the file. */
    std::optional<uint64_t> fileDigest;
    /** Only if asked for: without it the same file gives the same page. */
    std::string date;
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
    Origin origin;
    std::vector<Lane> lanes;
    std::vector<RefusedStream> refused;
    std::vector<FilePage> pages;
    std::vector<PageLine> lines;
    std::vector<ShownFinding> findings;
    /** How far times are off the pages at most, as a sentence; may be empty. */
    std::string worstTimes;
    /** Up to the first packet, and from there to the end. */
    ReadCost opening;
    ReadCost playing;
    std::vector<Seek> seeks;
    /** What went wrong, in sentences. */
    std::vector<std::string> failures;
};

/** Times from the first to the last packet or seek; nothing if there is neither. */
std::optional<TimeSpan> spanOf(const Timeline& timeline);

/** Leaves out what lies before the one time or behind the other. */
void cutTo(const std::optional<int64_t>& fromUs, const std::optional<int64_t>& untilUs,
           Timeline& timeline);

}  // namespace ogmprobe::timeline
