// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "sync/FileSync.h"

namespace ogmprobe {
namespace {

std::vector<LatePoint> everySecond(size_t count, int64_t lateUs, int64_t risingBy) {
    std::vector<LatePoint> points;
    for (size_t i = 0; i < count; ++i) {
        const auto number = static_cast<int64_t>(i);
        points.push_back({i, number * 1000000, TimeRange::at(lateUs + number * risingBy), true});
    }
    return points;
}

TEST(TimeRange, ADifferenceHoldsAllThatItCanBe) {
    EXPECT_EQ((TimeRange{10, 20} - TimeRange{1, 4}), (TimeRange{6, 19}));
    EXPECT_EQ(nearestDifferenceUs(INT64_MAX, -1), INT64_MAX);
    EXPECT_EQ(nearestDifferenceUs(INT64_MIN, 1), INT64_MIN);
}

TEST(TimeRange, TheCertainValueIsTheNearestToZero) {
    EXPECT_EQ((TimeRange{-5, 3}).certainUs(), 0);
    EXPECT_EQ((TimeRange{2, 3}).certainUs(), 2);
    EXPECT_EQ((TimeRange{-7, -3}).certainUs(), -3);
    EXPECT_EQ((TimeRange{INT64_MIN, INT64_MAX}).middleUs(), -1);
}

TEST(Deviation, NothingFromNothing) {
    const Deviation deviation = deviationOf({});
    EXPECT_EQ(deviation.compared, 0U);
    EXPECT_FALSE(deviation.offsetUs);
    EXPECT_FALSE(deviation.driftPpm);
    EXPECT_FALSE(deviation.earliest);
}

TEST(Deviation, AConstantDifferenceIsAnOffsetWithoutDrift) {
    const Deviation deviation = deviationOf(everySecond(20, -500, 0));
    EXPECT_EQ(deviation.offsetUs, TimeRange::at(-500));
    EXPECT_DOUBLE_EQ(deviation.driftPpm.value_or(1), 0);
    EXPECT_EQ(deviation.earliest, 0U);
    EXPECT_FALSE(deviation.latest);
    EXPECT_EQ(deviation.exact, 20U);
}

TEST(Deviation, ADifferenceThatGrowsIsADrift) {
    const Deviation deviation = deviationOf(everySecond(20, 0, 1000));
    EXPECT_DOUBLE_EQ(deviation.driftPpm.value_or(0), 1000);
    EXPECT_EQ(deviation.latest, 19U);
    EXPECT_EQ(deviation.spreadUs, (TimeRange{0, 19000}));
}

TEST(Deviation, OneWildTimeIsNoDrift) {
    auto points = everySecond(21, 0, 0);
    points[20].lateUs = TimeRange::at(INT64_MAX);
    EXPECT_DOUBLE_EQ(deviationOf(points).driftPpm.value_or(1), 0);
}

TEST(Deviation, FewOrShortDataShowNoDrift) {
    EXPECT_FALSE(deviationOf(everySecond(7, 0, 1000)).driftPpm);
    auto points = everySecond(20, 0, 1000);
    for (auto& point : points) {
        point.timeUs /= 1000;
    }
    EXPECT_FALSE(deviationOf(points).driftPpm);
}

TEST(Deviation, TheWorstIsOnlyTheCertainPart) {
    const Deviation deviation = deviationOf(
            {{0, 0, {-900, 5}, true}, {1, 1, {-300, -200}, true}, {2, 2, {-100, 400}, true}});
    EXPECT_EQ(deviation.earliest, 1U);
    EXPECT_FALSE(deviation.latest);
    EXPECT_EQ(deviation.spreadUs, (TimeRange{-900, 400}));
    EXPECT_EQ(deviation.exact, 0U);
}

/** Points with only a page's time and the plug-in's time, in seconds. */
TrackSync trackOf(const std::vector<std::pair<int64_t, int64_t>>& times) {
    TrackSync track;
    for (const auto& [pageUs, pluginUs] : times) {
        SyncPoint point;
        point.pageUs = TimeRange::at(pageUs);
        point.pluginUs = pluginUs;
        point.lateUs = TimeRange::at(pluginUs) - *point.pageUs;
        track.points.push_back(point);
    }
    return track;
}

TEST(PairPoints, AudioIsComparedWithThePictureOnShow) {
    const TrackSync video = trackOf({{0, 10}, {40, 60}, {80, 80}});
    const TrackSync audio = trackOf({{0, 0}, {39, 39}, {40, 50}, {200, 200}});
    const auto points = pairPointsOf(audio, video);
    ASSERT_EQ(points.size(), 4U);
    EXPECT_EQ(points[0].lateUs, TimeRange::at(-10));
    EXPECT_EQ(points[1].lateUs, TimeRange::at(-10));
    EXPECT_EQ(points[2].lateUs, TimeRange::at(-10));
    EXPECT_EQ(points[3].lateUs, TimeRange::at(0));
}

TEST(PairPoints, PicturesStoredOutOfOrderMakeNoDifference) {
    // I P B B P B B ...: a P picture is shown two pictures later than stored, a B picture one
    // earlier.
    std::vector<std::pair<int64_t, int64_t>> times;
    for (int64_t i = 0; i < 90; ++i) {
        times.emplace_back(i * 40, i * 40 + (i % 3 == 0 ? 80 : -40));
    }
    const auto points = pairPointsOf(trackOf({{1200, 1200}, {1240, 1240}}), trackOf(times));
    EXPECT_EQ(points[0].lateUs, TimeRange::at(0));
    EXPECT_EQ(points[1].lateUs, TimeRange::at(0));
}

TEST(PairPoints, WithoutVideoThereIsNothingToCompare) {
    EXPECT_TRUE(pairPointsOf(trackOf({{0, 0}}), TrackSync()).empty());
}

}  // namespace
}  // namespace ogmprobe
