// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "Timeline.h"

namespace ogmprobe::timeline {

/** Bits per second in equal windows of presentation time. */
struct Bitrate {
    double startUs = 0;
    double windowUs = 0;
    /** For each lane, each window. */
    std::vector<std::vector<double>> lanes;
    /** Of all lanes together. */
    std::vector<double> total;
    double highest = 0;
};

/** Windows of half a second, longer in files of more than two minutes. */
Bitrate bitrateOf(const Timeline& timeline, const TimeSpan& span);

}  // namespace ogmprobe::timeline
