// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "Bitrate.h"
#include "LaneBars.h"
#include "TimeAxis.h"
#include "Timeline.h"
#include "Timing.h"

namespace ogmprobe::timeline {

/** A timeline with everything computed from it for drawing. The timeline must outlive it. */
struct Chart {
    explicit Chart(const Timeline& shown);

    const Timeline& timeline;
    TimeSpan span;
    TimeAxis axis;
    Detail detail;
    Bitrate bitrate;
    // An entry for each lane.
    std::vector<Timing> timings;
    std::vector<LaneBars> bars;
    /** The style sheet colours a track by these: its kind and its number within the kind. */
    std::vector<std::string> trackClasses;
};

/** Returns whether the lane has sync frames and other frames, so that marking them is useful. */
bool marksSyncs(const Lane& lane);

}  // namespace ogmprobe::timeline
