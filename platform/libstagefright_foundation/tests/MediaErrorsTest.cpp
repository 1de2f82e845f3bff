// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaErrors.h>

#include <gtest/gtest.h>

namespace {

TEST(MediaErrors, ValuesAreThoseOfThePlatform) {
    EXPECT_EQ(android::MEDIA_ERROR_BASE, -1000);
    EXPECT_EQ(android::ERROR_IO, -1004);
    EXPECT_EQ(android::ERROR_MALFORMED, -1007);
    EXPECT_EQ(android::ERROR_OUT_OF_RANGE, -1008);
    EXPECT_EQ(android::ERROR_UNSUPPORTED, -1010);
    EXPECT_EQ(android::ERROR_END_OF_STREAM, -1011);
    EXPECT_EQ(android::INFO_FORMAT_CHANGED, -1012);
}

}  // namespace
