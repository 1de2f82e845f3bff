// SPDX-License-Identifier: Apache-2.0
#include "sync/GranuleReading.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "sync/GroupRanges.h"

namespace ogmprobe {
namespace {

using Lengths = std::initializer_list<std::optional<int64_t>>;
using Ranges = std::vector<GranuleRange>;

PageGroup groupOf(int64_t granule, Lengths lengths) {
    PageGroup group;
    group.granule = granule;
    group.follows = true;
    for (const auto& length : lengths) {
        group.units.push_back({group.units.size(), length});
    }
    return group;
}

PageGroup firstGroup(int64_t granule, Lengths lengths) {
    PageGroup group = groupOf(granule, lengths);
    group.follows = false;
    group.isFirst = true;
    return group;
}

TEST(GranuleReading, TheFirstPageShowsWhatOthersDoNot) {
    EXPECT_EQ(readingOf({firstGroup(4, {1, 1, 1, 1}), groupOf(8, {1, 1, 1, 1})}),
              GranuleReading::kEnd);
    EXPECT_EQ(readingOf({firstGroup(3, {1, 1, 1, 1}), groupOf(7, {1, 1, 1, 1})}),
              GranuleReading::kBeginning);
    EXPECT_EQ(readingOf({firstGroup(9, {1, 1, 1, 1}), groupOf(13, {1, 1, 1, 1})}),
              GranuleReading::kUnknown);
}

TEST(GranuleReading, LaterPagesShowItWhereLengthsDiffer) {
    EXPECT_EQ(readingOf({groupOf(100, {10}), groupOf(120, {20})}), GranuleReading::kEnd);
    EXPECT_EQ(readingOf({groupOf(100, {10}), groupOf(110, {20})}), GranuleReading::kBeginning);
}

TEST(GranuleReading, WithoutLengthsNothingShowsIt) {
    EXPECT_EQ(readingOf({}), GranuleReading::kUnknown);
    EXPECT_EQ(readingOf({firstGroup(4, {std::nullopt}), groupOf(8, {std::nullopt})}),
              GranuleReading::kUnknown);
}

TEST(GranuleReading, PagesAfterAGapDoNotShowIt) {
    PageGroup late = groupOf(120, {20});
    late.follows = false;
    EXPECT_EQ(readingOf({groupOf(100, {10}), late}), GranuleReading::kUnknown);
}

TEST(GroupRanges, LengthsThatFillThePageGiveExactTimes) {
    const PageGroup before = groupOf(100, {10});
    EXPECT_EQ(rangesOf(groupOf(160, {10, 20, 30}), &before, GranuleReading::kEnd),
              (Ranges{{100, 100}, {110, 110}, {130, 130}}));
    EXPECT_EQ(rangesOf(groupOf(140, {10, 20, 30}), &before, GranuleReading::kBeginning),
              (Ranges{{110, 110}, {120, 120}, {140, 140}}));
}

TEST(GroupRanges, TheFirstPageIsCountedBackward) {
    EXPECT_EQ(rangesOf(firstGroup(1030, {10, 20}), nullptr, GranuleReading::kEnd),
              (Ranges{{1000, 1000}, {1010, 1010}}));
    EXPECT_EQ(rangesOf(firstGroup(1010, {10, 20}), nullptr, GranuleReading::kBeginning),
              (Ranges{{1000, 1000}, {1010, 1010}}));
}

TEST(GroupRanges, UnknownLengthsGiveTheGranulePositionsOfBothPages) {
    const PageGroup before = groupOf(100, {std::nullopt});
    const PageGroup group = groupOf(200, {std::nullopt, std::nullopt, std::nullopt});
    EXPECT_EQ(rangesOf(group, &before, GranuleReading::kUnknown),
              (Ranges{{100, 200}, {100, 200}, {100, 200}}));
    // The first begins where the page before ended.
    EXPECT_EQ(rangesOf(group, &before, GranuleReading::kEnd),
              (Ranges{{100, 100}, {100, 200}, {100, 200}}));
    // The last begins where its page says.
    EXPECT_EQ(rangesOf(group, &before, GranuleReading::kBeginning),
              (Ranges{{100, 200}, {100, 200}, {200, 200}}));
}

TEST(GroupRanges, AnUnknownReadingGivesBoth) {
    const PageGroup before = groupOf(10, {1});
    EXPECT_EQ(rangesOf(groupOf(12, {1, 1}), &before, GranuleReading::kUnknown),
              (Ranges{{10, 11}, {11, 12}}));
}

TEST(GroupRanges, FramesThatWereLeftOutLeaveBounds) {
    const PageGroup before = groupOf(10, {1});
    EXPECT_EQ(rangesOf(groupOf(15, {1, 1}), &before, GranuleReading::kEnd),
              (Ranges{{10, 13}, {11, 14}}));
}

TEST(GroupRanges, LengthsThatAreTooLongStayWithinThePages) {
    const PageGroup before = groupOf(10, {1});
    EXPECT_EQ(rangesOf(groupOf(12, {5, 5}), &before, GranuleReading::kEnd),
              (Ranges{{10, 10}, {10, 12}}));
}

TEST(GroupRanges, AfterAGapItIsCountedBackward) {
    const PageGroup before = groupOf(100, {10});
    PageGroup late = groupOf(200, {10, 10});
    late.follows = false;
    EXPECT_EQ(rangesOf(late, &before, GranuleReading::kEnd), (Ranges{{180, 180}, {190, 190}}));
    late.units[1].length.reset();
    EXPECT_EQ(rangesOf(late, &before, GranuleReading::kEnd), (Ranges{{100, 200}, {100, 200}}));
}

TEST(GroupRanges, AGranulePositionThatFallsBeginsAgain) {
    const PageGroup before = groupOf(1000, {10});
    EXPECT_EQ(rangesOf(groupOf(20, {10}), &before, GranuleReading::kEnd), (Ranges{{10, 10}}));
    EXPECT_EQ(rangesOf(groupOf(20, {std::nullopt}), &before, GranuleReading::kEnd),
              (Ranges{{0, 20}}));
}

}  // namespace
}  // namespace ogmprobe
