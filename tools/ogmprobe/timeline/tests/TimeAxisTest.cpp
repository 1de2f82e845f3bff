// SPDX-License-Identifier: Apache-2.0
#include "TimeAxis.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Lanes.h"

namespace ogmprobe::timeline::test {
namespace {

using testing::ElementsAre;

std::vector<std::string> labelsOf(const TimeSpan& span, int most) {
    std::vector<std::string> labels;
    for (const Tick& tick : ticksOf(TimeAxis(span), most)) {
        labels.push_back(tick.label);
    }
    return labels;
}

TEST(TimeAxis, HasAllTimesWithin) {
    const TimeAxis axis({-40000, 960000});
    EXPECT_GT(axis.place(int64_t{-40000}), 0);
    EXPECT_LT(axis.place(int64_t{960000}), 1);
    EXPECT_DOUBLE_EQ(axis.place(int64_t{460000}), 0.5);
}

TEST(TimeAxis, OfOneTimeHasALength) {
    EXPECT_GT(TimeAxis({5, 5}).lengthUs(), 0);
}

TEST(TimeAxis, HasTicksAtRoundTimes) {
    EXPECT_THAT(labelsOf({-40000, 5640000}, 6),
                ElementsAre("0:00", "0:01", "0:02", "0:03", "0:04", "0:05"));
    EXPECT_THAT(labelsOf({0, 90000000}, 4), ElementsAre("0:00", "0:30", "1:00", "1:30"));
    EXPECT_THAT(labelsOf({0, 3600000000}, 3), ElementsAre("0:00", "30:00", "1:00:00"));
}

TEST(TimeAxis, HasNoMoreTicksThanAreWanted) {
    constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
    for (const int64_t lastUs :
         {int64_t{0}, int64_t{1}, int64_t{7000}, int64_t{86400000000}, kMost}) {
        const size_t ticks = ticksOf(TimeAxis({0, lastUs}), 12).size();
        EXPECT_GE(ticks, 1U) << lastUs;
        EXPECT_LE(ticks, 13U) << lastUs;
    }
}

TEST(TickLabel, HasTheDecimalsOfTheStep) {
    EXPECT_EQ(tickLabel(65e6, 1e6), "1:05");
    EXPECT_EQ(tickLabel(65.5e6, 5e5), "1:05.5");
    EXPECT_EQ(tickLabel(-40e3, 2e4), "-0:00.04");
    EXPECT_EQ(tickLabel(7200e6, 1e6), "2:00:00");
}

TEST(TickLabel, IsRoundedBeforeItIsCutIntoMinutes) {
    EXPECT_EQ(tickLabel(59.96e6, 1e5), "1:00.0");
    EXPECT_EQ(tickLabel(-1e3, 1e6), "0:00");
}

TEST(TimeSpan, CoversPacketsAndSeeks) {
    Timeline timeline = timelineOf({laneOf(TrackKind::kVideo, packetsAt({40000, -40000}))});
    timeline.seeks.push_back({90000, std::nullopt, false, {}});
    const auto span = spanOf(timeline);
    ASSERT_TRUE(span);
    EXPECT_EQ(span->firstUs, -40000);
    EXPECT_EQ(span->lastUs, 90000);
    EXPECT_FALSE(spanOf(Timeline{}));
}

}  // namespace
}  // namespace ogmprobe::timeline::test
