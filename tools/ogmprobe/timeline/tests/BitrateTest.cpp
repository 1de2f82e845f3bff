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
    std::vector<Timing> timings;
    for (const Lane& lane : timeline.lanes) {
        timings.push_back(timingOf(lane.packets));
    }
    return bitrateOf(timeline, timings, *spanOf(timeline));
}

TEST(Bitrate, SpreadsThePacketsOverTheTimeUpToTheNext) {
    auto packets = packetsAt({0, 300000, 700000, 1000000});
    packets[1].size = 1000;
    const Bitrate rate = rateOf(timelineOf({laneOf(TrackKind::kAudio, packets)}));
    EXPECT_THAT(rate.windowUs, DoubleEq(500000));
    EXPECT_THAT(rate.total, ElementsAre(DoubleEq(8016), DoubleEq(8016)));
    EXPECT_THAT(rate.highest, DoubleEq(8016));
}

TEST(Bitrate, OfAConstantStreamIsALineHoweverItsPagesFall) {
    std::vector<int64_t> timesUs;
    for (int64_t page = 0; page < 40; ++page) {
        timesUs.insert(timesUs.end(), 20, page * 522449);
    }
    const Bitrate rate = rateOf(timelineOf({laneOf(TrackKind::kAudio, packetsAt(timesUs))}));
    EXPECT_GT(rate.total.size(), 30U);
    for (const double bits : rate.total) {
        EXPECT_NEAR(bits, 160 / 0.522449, 0.01);
    }
}

TEST(Bitrate, IsNothingInAGap) {
    const Bitrate rate =
            rateOf(timelineOf({laneOf(TrackKind::kAudio, packetsAt({0, 100000, 200000, 300000,
                                                                    2400000, 2500000, 2600000}))}));
    EXPECT_THAT(rate.total[1], DoubleEq(0));
    EXPECT_THAT(rate.total[2], DoubleEq(0));
}

TEST(Bitrate, OfAllTracksIsTheSumOfTheirs) {
    const Bitrate rate =
            rateOf(timelineOf({laneOf(TrackKind::kVideo, packetsAt({0, 500000, 1000000})),
                               laneOf(TrackKind::kAudio, packetsAt({500000, 1000000}))}));
    EXPECT_THAT(rate.lanes[0], ElementsAre(16, 16));
    EXPECT_THAT(rate.lanes[1], ElementsAre(0, 16));
    EXPECT_THAT(rate.total, ElementsAre(16, 32));
}

TEST(Bitrate, OfALongFileCountsEachByteInFewWindows) {
    const Lane lane = laneOf(TrackKind::kVideo, pictures(90000));
    const Bitrate rate = rateOf(timelineOf({lane}));
    EXPECT_EQ(rate.total.size(), 240U);
    const double bits = std::accumulate(rate.total.begin(), rate.total.end(), 0.0);
    // The last packet begins where the last window ends.
    const uint64_t bytes = lane.packets.back().readUpTo - lane.packets.back().size;
    EXPECT_NEAR(bits * rate.windowUs / 8e6, static_cast<double>(bytes), 1);
}

TEST(Bitrate, OfASingleTimeHasAWindow) {
    const Bitrate rate = rateOf(timelineOf({laneOf(TrackKind::kVideo, packetsAt({7}))}));
    EXPECT_THAT(rate.total, ElementsAre(16));
}

}  // namespace
}  // namespace ogmprobe::timeline::test
