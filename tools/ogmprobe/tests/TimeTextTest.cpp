// SPDX-License-Identifier: Apache-2.0
#include "text/TimeText.h"

#include <gtest/gtest.h>

#include <limits>

#include "text/TimeArithmetic.h"

namespace ogmprobe {
namespace {

constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();
constexpr int64_t kGreatest = std::numeric_limits<int64_t>::max();

TEST(SecondsText, HasSixDecimalsAndTheSign) {
    EXPECT_EQ(secondsText(0), "0.000000");
    EXPECT_EQ(secondsText(1), "0.000001");
    EXPECT_EQ(secondsText(90123456), "90.123456");
    EXPECT_EQ(secondsText(-1500000), "-1.500000");
    EXPECT_EQ(secondsText(-1), "-0.000001");
}

TEST(SecondsText, HoldsTheMostNegativeTime) {
    EXPECT_EQ(secondsText(kLeast), "-9223372036854.775808");
}

TEST(SecondsText, IsADashWithoutATime) {
    EXPECT_EQ(secondsText(std::nullopt), "-");
}

TEST(HoursText, HasHoursMinutesAndSeconds) {
    EXPECT_EQ(hoursText(0), "0:00:00");
    EXPECT_EQ(hoursText(359999), "99:59:59");
}

TEST(DurationText, ShowsHoursToMilliseconds) {
    EXPECT_EQ(durationText(90000000), "0:01:30.000");
    EXPECT_EQ(durationText(36061001999), "10:01:01.001");
    EXPECT_EQ(durationText(1), "0:00:00.000");
}

TEST(DurationText, IsUnknownForNothingZeroAndLess) {
    EXPECT_EQ(durationText(std::nullopt), "unknown");
    EXPECT_EQ(durationText(0), "unknown");
    EXPECT_EQ(durationText(-1), "unknown");
}

TEST(ParseSeconds, GivesWholeMicroseconds) {
    EXPECT_EQ(parseSeconds("0"), 0);
    EXPECT_EQ(parseSeconds("12.5"), 12500000);
    EXPECT_EQ(parseSeconds("33.366700"), 33366700);
    EXPECT_EQ(parseSeconds("-0.25"), -250000);
}

TEST(ParseSeconds, RefusesWhatIsNoNumberOfSeconds) {
    for (const char* text : {"", "x", "1x", " 1", "1:30", "1e3", "inf", "nan", "99999999999"}) {
        EXPECT_EQ(parseSeconds(text), std::nullopt) << text;
    }
}

TEST(ClockText, HasHoursMinutesSecondsAndMicroseconds) {
    EXPECT_EQ(clockText(3723000004), "1:02:03.000004");
    EXPECT_EQ(clockText(-1500000), "-0:00:01.500000");
}

TEST(ParseTime, TakesSecondsAndMinutesAndHours) {
    EXPECT_EQ(parseTime("12.5"), 12500000);
    EXPECT_EQ(parseTime("1:02.5"), 62500000);
    EXPECT_EQ(parseTime("00:00:03"), 3000000);
    EXPECT_EQ(parseTime("1:00:00.25"), 3600250000);
}

TEST(ParseTime, RefusesWhatIsNoTime) {
    for (const char* text :
         {"", ":", "1:", ":1", "1:60", "1:-1", "a:1", "-1:1", "1::1", "1:1e1", "1:2:3:4"}) {
        EXPECT_EQ(parseTime(text), std::nullopt) << text;
    }
}

TEST(TimeDifference, WrapsWhereItDoesNotFit) {
    EXPECT_EQ(timeDifferenceUs(40000, 80000), -40000);
    EXPECT_EQ(timeDifferenceUs(kLeast, 1), kGreatest);
}

TEST(PartOfTime, ReachesTheWholeInEqualSteps) {
    EXPECT_EQ(partOfTimeUs(100, 0, 4), 0);
    EXPECT_EQ(partOfTimeUs(100, 1, 4), 25);
    EXPECT_EQ(partOfTimeUs(10, 1, 3), 3);
    EXPECT_EQ(partOfTimeUs(10, 2, 3), 6);
    EXPECT_EQ(partOfTimeUs(kGreatest, 1000000, 1000000), kGreatest);
}

}  // namespace
}  // namespace ogmprobe
