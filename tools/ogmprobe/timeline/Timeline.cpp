// SPDX-License-Identifier: Apache-2.0
#include "Timeline.h"

#include <algorithm>
#include <limits>

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
    const auto includeAll = [&include](const auto& packets) {
        for (const auto& packet : packets) {
            include(packet.timeUs);
        }
    };
    for (const Lane& lane : timeline.lanes) {
        includeAll(lane.packets);
        includeAll(lane.lost);
    }
    for (const RefusedStream& stream : timeline.refused) {
        includeAll(stream.packets);
    }
    for (const Seek& seek : timeline.seeks) {
        include(seek.targetUs);
    }
    return span;
}

void cutTo(const std::optional<int64_t>& fromUs, const std::optional<int64_t>& untilUs,
           Timeline& timeline) {
    const int64_t leastUs = fromUs.value_or(std::numeric_limits<int64_t>::min());
    const int64_t mostUs = untilUs.value_or(std::numeric_limits<int64_t>::max());
    const auto cut = [&](auto& packets) {
        std::erase_if(packets, [&](const auto& packet) {
            return packet.timeUs < leastUs || packet.timeUs >= mostUs;
        });
    };
    for (Lane& lane : timeline.lanes) {
        cut(lane.packets);
        cut(lane.lost);
    }
    for (RefusedStream& stream : timeline.refused) {
        cut(stream.packets);
    }
    std::erase_if(timeline.seeks, [&](const Seek& seek) {
        return seek.targetUs < leastUs || seek.targetUs > mostUs;
    });
    std::erase_if(timeline.findings, [&](const ShownFinding& finding) {
        return finding.span && (finding.span->lastUs < leastUs || finding.span->firstUs > mostUs);
    });
}

}  // namespace ogmprobe::timeline
