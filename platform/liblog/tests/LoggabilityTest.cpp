// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <errno.h>

#include <string>
#include <utility>

#include "LogFixture.h"

namespace {

constexpr char kTag[] = "LoggabilityTest";

class LoggabilityTest : public LogTest {
  protected:
    /** The lowest priority that passes for kTag. */
    static int level(int defaultLevel = ANDROID_LOG_VERBOSE) {
        int priority = ANDROID_LOG_UNKNOWN;
        while (__android_log_is_loggable(priority, kTag, defaultLevel) == 0) {
            ++priority;
        }
        return priority;
    }
};

TEST_F(LoggabilityTest, WithoutPropertyAndMinimumTheCallersDefaultApplies) {
    EXPECT_EQ(ANDROID_LOG_VERBOSE, level(ANDROID_LOG_VERBOSE));
    EXPECT_EQ(ANDROID_LOG_WARN, level(ANDROID_LOG_WARN));
}

TEST_F(LoggabilityTest, AMinimumReplacesTheCallersDefault) {
    __android_log_set_minimum_priority(ANDROID_LOG_WARN);
    EXPECT_EQ(ANDROID_LOG_WARN, level(ANDROID_LOG_VERBOSE));
    EXPECT_EQ(ANDROID_LOG_WARN, level(ANDROID_LOG_FATAL));
}

TEST_F(LoggabilityTest, SettingTheMinimumGivesTheFormerOne) {
    EXPECT_EQ(ANDROID_LOG_DEFAULT, __android_log_get_minimum_priority());
    EXPECT_EQ(ANDROID_LOG_DEFAULT, __android_log_set_minimum_priority(ANDROID_LOG_ERROR));
    EXPECT_EQ(ANDROID_LOG_ERROR, __android_log_get_minimum_priority());
    EXPECT_EQ(ANDROID_LOG_ERROR, __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT));
    EXPECT_EQ(ANDROID_LOG_DEFAULT, __android_log_get_minimum_priority());
}

TEST_F(LoggabilityTest, TheFirstLetterOfAPropertyIsTheLevel) {
    const std::pair<const char*, int> levels[] = {
            {"V", ANDROID_LOG_VERBOSE}, {"D", ANDROID_LOG_DEBUG},  {"I", ANDROID_LOG_INFO},
            {"W", ANDROID_LOG_WARN},    {"E", ANDROID_LOG_ERROR},  {"F", ANDROID_LOG_FATAL},
            {"A", ANDROID_LOG_FATAL},   {"S", ANDROID_LOG_SILENT}, {"WARN", ANDROID_LOG_WARN},
    };
    for (const auto& [value, expected] : levels) {
        setProperty("log.tag.LoggabilityTest", value);
        EXPECT_EQ(expected, level(ANDROID_LOG_VERBOSE)) << value;
        EXPECT_EQ(expected, level(ANDROID_LOG_SILENT)) << value;
    }
}

TEST_F(LoggabilityTest, AnUnknownLetterMeansNoProperty) {
    setProperty("log.tag.LoggabilityTest", "X");
    EXPECT_EQ(ANDROID_LOG_INFO, level(ANDROID_LOG_INFO));
}

TEST_F(LoggabilityTest, ThePropertiesAreReadFromTheMostSpecificOn) {
    setProperty("log.tag", "E");
    EXPECT_EQ(ANDROID_LOG_ERROR, level());
    setProperty("persist.log.tag", "W");
    EXPECT_EQ(ANDROID_LOG_WARN, level());
    setProperty("log.tag.LoggabilityTest", "I");
    EXPECT_EQ(ANDROID_LOG_INFO, level());
    setProperty("persist.log.tag.LoggabilityTest", "D");
    EXPECT_EQ(ANDROID_LOG_DEBUG, level());
}

TEST_F(LoggabilityTest, ThePropertyOfAnotherTagIsNotUsed) {
    setProperty("log.tag.LoggabilityTestMore", "E");
    setProperty("log.tag.Loggability", "E");
    EXPECT_EQ(ANDROID_LOG_VERBOSE, level());
    __android_log_set_minimum_priority(ANDROID_LOG_WARN);
    setProperty("log.tagged", "V");
    setProperty("persist.log.tags", "V");
    EXPECT_EQ(ANDROID_LOG_WARN, level());
}

