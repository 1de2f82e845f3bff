// SPDX-License-Identifier: Apache-2.0
#include "LaneBars.h"

#include <algorithm>
#include <map>

namespace ogmprobe::timeline {
namespace {

// A packet takes up to 70 bytes in a page, a bin up to 170: less than 2 MB in both cases.
constexpr size_t kMaxPackets = 12000;
constexpr size_t kMaxBins = 9000;
constexpr size_t kMaxBinsOfALane = 3000;

LaneBars packetBars(const Lane& lane, const Timing& timing) {
    LaneBars result;
    for (const TimeGroup& group : timing.groups) {
        uint64_t height = 0;
        for (const size_t index : group.packets) {
            const PacketPoint& packet = lane.packets[index];
            result.bars.push_back(
                    {static_cast<double>(group.timeUs), height, height + packet.size, packet.type});
            height += packet.size;
        }
        result.top = std::max(result.top, height);
    }
    const size_t groups = timing.groups.size();
    if (groups > 1) {
        const auto lastUs = static_cast<double>(timing.groups.back().timeUs);
        const auto firstUs = static_cast<double>(timing.groups.front().timeUs);
        result.spacingUs = (lastUs - firstUs) / static_cast<double>(groups - 1);
    }
    return result;
}

std::vector<Bin> binsOf(const Lane& lane, const TimeAxis& axis, size_t bins) {
    std::map<size_t, Bin> filled;
    for (const PacketPoint& packet : lane.packets) {
        const size_t number = binOf(static_cast<double>(packet.timeUs), axis, bins);
        Bin& bin = filled[number];
        bin.number = number;
        ++bin.packets;
        bin.syncs += packet.isSync ? 1 : 0;
        bin.bytes += packet.size;
        bin.largest = std::max(bin.largest, packet.size);
        uint64_t& largestOf = bin.largestOf[static_cast<size_t>(packet.type)];
        largestOf = std::max(largestOf, packet.size);
        bin.readUpTo = packet.readUpTo;
    }
    std::vector<Bin> list;
    list.reserve(filled.size());
    for (const auto& [number, bin] : filled) {
        list.push_back(bin);
    }
    return list;
}

void addBars(const Bin& bin, double timeUs, std::vector<Bar>& bars) {
    for (int type = 0; type < kFrameTypes; ++type) {
        const uint64_t largest = bin.largestOf[static_cast<size_t>(type)];
        if (largest > 0) {
            bars.push_back({timeUs, 0, largest, static_cast<FrameType>(type)});
        }
    }
}

LaneBars binBars(const Lane& lane, const TimeAxis& axis, size_t bins) {
    LaneBars result;
    result.bins = binsOf(lane, axis, bins);
    for (const Bin& bin : *result.bins) {
        addBars(bin, timeOfBinUs(bin.number, axis, bins), result.bars);
        result.top = std::max(result.top, bin.largest);
    }
    result.spacingUs = axis.lengthUs() / static_cast<double>(bins);
    return result;
}

}  // namespace

Detail detailOf(const Timeline& timeline) {
    size_t packets = 0;
    for (const Lane& lane : timeline.lanes) {
        packets += lane.packets.size();
    }
    const size_t lanes = std::max<size_t>(timeline.lanes.size(), 1);
    const size_t bins = std::clamp<size_t>(kMaxBins / lanes, 1, kMaxBinsOfALane);
    return {packets <= kMaxPackets, bins};
}

LaneBars barsOf(const Lane& lane, const Timing& timing, const TimeAxis& axis,
                const Detail& detail) {
    return detail.packets ? packetBars(lane, timing) : binBars(lane, axis, detail.bins);
}

double timeOfBinUs(size_t bin, const TimeAxis& axis, size_t bins) {
    const double place = (static_cast<double>(bin) + 0.5) / static_cast<double>(bins);
    return axis.startUs() + place * axis.lengthUs();
}

size_t binOf(double timeUs, const TimeAxis& axis, size_t bins) {
    const auto count = static_cast<double>(bins);
    return static_cast<size_t>(std::clamp(axis.place(timeUs) * count, 0.0, count - 1));
}

}  // namespace ogmprobe::timeline
