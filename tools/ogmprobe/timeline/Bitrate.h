// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "Timeline.h"
#include "Timing.h"

namespace ogmprobe::timeline {

/** Bits per second in equal windows of presentation time. */
struct Bitrate {
    double startUs = 0;
    double windowUs = 0;
    /** By lane, then by window. */
    std::vector<std::vector<double>> lanes;
    /** The sum of all lanes. */
    std::vector<double> total;
    double highest = 0;
};

/**
 * Returns rates in windows of half a second; longer ones in files of more than two minutes. The
 * bytes of packets are spread over the time up to the next packets of their track, so that page
 * boundaries are not visible in the windows.
 */
Bitrate bitrateOf(const Timeline& timeline, const std::vector<Timing>& timings,
                  const TimeSpan& span);

}  // namespace ogmprobe::timeline
