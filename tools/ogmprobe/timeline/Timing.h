// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "Timeline.h"

namespace ogmprobe::timeline {

/** Packets of a track with the same time. */
struct TimeGroup {
    int64_t timeUs = 0;
    /** Indices into the lane's packets, rising. */
    std::vector<size_t> packets;
};

/** A stretch of presentation time without a packet. */
struct Gap {
    double fromUs = 0;
    double toUs = 0;
};

/** The times of a track. */
struct Timing {
    /** In the order of their times. */
    std::vector<TimeGroup> groups;
    std::vector<Gap> gaps;
    /** Indices of packets whose time is less than that of the packet before in the file. */
    std::vector<size_t> backwardSteps;
    /** Packets with the same time as an earlier one. */
    size_t repeatedTimes = 0;
    /** How long a packet usually lasts; 0 if all have the same time. */
    double packetUs = 0;
};

/**
 * A container may give all packets of a page the same time. So a group of n packets lasts n times
 * the usual length of a packet. There is only a gap if the next time is nearly twice as far away as
 * the length of the largest group nearby.
 */
Timing timingOf(const std::vector<PacketPoint>& packets);

}  // namespace ogmprobe::timeline
