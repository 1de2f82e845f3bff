// SPDX-License-Identifier: Apache-2.0
#include "LaneBars.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Lanes.h"

namespace ogmprobe::timeline::test {
namespace {

LaneBars barsOf(const Timeline& timeline, size_t lane = 0) {
    const auto& packets = timeline.lanes[lane].packets;
    return timeline::barsOf(timeline.lanes[lane], timingOf(packets), TimeAxis(*spanOf(timeline)),
                            detailOf(timeline));
}

TEST(LaneBars, OfPacketsOfOneTimeAreStacked) {
    auto packets = packetsAt({0, 0, 40000});
    packets[0].size = 10;
    packets[1].size = 5;
    const LaneBars bars = barsOf(timelineOf({laneOf(TrackKind::kVideo, packets)}));
    ASSERT_EQ(bars.bars.size(), 3U);
    EXPECT_FALSE(bars.bins);
    EXPECT_EQ(bars.bars[0].from, 0U);
    EXPECT_EQ(bars.bars[1].from, 10U);
    EXPECT_EQ(bars.bars[1].to, 15U);
    EXPECT_EQ(bars.bars[2].from, 0U);
    EXPECT_EQ(bars.top, 15U);
}

TEST(LaneBars, OfAShortFileAreItsPackets) {
    const LaneBars bars = barsOf(timelineOf({laneOf(TrackKind::kVideo, pictures(12000))}));
    EXPECT_FALSE(bars.bins);
    EXPECT_EQ(bars.bars.size(), 12000U);
}

TEST(LaneBars, OfALongFileAreBinsThatCountEveryPacket) {
    const Lane lane = laneOf(TrackKind::kVideo, pictures(90000));
    const LaneBars bars = barsOf(timelineOf({lane}));
    ASSERT_TRUE(bars.bins);
    EXPECT_LE(bars.bins->size(), 3000U);
    uint64_t packets = 0;
    uint64_t syncs = 0;
    uint64_t bytes = 0;
    for (const Bin& bin : *bars.bins) {
        packets += bin.packets;
        syncs += bin.syncs;
        bytes += bin.bytes;
    }
    EXPECT_EQ(packets, 90000U);
    EXPECT_EQ(syncs, 7500U);
    EXPECT_EQ(bytes, lane.packets.back().readUpTo);
    EXPECT_EQ(bars.bins->back().readUpTo, lane.packets.back().readUpTo);
}

TEST(LaneBars, OfBinsAreTheLargestPacketsOfEachType) {
    const LaneBars bars = barsOf(timelineOf({laneOf(TrackKind::kVideo, pictures(90000))}));
    EXPECT_EQ(bars.top, 40000U);
    ASSERT_FALSE(bars.bars.empty());
    for (const Bar& bar : bars.bars) {
        EXPECT_EQ(bar.from, 0U);
        if (bar.type == FrameType::kIntra) {
            EXPECT_EQ(bar.to, 40000U);
        } else {
            EXPECT_LT(bar.to, 4000U);
        }
    }
}

TEST(LaneBars, ShareTheBinsAmongAllTracks) {
    std::vector<Lane> lanes(64, laneOf(TrackKind::kAudio, pictures(1000)));
    const Detail detail = detailOf(timelineOf(std::move(lanes)));
    EXPECT_FALSE(detail.packets);
    EXPECT_EQ(detail.bins, 140U);
}

TEST(Bins, HoldTheTimeInTheirMiddle) {
    const TimeAxis axis({0, 1000000});
    for (const size_t bin : {size_t{0}, size_t{57}, size_t{99}}) {
        EXPECT_EQ(binOf(timeOfBinUs(bin, axis, 100), axis, 100), bin);
    }
    EXPECT_EQ(binOf(-1e12, axis, 100), 0U);
    EXPECT_EQ(binOf(1e12, axis, 100), 99U);
}

}  // namespace
}  // namespace ogmprobe::timeline::test
