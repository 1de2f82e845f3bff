// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include <errno.h>

#include <gtest/gtest.h>

namespace {

constexpr char kKey[] = "test.bool";
constexpr int8_t kDefault = 7;

int8_t parsed(const char* value) {
    EXPECT_EQ(0, property_set(kKey, value));
    return property_get_bool(kKey, kDefault);
}

TEST(BoolPropertyTest, FiveWordsAreTrue) {
    for (const char* value : {"1", "y", "yes", "true", "on"}) {
        EXPECT_EQ(1, parsed(value)) << value;
    }
}

TEST(BoolPropertyTest, FiveWordsAreFalse) {
    for (const char* value : {"0", "n", "no", "false", "off"}) {
        EXPECT_EQ(0, parsed(value)) << value;
    }
}

TEST(BoolPropertyTest, OtherCaseIsTheDefault) {
    for (const char* value : {"Y", "Yes", "TRUE", "On", "N", "No", "FALSE", "Off"}) {
        EXPECT_EQ(kDefault, parsed(value)) << value;
    }
}

TEST(BoolPropertyTest, AnyOtherTextIsTheDefault) {
    for (const char* value : {"", " ", "2", "01", " 1", "1 ", "10", "t", "f", "truee", "-1"}) {
        EXPECT_EQ(kDefault, parsed(value)) << '"' << value << '"';
    }
}

TEST(BoolPropertyTest, AnAbsentPropertyAndANullKeyAreTheDefault) {
    EXPECT_EQ(kDefault, property_get_bool("test.bool.absent", kDefault));
    EXPECT_EQ(kDefault, property_get_bool(nullptr, kDefault));
}

TEST(BoolPropertyTest, DoesNotChangeErrno) {
    errno = EXDEV;
    EXPECT_EQ(1, parsed("yes"));
    EXPECT_EQ(EXDEV, errno);
}

}  // namespace
