// SPDX-License-Identifier: Apache-2.0
#include "Timeline.h"

#include <algorithm>

namespace ogmprobe::timeline {

void ReadCost::add(const SourceRead& read) {
    reads += read.count;
    if (read.result > 0) {
        const auto got = static_cast<uint64_t>(read.result);
        bytes += got * read.count;
        extents.add(static_cast<uint64_t>(read.offset), got + read.count - 1);
    }
}

std::optional<TimeSpan> spanOf(const Timeline& timeline) {
    std::optional<TimeSpan> span;
    const auto include = [&span](int64_t timeUs) {
        if (!span) {
            span = TimeSpan{timeUs, timeUs};
        }
        span->firstUs = std::min(span->firstUs, timeUs);
        span->lastUs = std::max(span->lastUs, timeUs);
    };
    for (const Lane& lane : timeline.lanes) {
        for (const PacketPoint& packet : lane.packets) {
            include(packet.timeUs);
        }
    }
    for (const Seek& seek : timeline.seeks) {
        include(seek.targetUs);
    }
    return span;
}

}  // namespace ogmprobe::timeline
