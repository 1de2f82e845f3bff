// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "TimeAxis.h"
#include "Timeline.h"
#include "Timing.h"

namespace ogmprobe::timeline {

/** A vertical bar of a lane: an instant, and bytes from bottom to top. */
struct Bar {
    double timeUs = 0;
    uint64_t from = 0;
    uint64_t to = 0;
    FrameType type = FrameType::kUnknown;
};

/** What falls into one equal part of the time axis. */
struct Bin {
    /** Its number among all parts, empty ones included. */
    size_t number = 0;
    uint64_t packets = 0;
    uint64_t syncs = 0;
    uint64_t bytes = 0;
    uint64_t largest = 0;
    /** Of each frame type. */
    std::array<uint64_t, kFrameTypes> largestOf = {};
    /** The last file position in it. */
    uint64_t readUpTo = 0;
};

/** The bars of a lane, and what is marked in it. */
struct LaneBars {
    /**
     * Nothing: each packet has its bar, those of the same time stand on one another. Else each bin
     * has a bar for the largest packet of each type, smaller ones in front.
     */
    std::optional<std::vector<Bin>> bins;
    std::vector<Bar> bars;
    /** Bytes at the top of the tallest bar. */
    uint64_t top = 0;
    /** Typical distance of bars. */
    double spacingUs = 0;
};

/** How finely lanes are drawn. */
struct Detail {
    /** Each packet by itself, or bins. */
    bool packets = true;
    /** Parts that the time axis is cut into where things are put together. */
    size_t bins = 1;
};

/** As fine as the size of a page allows, for all lanes together. */
Detail detailOf(const Timeline& timeline);

LaneBars barsOf(const Lane& lane, const Timing& timing, const TimeAxis& axis, const Detail& detail);

/** Middle of a bin. */
double timeOfBinUs(size_t bin, const TimeAxis& axis, size_t bins);
/** The bin that a time falls into. */
size_t binOf(double timeUs, const TimeAxis& axis, size_t bins);

}  // namespace ogmprobe::timeline
