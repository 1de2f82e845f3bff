// SPDX-License-Identifier: Apache-2.0
#include "Bitrate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

#include "Lanes.h"

namespace ogmprobe::timeline::test {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;

Bitrate rateOf(const Timeline& timeline) {
    return bitrateOf(timeline, *spanOf(timeline));
}

TEST(Bitrate, IsTakenOfHalfSeconds) {
    auto packets = packetsAt({0, 250000, 500000, 1000000});
    packets[1].size = 1000;
    const Bitrate rate = rateOf(timelineOf({laneOf(TrackKind::kAudio, packets)}));
    EXPECT_THAT(rate.windowUs, DoubleEq(500000));
    EXPECT_THAT(rate.total, ElementsAre(DoubleEq(16016), DoubleEq(32)));
    EXPECT_THAT(rate.highest, DoubleEq(16016));
}

TEST(Bitrate, OfAllTracksIsTheSumOfTheirs) {
    const Bitrate rate = rateOf(timelineOf({laneOf(TrackKind::kVideo, packetsAt({0, 1000000})),
                                            laneOf(TrackKind::kAudio, packetsAt({600000}))}));
    EXPECT_THAT(rate.lanes[0], ElementsAre(16, 16));
    EXPECT_THAT(rate.lanes[1], ElementsAre(0, 16));
    EXPECT_THAT(rate.total, ElementsAre(16, 32));
}

TEST(Bitrate, OfALongFileCountsEachByteInFewWindows) {
    const Lane lane = laneOf(TrackKind::kVideo, pictures(90000));
    const Bitrate rate = rateOf(timelineOf({lane}));
    EXPECT_EQ(rate.total.size(), 240U);
    const double bits = std::accumulate(rate.total.begin(), rate.total.end(), 0.0);
    EXPECT_NEAR(bits * rate.windowUs / 8e6, static_cast<double>(lane.packets.back().readUpTo), 1);
}

TEST(Bitrate, OfASingleTimeHasAWindow) {
    const Bitrate rate = rateOf(timelineOf({laneOf(TrackKind::kVideo, packetsAt({7}))}));
    EXPECT_THAT(rate.total, ElementsAre(16));
}

}  // namespace
}  // namespace ogmprobe::timeline::test
