// SPDX-License-Identifier: Apache-2.0
#include "Timing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "Lanes.h"

namespace ogmprobe::timeline::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Timing, OfASteadyTrackHasNothingToMark) {
    const Timing timing = timingOf(packetsAt({0, 40000, 80000, 120000}));
    EXPECT_EQ(timing.packetUs, 40000);
    EXPECT_EQ(timing.groups.size(), 4U);
    EXPECT_THAT(timing.gaps, IsEmpty());
    EXPECT_THAT(timing.backwardSteps, IsEmpty());
    EXPECT_EQ(timing.repeatedTimes, 0U);
}

TEST(Timing, OfRoundedTimesHasNoGaps) {
    EXPECT_THAT(timingOf(packetsAt({0, 33366, 66733, 100100, 133466})).gaps, IsEmpty());
}

TEST(Timing, HasAGapWhereAPacketIsMissing) {
    const Timing timing = timingOf(packetsAt({0, 40000, 80000, 160000, 200000, 240000}));
    ASSERT_EQ(timing.gaps.size(), 1U);
    EXPECT_EQ(timing.gaps[0].fromUs, 120000);
    EXPECT_EQ(timing.gaps[0].toUs, 160000);
}

TEST(Timing, CountsAllPacketsOfATimeForTheLengthOfTheGroup) {
    // Pages of three packets, which all have the time of their page.
    const Timing timing = timingOf(packetsAt({0, 0, 0, 120000, 120000, 120000, 240000, 240000}));
    EXPECT_EQ(timing.packetUs, 40000);
    EXPECT_EQ(timing.repeatedTimes, 5U);
    EXPECT_THAT(timing.gaps, IsEmpty());
}

TEST(Timing, HasAGapWhereAGroupOfPacketsIsMissing) {
    const Timing timing = timingOf(
            packetsAt({0, 0, 120000, 120000, 360000, 360000, 480000, 480000, 600000, 600000}));
    ASSERT_EQ(timing.gaps.size(), 1U);
    EXPECT_EQ(timing.gaps[0].fromUs, 240000);
    EXPECT_EQ(timing.gaps[0].toUs, 360000);
}

TEST(Timing, FindsBackwardStepsInTheOrderOfTheFile) {
    const Timing timing = timingOf(packetsAt({0, 120000, 40000, 80000, 240000, 160000}));
    EXPECT_THAT(timing.backwardSteps, ElementsAre(2, 5));
}

TEST(Timing, PutsGroupsInTheOrderOfTheirTimes) {
    const Timing timing = timingOf(packetsAt({80000, 0, 80000}));
    ASSERT_EQ(timing.groups.size(), 2U);
    EXPECT_THAT(timing.groups[0].packets, ElementsAre(1));
    EXPECT_THAT(timing.groups[1].packets, ElementsAre(0, 2));
}

TEST(Timing, OfASingleTimeHasNoLength) {
    const Timing timing = timingOf(packetsAt({5, 5}));
    EXPECT_EQ(timing.packetUs, 0);
    EXPECT_THAT(timing.gaps, IsEmpty());
    EXPECT_THAT(timingOf({}).groups, IsEmpty());
}

TEST(Timing, HandlesTimesAtBothEndsOfTheirType) {
    constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();
    constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
    const Timing timing = timingOf(packetsAt({kMost, kLeast}));
    EXPECT_THAT(timing.backwardSteps, ElementsAre(1));
    EXPECT_GT(timing.packetUs, 1.8e19);
}

}  // namespace
}  // namespace ogmprobe::timeline::test
