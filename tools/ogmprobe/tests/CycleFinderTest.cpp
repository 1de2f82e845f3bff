// SPDX-License-Identifier: Apache-2.0
#include "plugin/CycleFinder.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace ogmprobe {
namespace {

void add(CycleFinder& finder, std::initializer_list<uint64_t> elements) {
    for (const uint64_t element : elements) {
        finder.add(element);
    }
}

TEST(CycleFinder, FindsARoundOfOne) {
    CycleFinder finder;
    for (int i = 0; i < 100; ++i) {
        finder.add(7);
    }
    EXPECT_EQ(finder.period(), 1U);
    EXPECT_GT(finder.rounds(), 90U);
}

TEST(CycleFinder, FindsARoundThatHoldsAnElementTwiceAfterOtherElements) {
    CycleFinder finder;
    add(finder, {90, 91, 92, 93, 94});
    for (int i = 0; i < 1000; ++i) {
        add(finder, {1, 2, 1, 3, 4});
    }
    EXPECT_EQ(finder.period(), 5U);
    EXPECT_GT(finder.rounds(), 100U);
}

TEST(CycleFinder, FindsNothingInASequenceThatNeverRepeats) {
    CycleFinder finder;
    for (uint64_t i = 0; i < 100000; ++i) {
        add(finder, {5, i});
    }
    EXPECT_LE(finder.rounds(), 1U);
}

TEST(CycleFinder, BeginsAgainWithEachDifference) {
    CycleFinder finder;
    for (int i = 0; i < 1000; ++i) {
        finder.add(7);
    }
    finder.add(8);
    EXPECT_EQ(finder.rounds(), 0U);
}

TEST(CycleFinder, ForgetsAllWhenItIsCleared) {
    CycleFinder finder;
    add(finder, {7, 7, 7, 7});
    finder.clear();
    EXPECT_EQ(finder.rounds(), 0U);
    finder.add(7);
    EXPECT_EQ(finder.rounds(), 0U);
}

}  // namespace
}  // namespace ogmprobe
