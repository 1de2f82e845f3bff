// SPDX-License-Identifier: Apache-2.0
#include <utils/Errors.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(Errors, StatusIsA32BitSignedNumber) {
    EXPECT_TRUE((std::is_same_v<android::status_t, int32_t>));
}

TEST(Errors, ValuesAreThoseOfThePlatform) {
    EXPECT_EQ(android::OK, 0);
    EXPECT_EQ(android::NO_ERROR, 0);
    EXPECT_EQ(android::UNKNOWN_ERROR, -2147483647 - 1);
    EXPECT_EQ(android::BAD_TYPE, -2147483647);
    EXPECT_EQ(android::NO_MEMORY, -12);
    EXPECT_EQ(android::INVALID_OPERATION, -38);
    EXPECT_EQ(android::BAD_VALUE, -22);
    EXPECT_EQ(android::NAME_NOT_FOUND, -2);
    EXPECT_EQ(android::NO_INIT, -19);
    EXPECT_EQ(android::BAD_INDEX, -75);
    EXPECT_EQ(android::NOT_ENOUGH_DATA, -61);
    EXPECT_EQ(android::WOULD_BLOCK, -11);
    EXPECT_EQ(android::TIMED_OUT, -110);
    EXPECT_EQ(android::ALREADY_EXISTS, -17);
    EXPECT_EQ(android::PERMISSION_DENIED, -1);
}

}  // namespace
