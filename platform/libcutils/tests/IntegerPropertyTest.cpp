// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include <errno.h>

#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace {

constexpr char kKey[] = "test.integer";
constexpr int32_t kDefault = -123;

int32_t parsed32(const char* value) {
    EXPECT_EQ(0, property_set(kKey, value));
    return property_get_int32(kKey, kDefault);
}

int64_t parsed64(const char* value) {
    EXPECT_EQ(0, property_set(kKey, value));
    return property_get_int64(kKey, kDefault);
}

TEST(IntegerPropertyTest, DecimalDigitsAreTheirNumber) {
    EXPECT_EQ(1, parsed32("1"));
    EXPECT_EQ(1, parsed64("1"));
    EXPECT_EQ(0, parsed32("0"));
}

TEST(IntegerPropertyTest, LeadingWhiteSpaceIsIgnored) {
    EXPECT_EQ(1, parsed32(" 1"));
    EXPECT_EQ(1, parsed32("\t\n 1"));
    EXPECT_EQ(1, parsed64(" 1"));
}

TEST(IntegerPropertyTest, ASignMayComeFirst) {
    EXPECT_EQ(1, parsed32("+1"));
    EXPECT_EQ(-1, parsed32("-1"));
    EXPECT_EQ(-1, parsed64("-1"));
}

TEST(IntegerPropertyTest, TextAfterTheDigitsIsIgnored) {
    EXPECT_EQ(1, parsed32("1abc"));
    EXPECT_EQ(1, parsed32("1 2"));
    EXPECT_EQ(1, parsed64("1abc"));
}

TEST(IntegerPropertyTest, APrefixOfZeroXMakesHexadecimal) {
    EXPECT_EQ(31, parsed32("0x1F"));
    EXPECT_EQ(16, parsed32("0x10"));
    EXPECT_EQ(31, parsed64("0x1F"));
}

TEST(IntegerPropertyTest, ALeadingZeroMakesOctal) {
    EXPECT_EQ(8, parsed32("010"));
    EXPECT_EQ(8, parsed64("010"));
}

TEST(IntegerPropertyTest, ADigitThatIsNotOctalEndsAnOctalNumber) {
    EXPECT_EQ(0, parsed32("08"));
    EXPECT_EQ(0, parsed64("08"));
}

TEST(IntegerPropertyTest, TextWithoutANumberIsTheDefault) {
    for (const char* value : {"abc", "", " ", "true", "-", "+x"}) {
        EXPECT_EQ(kDefault, parsed32(value)) << '"' << value << '"';
        EXPECT_EQ(kDefault, parsed64(value)) << '"' << value << '"';
    }
}

TEST(IntegerPropertyTest, TheLimitsOf32BitsAreInRange) {
    EXPECT_EQ(std::numeric_limits<int32_t>::max(), parsed32("2147483647"));
    EXPECT_EQ(std::numeric_limits<int32_t>::min(), parsed32("-2147483648"));
}

TEST(IntegerPropertyTest, MoreThan32BitsIsTheDefaultAndNotClamped) {
    EXPECT_EQ(kDefault, parsed32("2147483648"));
    EXPECT_EQ(kDefault, parsed32("-2147483649"));
    EXPECT_EQ(kDefault, parsed32("99999999999999999999"));
}

TEST(IntegerPropertyTest, The64BitFormTakesWhatThe32BitFormRefuses) {
    EXPECT_EQ(INT64_C(2147483648), parsed64("2147483648"));
    EXPECT_EQ(INT64_C(-2147483649), parsed64("-2147483649"));
    EXPECT_EQ(std::numeric_limits<int64_t>::max(), parsed64("9223372036854775807"));
    EXPECT_EQ(std::numeric_limits<int64_t>::min(), parsed64("-9223372036854775808"));
}

TEST(IntegerPropertyTest, MoreThan64BitsIsTheDefaultAndNotClamped) {
    EXPECT_EQ(kDefault, parsed64("9223372036854775808"));
    EXPECT_EQ(kDefault, parsed64("-9223372036854775809"));
    EXPECT_EQ(kDefault, parsed64("99999999999999999999"));
}

TEST(IntegerPropertyTest, AnAbsentPropertyAndANullKeyAreTheDefault) {
    EXPECT_EQ(kDefault, property_get_int32("test.integer.absent", kDefault));
    EXPECT_EQ(kDefault, property_get_int64("test.integer.absent", kDefault));
    EXPECT_EQ(kDefault, property_get_int32(nullptr, kDefault));
    EXPECT_EQ(kDefault, property_get_int64(nullptr, kDefault));
}

TEST(IntegerPropertyTest, DoesNotChangeErrnoEvenWhenOutOfRange) {
    for (const char* value : {"1", "abc", "99999999999999999999"}) {
        errno = EXDEV;
        parsed32(value);
        EXPECT_EQ(EXDEV, errno) << value;
        parsed64(value);
        EXPECT_EQ(EXDEV, errno) << value;
    }
}

TEST(IntegerPropertyTest, AnEarlierRangeErrorInErrnoDoesNotMatter) {
    errno = ERANGE;
    EXPECT_EQ(5, parsed32("5"));
}

}  // namespace
