// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "compare/PlayedFile.h"

namespace ogmprobe {

enum class DifferenceKind {
    /** Whether the file is accepted. */
    kOpening,
    kContainer,
    kTrack,
    /** The first one of a track. */
    kPacket,
    /** Whether a track ends with an error. */
    kTrackEnd,
    /** Whether playing comes to an end. */
    kEnd,
    /** The first one in the reads of the file. */
    kRead,
    /** The first one in the seeks. */
    kSeek,
    /** The first one in the log. */
    kLog,
};

/** Prefix of the names of format entries that this program does not know. */
inline constexpr std::string_view kFormatField = "format ";

/** Returns a name for programs. */
std::string kindName(DifferenceKind kind);

/** A difference between two played files, A and B. */
struct Difference {  // NOLINT(bugprone-exception-escape): JSON values do not throw when moved.
    DifferenceKind kind = DifferenceKind::kOpening;
    /** What differs; empty if only one thing can. */
    std::string field;
    std::optional<uint64_t> track;
    /** The packet's number in its track, or the line's in the log, from 0. */
    std::optional<uint64_t> number;
    std::optional<int64_t> timeUs;
    /** The values; null if absent. */
    nlohmann::ordered_json a;
    nlohmann::ordered_json b;
    /** By how much all of B's packets from this one on are later, if nothing else differs. */
    std::optional<int64_t> shiftUs;
    /** The call during which the plug-in logged the line. */
    std::string call;
};

/**
 * Returns all differences except those of the log, reads and seeks: opening, container, tracks,
 * then packets in the order of their times, then the ends of tracks and of playing.
 */
std::vector<Difference> differencesBetween(const PlayedFile& a, const PlayedFile& b);

/** Return the first read, or the first seek, that differs. */
std::optional<Difference> firstReadDifference(const PlayedFile& a, const PlayedFile& b);
std::optional<Difference> firstSeekDifference(const PlayedFile& a, const PlayedFile& b);

/** Returns the number of the first log line that differs. */
std::optional<uint64_t> firstLogDifference(const PlayedFile& a, const PlayedFile& b);

/** Returns text like "track 0, packet 12, at 0.480000 s: size 2012 in A, 2000 in B". */
std::string toText(const Difference& difference);

nlohmann::ordered_json toJson(const Difference& difference);

/** How much of a track is equal. Packets are the same if their times and bytes are equal. */
struct TrackComparison {
    uint64_t track = 0;
    std::string mime;
    uint64_t packetsA = 0;
    uint64_t packetsB = 0;
    uint64_t onlyInA = 0;
    uint64_t onlyInB = 0;
    /** The number of the first packet that differs. */
    std::optional<uint64_t> firstDifference;
};

std::vector<TrackComparison> compareTracks(const PlayedFile& a, const PlayedFile& b);

/** Returns a table; empty without a track. */
std::string tracksText(const std::vector<TrackComparison>& tracks, bool color);
nlohmann::ordered_json tracksJson(const std::vector<TrackComparison>& tracks);

}  // namespace ogmprobe
