// SPDX-License-Identifier: Apache-2.0
#include "FileExtents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Timeline.h"

namespace ogmprobe::timeline::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

TEST(FileExtents, AreKeptApartInTheOrderOfTheFile) {
    FileExtents extents;
    extents.add(50, 10);
    extents.add(0, 10);
    EXPECT_THAT(extents.parts(), ElementsAre(Pair(0, 10), Pair(50, 60)));
}

TEST(FileExtents, ThatTouchBecomeOne) {
    FileExtents extents;
    extents.add(0, 10);
    extents.add(20, 10);
    extents.add(10, 10);
    EXPECT_THAT(extents.parts(), ElementsAre(Pair(0, 30)));
}

TEST(FileExtents, ThatWereReadBeforeAddNothing) {
    FileExtents extents;
    extents.add(0, 100);
    extents.add(20, 10);
    extents.add(0, 100);
    EXPECT_THAT(extents.parts(), ElementsAre(Pair(0, 100)));
}

TEST(FileExtents, GrowOverAllThatTheyCover) {
    FileExtents extents;
    extents.add(10, 1);
    extents.add(20, 1);
    extents.add(40, 1);
    extents.add(5, 30);
    EXPECT_THAT(extents.parts(), ElementsAre(Pair(5, 35), Pair(40, 41)));
}

TEST(ReadCost, CountsReadsOfNoBytesWithoutExtents) {
    ReadCost cost;
    cost.add({100, 10, -1});
    cost.add({100, 10, 0});
    EXPECT_EQ(cost.reads, 2U);
    EXPECT_EQ(cost.bytes, 0U);
    EXPECT_THAT(cost.extents.parts(), IsEmpty());
}

TEST(ReadCost, CountsTheBytesThatCame) {
    ReadCost cost;
    cost.add({100, 10, 4});
    cost.add({100, 10, 10});
    EXPECT_EQ(cost.bytes, 14U);
    EXPECT_THAT(cost.extents.parts(), ElementsAre(Pair(100, 110)));
}

}  // namespace
}  // namespace ogmprobe::timeline::test
