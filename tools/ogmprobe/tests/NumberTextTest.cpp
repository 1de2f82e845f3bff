// SPDX-License-Identifier: Apache-2.0
#include "text/NumberText.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

TEST(SizeText, TakesTheUnitThatFits) {
    EXPECT_EQ(sizeText(0), "0 B");
    EXPECT_EQ(sizeText(999), "999 B");
    EXPECT_EQ(sizeText(1000), "1.0 kB");
    EXPECT_EQ(sizeText(999949), "999.9 kB");
    EXPECT_EQ(sizeText(999951), "1.0 MB");
    EXPECT_EQ(sizeText(2500000000), "2.5 GB");
}

TEST(RateText, TakesTheUnitThatFits) {
    EXPECT_EQ(rateText(6100), "6.1 kbit/s");
    EXPECT_EQ(rateText(128000), "128 kbit/s");
    EXPECT_EQ(rateText(1234567), "1.23 Mbit/s");
}

TEST(Counted, HasOneInTheSingular) {
    EXPECT_EQ(counted(0, "packet"), "0 packets");
    EXPECT_EQ(counted(1, "packet"), "1 packet");
}

}  // namespace
}  // namespace ogmprobe
