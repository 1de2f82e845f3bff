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

/** A timeline with all that is worked out from it for drawing. The timeline must outlive it. */
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
    /** By which the style sheet colours a track: its kind and its number among its kind. */
    std::vector<std::string> trackClasses;
};

/** Whether the lane has sync frames and they are the exception, so that marks tell something. */
bool marksSyncs(const Lane& lane);

}  // namespace ogmprobe::timeline
