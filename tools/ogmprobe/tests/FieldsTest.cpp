// SPDX-License-Identifier: Apache-2.0
#include "codecs/Fields.h"

#include <gtest/gtest.h>

#include <array>

namespace ogmprobe {
namespace {

constexpr std::array<uint8_t, 4> kBytes = {'a', 'b', 3, 4};

TEST(NumberAt, HasItsLeastSignificantByteFirst) {
    EXPECT_EQ(numberAt(kBytes, 2, 2), 0x0403U);
    EXPECT_EQ(numberAt(kBytes, 0, 4), 0x04036261U);
}

TEST(NumberAt, TakesBytesPastTheEndForZero) {
    EXPECT_EQ(numberAt(kBytes, 3, 8), 4U);
    EXPECT_EQ(numberAt(kBytes, 9, 4), 0U);
    EXPECT_EQ(numberAt({}, 0, 4), 0U);
}

TEST(HoldsAt, NeedsTheWholeText) {
    EXPECT_TRUE(holdsAt(kBytes, 0, "ab"));
    EXPECT_TRUE(holdsAt(kBytes, 1, "b\3\4"));
    EXPECT_FALSE(holdsAt(kBytes, 1, "ab"));
    EXPECT_FALSE(holdsAt(kBytes, 3, "\4\5"));
    EXPECT_FALSE(holdsAt(kBytes, 9, "a"));
}

}  // namespace
}  // namespace ogmprobe
