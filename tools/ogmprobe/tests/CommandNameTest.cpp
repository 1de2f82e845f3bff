// SPDX-License-Identifier: Apache-2.0
#include "options/CommandName.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

using Words = std::vector<std::string>;

const Words kNames = {"info", "packets", "seektest", "extract", "explain", "compare"};

TEST(NearestName, IsTheOneThatDiffersLeast) {
    EXPECT_EQ(nearestName("inof", kNames), "info");
    EXPECT_EQ(nearestName("packet", kNames), "packets");
    EXPECT_EQ(nearestName("explian", kNames), "explain");
    EXPECT_EQ(nearestName("comp", kNames), "compare");
}

TEST(NearestName, IsEmptyWhereNoNameIsNear) {
    EXPECT_EQ(nearestName("frobnicate", kNames), std::nullopt);
}

TEST(WithCommand, TreatsAFileWithoutACommandAsInfo) {
    EXPECT_EQ(withCommand({"film.ogm"}, kNames), (Words{"info", "film.ogm"}));
    EXPECT_EQ(withCommand({"-"}, kNames), (Words{"info", "-"}));
    EXPECT_EQ(withCommand({"--json", "a/film"}, kNames), (Words{"info", "--json", "a/film"}));
    EXPECT_EQ(withCommand({"--plugin", "a.so", "b.ogm"}, kNames),
              (Words{"info", "--plugin", "a.so", "b.ogm"}));
}

TEST(WithCommand, LeavesCommandsAndOtherWordsAlone) {
    for (const Words& words : {Words{"packets", "film.ogm"}, Words{"inof", "film.ogm"},
                               Words{"--plugin", "a.so", "info"}, Words{"--help"}, Words{}}) {
        EXPECT_EQ(withCommand(words, kNames), words);
    }
}

}  // namespace
}  // namespace ogmprobe
