// SPDX-License-Identifier: Apache-2.0
#include "jobs/TimeOrderedReader.h"

#include <algorithm>
#include <utility>

#include "text/TimeArithmetic.h"

namespace ogmprobe {

TimeOrderedReader::TimeOrderedReader(const std::vector<PacketStream*>& streams, size_t lead)
    : mLead(lead) {
    for (PacketStream* stream : streams) {
        mLanes.push_back({stream, std::nullopt});
    }
}

void TimeOrderedReader::seek(int64_t targetUs) {
    mStarted = true;
    Lane& lead = mLanes[mLead];
    land(lead, {targetUs, android::SEEK_CLOSEST_SYNC});
    const int64_t landedUs = lead.pending ? lead.pending->timeUs : targetUs;
    for (Lane& lane : mLanes) {
        if (&lane != &lead) {
            land(lane, {std::max<int64_t>(landedUs, 0), android::SEEK_CLOSEST});
        }
    }
}

const Packet* TimeOrderedReader::pending(size_t stream) const {
    const auto& pending = mLanes[stream].pending;
    return pending ? &*pending : nullptr;
}

std::optional<OrderedPacket> TimeOrderedReader::next() {
    readFirstPackets();
    Lane* lane = leastAdvanced();
    if (lane == nullptr) {
        return std::nullopt;
    }
    OrderedPacket result;
    result.stream = static_cast<size_t>(lane - mLanes.data());
    result.packet = std::move(*lane->pending);
    lane->pending = lane->source->read(std::nullopt);
    if (lane->pending) {
        result.untilNextUs = timeDifferenceUs(lane->pending->timeUs, result.packet.timeUs);
        lane->reachedUs = std::max(lane->reachedUs, lane->pending->timeUs);
    }
    return result;
}

void TimeOrderedReader::drop(size_t stream) {
    mLanes[stream].pending.reset();
}

void TimeOrderedReader::readFirstPackets() {
    if (mStarted) {
        return;
    }
    mStarted = true;
    for (Lane& lane : mLanes) {
        lane.pending = lane.source->read(std::nullopt);
        lane.reachedUs = lane.pending ? lane.pending->timeUs : 0;
    }
}

void TimeOrderedReader::land(Lane& lane, const SeekRequest& seek) {
    lane.pending = lane.source->read(seek);
    lane.reachedUs = lane.pending ? lane.pending->timeUs : 0;
}

TimeOrderedReader::Lane* TimeOrderedReader::leastAdvanced() {
    Lane* least = nullptr;
    for (Lane& lane : mLanes) {
        if (lane.pending && (least == nullptr || lane.reachedUs < least->reachedUs)) {
            least = &lane;
        }
    }
    return least;
}

}  // namespace ogmprobe
