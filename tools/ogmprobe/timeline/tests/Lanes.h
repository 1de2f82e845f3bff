// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "Timeline.h"

/** Timelines for tests. */
namespace ogmprobe::timeline::test {

inline constexpr int64_t kPictureUs = 40000;

/** Packets of one byte, read one after the other. */
inline std::vector<PacketPoint> packetsAt(const std::vector<int64_t>& timesUs) {
    std::vector<PacketPoint> packets;
    for (const int64_t timeUs : timesUs) {
        packets.push_back({timeUs, 1, packets.size() + 1, false, FrameType::kUnknown});
    }
    return packets;
}

/** Groups of 12 pictures, the first of each a large sync frame. */
inline std::vector<PacketPoint> pictures(size_t count) {
    constexpr size_t kGroup = 12;
    std::vector<PacketPoint> packets;
    uint64_t position = 0;
    for (size_t i = 0; i < count; ++i) {
        const bool isSync = i % kGroup == 0;
        const uint64_t size = isSync ? 40000 : 3000 + i % 1000;
        position += size;
        packets.push_back({static_cast<int64_t>(i) * kPictureUs, size, position, isSync,
                           isSync ? FrameType::kIntra : FrameType::kPredicted});
    }
    return packets;
}

inline Lane laneOf(TrackKind kind, std::vector<PacketPoint> packets) {
    Lane lane;
    lane.track.kind = kind;
    lane.track.codec.name = kind == TrackKind::kVideo ? "pictures" : "sound";
    lane.packets = std::move(packets);
    return lane;
}

inline Timeline timelineOf(std::vector<Lane> lanes) {
    Timeline timeline;
    timeline.fileName = "film.ogm";
    timeline.file.mime = "video/ogm";
    for (size_t i = 0; i < lanes.size(); ++i) {
        lanes[i].track.index = i;
        for (const PacketPoint& packet : lanes[i].packets) {
            timeline.file.sizeBytes = std::max(timeline.file.sizeBytes, packet.readUpTo);
        }
    }
    timeline.lanes = std::move(lanes);
    return timeline;
}

}  // namespace ogmprobe::timeline::test
