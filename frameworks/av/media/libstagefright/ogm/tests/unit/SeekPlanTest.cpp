// SPDX-License-Identifier: Apache-2.0
#include "seek/SeekPlan.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace android::ogm::test::seek_plan_test {
namespace {

constexpr int64_t kDurationUs = 40'000'000;
constexpr int64_t kUnknownDuration = 0;

TEST(SeekPlanTest, BelowThreeSecondsASeekGoesToTheStart) {
    for (const int64_t timeUs : {INT64_MIN, int64_t{-1}, int64_t{0}, int64_t{2'999'999}}) {
        EXPECT_EQ(chooseSeekGoal(timeUs, kDurationUs), SeekGoal::kStart) << timeUs;
        EXPECT_EQ(chooseSeekGoal(timeUs, kUnknownDuration), SeekGoal::kStart) << timeUs;
    }
    EXPECT_EQ(chooseSeekGoal(3'000'000, kDurationUs), SeekGoal::kScan);
    // Even in a file that ends there.
    EXPECT_EQ(chooseSeekGoal(1'000'000, 1'000'000), SeekGoal::kStart);
}

TEST(SeekPlanTest, InTheLast200MillisecondsAndAfterThemASeekGoesToTheEnd) {
    EXPECT_EQ(chooseSeekGoal(kDurationUs - 200'000, kDurationUs), SeekGoal::kScan);
    EXPECT_EQ(chooseSeekGoal(kDurationUs - 199'999, kDurationUs), SeekGoal::kEnd);
    EXPECT_EQ(chooseSeekGoal(kDurationUs + 1, kDurationUs), SeekGoal::kEnd);
    EXPECT_EQ(chooseSeekGoal(INT64_MAX, kDurationUs), SeekGoal::kEnd);
}

TEST(SeekPlanTest, WithoutADurationThereIsNoEnd) {
    EXPECT_EQ(chooseSeekGoal(INT64_MAX, kUnknownDuration), SeekGoal::kScan);
}

TEST(SeekPlanTest, ANegativeDurationIsOneThatHasPassedUntilTheDifferenceWraps) {
    EXPECT_EQ(chooseSeekGoal(3'000'000, -1), SeekGoal::kEnd);
    EXPECT_EQ(chooseSeekGoal(3'000'000, INT64_MIN), SeekGoal::kScan);
}

TEST(SeekPlanTest, TheOffsetOfATimeIsInProportionToTheData) {
    // 17 of 40 seconds of 1,024,000 bytes after 81 bytes of headers.
    EXPECT_EQ(estimateOffset(17'000'000, kDurationUs, 81, 1'024'081), 435'281);
    EXPECT_EQ(estimateOffset(0, kDurationUs, 81, 1'024'081), 81);
    EXPECT_EQ(estimateOffset(1, kDurationUs, 81, 1'024'081), 81);
}

TEST(SeekPlanTest, TheProductOfTheEstimateWrapsAt64Bits) {
    constexpr int64_t k2To32 = int64_t{1} << 32;
    EXPECT_EQ(estimateOffset(k2To32, 2, 81, 81 + k2To32), 81);
    EXPECT_EQ(estimateOffset(k2To32, 2, 81, 81 + k2To32 + 1), 81 + k2To32 / 2);
}

TEST(SeekPlanTest, TheEstimateOfAFileThatEndsBeforeItsDataLiesBeforeThem) {
    EXPECT_EQ(estimateOffset(20'000'000, kDurationUs, 81, 1), 41);
}

TEST(SeekPlanTest, StepsBackAreLongFromAfarAndEndAtTheStart) {
    struct Row {
        int64_t from;
        int64_t to;
    };
    for (const Row& row :
         {Row{700'000, 700'000 - 262'144}, Row{327'680, 65'536}, Row{327'679, 327'679 - 65'536},
          Row{65'537, 1}, Row{65'536, 0}, Row{65'535, 0}, Row{81, 0}, Row{0, 0}, Row{-5, 0}}) {
        EXPECT_EQ(stepBackFrom(row.from), row.to) << row.from;
    }
}

TEST(SeekPlanTest, AScanMayEndTwoSecondsTooLate) {
    EXPECT_FALSE(isScanTooLate(10'072'000, 8'072'000));
    EXPECT_TRUE(isScanTooLate(10'072'000, 8'071'999));
    EXPECT_FALSE(isScanTooLate(0, 8'000'000));
}

}  // namespace
}  // namespace android::ogm::test::seek_plan_test
