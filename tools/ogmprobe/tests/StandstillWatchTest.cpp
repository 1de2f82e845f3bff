// SPDX-License-Identifier: Apache-2.0
#include "process/StandstillWatch.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

using State = StandstillWatch::State;
using Seconds = StandstillWatch::Duration;

TEST(StandstillWatch, WarnsWhenNothingMovesForLongerThanTheLimit) {
    StandstillWatch watch(Seconds(10), 1);
    EXPECT_EQ(watch.observe(Seconds(10), 1), State::kAlive);
    EXPECT_EQ(watch.observe(Seconds(0.1), 1), State::kStandsStill);
}

TEST(StandstillWatch, BeginsAgainWithEachSignOfLife) {
    StandstillWatch watch(Seconds(10), 1);
    for (uint64_t signs = 2; signs < 10; ++signs) {
        EXPECT_EQ(watch.observe(Seconds(9), signs), State::kAlive);
    }
    EXPECT_EQ(watch.observe(Seconds(9), 9), State::kAlive);
    EXPECT_EQ(watch.observe(Seconds(9), 9), State::kStandsStill);
}

TEST(StandstillWatch, WarnsWhenSignsOfLifeAreAllThatComesForTenTimesTheLimit) {
    StandstillWatch watch(Seconds(10), 0);
    for (uint64_t signs = 1; signs <= 20; ++signs) {
        EXPECT_EQ(watch.observe(Seconds(5), signs), State::kAlive);
    }
    EXPECT_EQ(watch.observe(Seconds(5), 21), State::kNeverEnds);
}

TEST(StandstillWatch, NeverWarnsWithoutALimit) {
    StandstillWatch watch(Seconds(0), 0);
    EXPECT_EQ(watch.observe(Seconds(1e9), 0), State::kAlive);
}

}  // namespace
}  // namespace ogmprobe
