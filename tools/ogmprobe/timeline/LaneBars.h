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

/** The packets in one of the equal parts of the time axis. */
struct Bin {
    /** Its index among all parts, including empty ones. */
    size_t number = 0;
    uint64_t packets = 0;
    uint64_t syncs = 0;
    uint64_t bytes = 0;
    uint64_t largest = 0;
    /** The packets of each frame type. */
    std::array<uint64_t, kFrameTypes> largestOf = {};
    /** The last file position in it. */
    uint64_t readUpTo = 0;
};

/** The bars and marks of a lane. */
struct LaneBars {
    /**
     * Nothing: each packet has a bar; bars of the same time are stacked. Otherwise each bin has a
     * bar for the largest packet of each type, smaller ones on top.
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
    /** Single packets, or bins. */
    bool packets = true;
    /** The number of bins. */
    size_t bins = 1;
};

/** Returns the finest detail that the size of a page allows, for all lanes together. */
Detail detailOf(const Timeline& timeline);

LaneBars barsOf(const Lane& lane, const Timing& timing, const TimeAxis& axis, const Detail& detail);

/** Returns the middle of a bin. */
double timeOfBinUs(size_t bin, const TimeAxis& axis, size_t bins);
/** Returns the bin that a time falls into. */
size_t binOf(double timeUs, const TimeAxis& axis, size_t bins);

}  // namespace ogmprobe::timeline