TEST_F(LoggabilityTest, ALowerLevelOfAnotherTagIsOnlyThatTags) {
    __android_log_set_minimum_priority(ANDROID_LOG_ERROR);
    setProperty("log.tag.LoggabilityTestMore", "V");
    EXPECT_EQ(ANDROID_LOG_ERROR, level());
    EXPECT_EQ(1, __android_log_is_loggable(ANDROID_LOG_VERBOSE, "LoggabilityTestMore",
                                           ANDROID_LOG_FATAL));
    setProperty("persist.log.tag.LoggabilityTest", "D");
    EXPECT_EQ(ANDROID_LOG_DEBUG, level());
}

TEST_F(LoggabilityTest, APropertyThatBecomesEmptyNoLongerApplies) {
    setProperty("log.tag.LoggabilityTest", "E");
    EXPECT_EQ(ANDROID_LOG_ERROR, level());
    setProperty("log.tag.LoggabilityTest", "");
    EXPECT_EQ(ANDROID_LOG_VERBOSE, level());
}

TEST_F(LoggabilityTest, OfMinimumAndPropertyTheLowerApplies) {
    __android_log_set_minimum_priority(ANDROID_LOG_WARN);
    setProperty("log.tag.LoggabilityTest", "E");
    EXPECT_EQ(ANDROID_LOG_WARN, level());
    setProperty("log.tag.LoggabilityTest", "D");
    EXPECT_EQ(ANDROID_LOG_DEBUG, level());
}

TEST_F(LoggabilityTest, ANullTagMeansTheDefaultTag) {
    __android_log_set_default_tag("LoggabilityDefault");
    setProperty("log.tag.LoggabilityDefault", "E");
    EXPECT_EQ(0, __android_log_is_loggable(ANDROID_LOG_WARN, nullptr, ANDROID_LOG_VERBOSE));
    EXPECT_EQ(1, __android_log_is_loggable(ANDROID_LOG_ERROR, nullptr, ANDROID_LOG_VERBOSE));
    EXPECT_EQ(0, __android_log_is_loggable_len(ANDROID_LOG_WARN, nullptr, 9, ANDROID_LOG_VERBOSE));
    EXPECT_EQ(0, __android_log_is_loggable_len(ANDROID_LOG_WARN, "x", 0, ANDROID_LOG_VERBOSE));
    __android_log_set_default_tag("log_test");
}

TEST_F(LoggabilityTest, TheLengthFormTakesOnlyThatMuchOfTheTag) {
    setProperty("log.tag.LoggabilityTest", "E");
    const std::string longer = std::string(kTag) + "More";
    EXPECT_EQ(0, __android_log_is_loggable_len(ANDROID_LOG_WARN, longer.c_str(), sizeof kTag - 1,
                                               ANDROID_LOG_VERBOSE));
    EXPECT_EQ(1, __android_log_is_loggable_len(ANDROID_LOG_WARN, longer.c_str(), longer.size(),
                                               ANDROID_LOG_VERBOSE));
}

TEST_F(LoggabilityTest, AChangedPropertyAppliesAtOnce) {
    EXPECT_EQ(ANDROID_LOG_VERBOSE, level());
    setProperty("log.tag", "W");
    EXPECT_EQ(ANDROID_LOG_WARN, level());
    setProperty("log.tag.LoggabilityTest", "E");
    EXPECT_EQ(ANDROID_LOG_ERROR, level());
}

TEST_F(LoggabilityTest, TagsInTurnKeepTheirLevels) {
    const std::string longTag(100, 'L');
    setProperty("log.tag.LoggabilityTest", "E");
    setProperty("log.tag." + longTag, "W");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(ANDROID_LOG_ERROR, level());
        EXPECT_FALSE(__android_log_is_loggable(ANDROID_LOG_INFO, longTag.c_str(), 0));
        EXPECT_TRUE(__android_log_is_loggable(ANDROID_LOG_WARN, longTag.c_str(), 0));
        EXPECT_TRUE(__android_log_is_loggable(ANDROID_LOG_INFO, "LoggabilityTest2", 0));
    }
}

TEST_F(LoggabilityTest, DoesNotChangeErrno) {
    errno = EXDEV;
    level();
    EXPECT_EQ(EXDEV, errno);
}

}  // namespace
