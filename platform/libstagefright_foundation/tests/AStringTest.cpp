// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/AString.h>

#include <android/log.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <type_traits>

#include "ExpectAssertion.h"
#include "LogCapture.h"

using android::AString;
using android::AStringPrintf;

namespace {

#define FOUNDATION "frameworks/av/media/libstagefright/foundation/"

template <typename T>
std::string appended(T value) {
    AString text;
    text.append(value);
    return text.c_str();
}

enum PlainEnum { kPlain = 3 };

template <typename T, typename = void>
constexpr bool kCanAppend = false;
template <typename T>
constexpr bool
        kCanAppend<T, std::void_t<decltype(std::declval<AString&>().append(std::declval<T>()))>> =
                true;

TEST(AString, IsEmptyByDefault) {
    AString text;
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(text.size(), 0u);
    EXPECT_STREQ(text.c_str(), "");
}

TEST(AString, TakesTextBytesOrAPart) {
    EXPECT_STREQ(AString("abc").c_str(), "abc");
    EXPECT_EQ(AString("a\0b", 3).size(), 3u);
    EXPECT_EQ(AString(AString("abcdef"), 2, 3), AString("cde"));
    EXPECT_EQ(AString(std::string("xyz")), AString("xyz"));
    AString original("abc");
    AString copy(original);
    original.append("d");
    EXPECT_STREQ(copy.c_str(), "abc");
}

TEST(AString, NullGivesTheEmptyStringAndAWarningLine) {
    LogCapture log;
    EXPECT_TRUE(AString(static_cast<const char*>(nullptr)).empty());
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].priority, ANDROID_LOG_WARN);
    EXPECT_EQ(log.lines()[0].tag, "AString");
    EXPECT_EQ(log.lines()[0].message, "a null text is taken as the empty string");
}

TEST(AString, AppendsIntegersAsDecimalNumbers) {
    EXPECT_EQ(appended(-7), "-7");
    EXPECT_EQ(appended(4000000000u), "4000000000");
    EXPECT_EQ(appended(-70000000000l), "-70000000000");
    EXPECT_EQ(appended(18446744073709551615ul), "18446744073709551615");
    EXPECT_EQ(appended(-8ll), "-8");
    EXPECT_EQ(appended(18446744073709551615ull), "18446744073709551615");
}

TEST(AString, AppendsNarrowTypesAsDecimalNumbersButCharAsACharacter) {
    EXPECT_EQ(appended('A'), "A");
    EXPECT_EQ(appended(int8_t{65}), "65");
    EXPECT_EQ(appended(uint8_t{200}), "200");
    EXPECT_EQ(appended(int16_t{-300}), "-300");
    EXPECT_EQ(appended(uint16_t{65535}), "65535");
    EXPECT_EQ(appended(true), "1");
    EXPECT_EQ(appended(kPlain), "3");
    EXPECT_EQ(appended(INT64_MIN), "-9223372036854775808");
    EXPECT_EQ(appended(SIZE_MAX), "18446744073709551615");
}

TEST(AString, AppendsFloatingPointNumbersWithSixDecimals) {
    EXPECT_EQ(appended(1.5f), "1.500000");
    EXPECT_EQ(appended(-0.25), "-0.250000");
    EXPECT_EQ(appended(12345678.0), "12345678.000000");
}

TEST(AString, AppendsPointersAndTexts) {
    int object = 0;
    char expected[32];
    snprintf(expected, sizeof(expected), "%p", static_cast<void*>(&object));
    EXPECT_EQ(appended(static_cast<void*>(&object)), expected);
    EXPECT_EQ(appended("text"), "text");
    EXPECT_EQ(appended(AString("other")), "other");
    AString text;
    text.append("abcdef", 2);
    text.append(AString("uvwxyz"), 1, 2);
    EXPECT_STREQ(text.c_str(), "abvw");
}

TEST(AString, RefusesOtherPointersToConstAndScopedEnums) {
    enum class Scoped { kOne };
    EXPECT_TRUE(kCanAppend<const char*>);
    EXPECT_TRUE(kCanAppend<void*>);
    EXPECT_FALSE(kCanAppend<const int*>);
    EXPECT_FALSE(kCanAppend<Scoped>);
}

TEST(AString, SetToReplacesTheText) {
    AString text("old");
    text.setTo("new");
    EXPECT_STREQ(text.c_str(), "new");
    text.setTo("abcdef", 2);
    EXPECT_STREQ(text.c_str(), "ab");
    text.setTo(AString("abcdef"), 4, 2);
    EXPECT_STREQ(text.c_str(), "ef");
    text.clear();
    EXPECT_TRUE(text.empty());
}

