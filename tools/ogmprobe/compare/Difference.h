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
    /** Whether the file is taken. */
    kOpening,
    kContainer,
    kTrack,
    /** The first of a track. */
    kPacket,
    /** Whether a track ends with an error. */
    kTrackEnd,
    /** Whether playing comes to an end. */
    kEnd,
    /** The first of the reads of the file. */
    kRead,
    /** The first of the seeks. */
    kSeek,
    /** The first of the log. */
    kLog,
};

/** In front of the names of formats' entries that this program does not know by themselves. */
inline constexpr std::string_view kFormatField = "format ";

/** For programs. */
std::string kindName(DifferenceKind kind);

/** Something that two played files, A and B, do not have in common. */
struct Difference {  // NOLINT(bugprone-exception-escape): JSON values do not throw when moved.
    DifferenceKind kind = DifferenceKind::kOpening;
    /** What differs there; empty where there is but one thing. */
    std::string field;
    std::optional<uint64_t> track;
    /** The packet's number in its track, or the line's in the log, from 0. */
    std::optional<uint64_t> number;
    std::optional<int64_t> timeUs;
    /** The values; null for what is not there. */
    nlohmann::ordered_json a;
    nlohmann::ordered_json b;
    /** So much later all of B's packets from this one on are, and nothing else is. */
    std::optional<int64_t> shiftUs;
    /** In which call the plug-in logged a line. */
    std::string call;
};

/**
 * All but those of the log: opening, container, tracks, then packets in the order of their times,
 * then how tracks and playing end.
 */
std::vector<Difference> differencesBetween(const PlayedFile& a, const PlayedFile& b);

/** The first read, and the first seek, that differs. */
std::optional<Difference> firstReadDifference(const PlayedFile& a, const PlayedFile& b);
std::optional<Difference> firstSeekDifference(const PlayedFile& a, const PlayedFile& b);

/** The number of the first log line that differs. */
std::optional<uint64_t> firstLogDifference(const PlayedFile& a, const PlayedFile& b);

/** "track 0, packet 12, at 0.480000 s: size 2012 in A, 2000 in B". */
std::string toText(const Difference& difference);

nlohmann::ordered_json toJson(const Difference& difference);

/** How much of a track is alike. A packet is in both if one of the same time and bytes is. */
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

/** A table; empty without a track. */
std::string tracksText(const std::vector<TrackComparison>& tracks, bool color);
nlohmann::ordered_json tracksJson(const std::vector<TrackComparison>& tracks);

}  // namespace ogmprobe