TEST(AString, InsertsAndErasesInside) {
    AString text("abef");
    text.insert(AString("cd"), 2);
    text.insert("xyz", 1, 6);
    EXPECT_STREQ(text.c_str(), "abcdefx");
    text.erase(0, 2);
    text.erase(4, 1);
    text.erase(4, 0);
    EXPECT_STREQ(text.c_str(), "cdef");
}

TEST(AString, FindGivesThePlaceOrMinusOne) {
    const AString text("abcabc");
    EXPECT_EQ(text.find("bc"), 1);
    EXPECT_EQ(text.find("bc", 2), 4);
    EXPECT_EQ(text.find("cb"), -1);
    EXPECT_EQ(text.find("a", 6), -1);
}

TEST(AString, TrimsWhiteSpaceAtBothEnds) {
    AString text(" \t\n a b \r\n");
    text.trim();
    EXPECT_STREQ(text.c_str(), "a b");
    AString blank("  ");
    blank.trim();
    EXPECT_TRUE(blank.empty());
}

TEST(AString, TolowerChangesLettersOfAsciiOnly) {
    AString text("AZaz09\xc4");
    text.tolower();
    EXPECT_STREQ(text.c_str(), "azaz09\xc4");
}

TEST(AString, ComparesByBytes) {
    EXPECT_TRUE(AString("abc") == AString("abc"));
    EXPECT_TRUE(AString("abc") != AString("abd"));
    EXPECT_TRUE(AString("abc") < AString("abd"));
    EXPECT_TRUE(AString("abcd") > AString("abc"));
    EXPECT_LT(AString("a").compare("b"), 0);
    EXPECT_EQ(AString("a").compare("a"), 0);
    EXPECT_GT(AString("b").compare("a"), 0);
    EXPECT_TRUE(AString("MiMe").equalsIgnoreCase("mImE"));
    EXPECT_FALSE(AString("mime").equalsIgnoreCase("mim"));
}

TEST(AString, KnowsItsBeginningAndItsEnd) {
    const AString text("video/avc");
    EXPECT_TRUE(text.startsWith("video/"));
    EXPECT_FALSE(text.startsWith("audio/"));
    EXPECT_FALSE(text.startsWith("video/avcx"));
    EXPECT_TRUE(text.endsWith("/avc"));
    EXPECT_FALSE(text.endsWith("/hevc"));
    EXPECT_FALSE(text.endsWith("a video/avc"));
}

TEST(AString, PrintfFormatsTextOfAnyLength) {
    EXPECT_STREQ(AStringPrintf("%d of %s", 3, "five").c_str(), "3 of five");
    EXPECT_EQ(AStringPrintf("%5000d", 1).size(), 5000u);
    EXPECT_TRUE(AStringPrintf("%s", "").empty());
}

TEST(AStringDeathTest, ANumberOfMoreThan15CharactersAborts) {
    EXPECT_ASSERTION(appended(123456789.0), "AString",
                     FOUNDATION
                     "AString.cpp:262 CHECK_LE( text.size(),kMaxFloatText) failed: 16 vs. 15");
}

TEST(AStringDeathTest, PlacesOutsideTheTextAbort) {
    AString text("abc");
    EXPECT_ASSERTION(text.insert("x", 1, 4), "AString",
                     FOUNDATION "AString.cpp:284 CHECK_LE( insertionPos,size()) failed: 4 vs. 3");
    EXPECT_ASSERTION(text.erase(4, 0), "AString",
                     FOUNDATION "AString.cpp:186 CHECK_LE( start,size()) failed: 4 vs. 3");
    EXPECT_ASSERTION(text.erase(1, 3), "AString",
                     FOUNDATION "AString.cpp:187 CHECK_LE( n,size() - start) failed: 3 vs. 2");
    EXPECT_ASSERTION(text.find("a", 4), "AString",
                     FOUNDATION "AString.cpp:212 CHECK_LE( start,size()) failed: 4 vs. 3");
    EXPECT_ASSERTION(AString(text, 4, 0), "AString",
                     FOUNDATION "AString.cpp:148 CHECK_LE( offset,from.size()) failed: 4 vs. 3");
    EXPECT_ASSERTION(AString(text, 1, 3), "AString",
                     FOUNDATION
                     "AString.cpp:149 CHECK_LE( n,from.size() - offset) failed: 3 vs. 2");
}

}  // namespace
