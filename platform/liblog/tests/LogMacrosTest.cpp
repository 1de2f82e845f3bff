// SPDX-License-Identifier: Apache-2.0
// The macros as in release builds, where LOG_NDEBUG is 1.
#define LOG_NDEBUG 1
#define LOG_TAG "LogMacrosTest"
#include <log/log.h>

#include "AbortText.h"
#include "LogFixture.h"

namespace {

class LogMacrosTest : public LogTest {
  private:
    const ThrowingAborter mAborter;
};

TEST_F(LogMacrosTest, EachMacroLogsWithItsPriorityAndTheTag) {
    ALOGD("%s", "d");
    ALOGI("%s", "i");
    ALOGW("%s", "w");
    ALOGE("%s", "e");
    ASSERT_EQ(4U, entries().size());
    const int priorities[] = {ANDROID_LOG_DEBUG, ANDROID_LOG_INFO, ANDROID_LOG_WARN,
                              ANDROID_LOG_ERROR};
    const std::string texts[] = {"d", "i", "w", "e"};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(priorities[i], entries()[i].priority);
        EXPECT_EQ(texts[i], entries()[i].text);
        EXPECT_EQ("LogMacrosTest", entries()[i].tag);
    }
}

TEST_F(LogMacrosTest, VerboseProducesNoCallAndDoesNotEvaluateItsArguments) {
    int evaluated = 0;
    ALOGV("%d", ++evaluated);
    ALOGV_IF(++evaluated > 0, "%d", ++evaluated);
    EXPECT_EQ(0, evaluated);
    EXPECT_TRUE(entries().empty());
}

TEST_F(LogMacrosTest, AConditionDecidesWhetherToLog) {
    ALOGD_IF(true, "d");
    ALOGI_IF(true, "i");
    ALOGW_IF(true, "w");
    ALOGE_IF(true, "%s", "e");
    ALOGD_IF(false, "no");
    ALOGI_IF(false, "no");
    ALOGW_IF(false, "no");
    ALOGE_IF(false, "no");
    ASSERT_EQ(4U, entries().size());
    EXPECT_EQ("d", entries()[0].text);
    EXPECT_EQ("e", entries()[3].text);
}

TEST_F(LogMacrosTest, TheGeneralMacroTakesPriorityAndTag) {
    ALOG(LOG_INFO, "OtherTag", "%d", 5);
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ(ANDROID_LOG_INFO, entries()[0].priority);
    EXPECT_EQ("OtherTag", entries()[0].tag);
    EXPECT_EQ("5", entries()[0].text);
}

TEST_F(LogMacrosTest, TheTagIsExpandedAtEachUse) {
#undef LOG_TAG
#define LOG_TAG "AnotherTag"
    ALOGI("text");
#undef LOG_TAG
#define LOG_TAG "LogMacrosTest"
    ALOGI("text");
    ASSERT_EQ(2U, entries().size());
    EXPECT_EQ("AnotherTag", entries()[0].tag);
    EXPECT_EQ("LogMacrosTest", entries()[1].tag);
}

TEST_F(LogMacrosTest, TheMacrosAreSingleStatements) {
    if (entries().empty())
        ALOGV("text");
    else
        ALOGE("text");
    if (!entries().empty())
        ALOGW_IF(true, "text");
    else
        ALOGE("else");
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("else", entries()[0].text);
}

TEST_F(LogMacrosTest, AlwaysFatalIfPassesTheConditionsTextOrTheMessage) {
    const int size = 3;
    EXPECT_EQ("Assertion failed: size > 2", abortText([&] { LOG_ALWAYS_FATAL_IF(size > 2); }));
    EXPECT_EQ("plain", abortText([&] { LOG_ALWAYS_FATAL_IF(size > 2, "plain"); }));
    EXPECT_EQ("size 3", abortText([&] { LOG_ALWAYS_FATAL_IF(size > 2, "size %d", size); }));
    ASSERT_EQ(3U, entries().size());
    EXPECT_EQ("LogMacrosTest", entries()[0].tag);
    EXPECT_EQ(ANDROID_LOG_FATAL, entries()[0].priority);
    EXPECT_EQ("(no abort)", abortText([&] { LOG_ALWAYS_FATAL_IF(size > 3, "size %d", size); }));
}

TEST_F(LogMacrosTest, AlwaysFatalHasNoCondition) {
    EXPECT_EQ("Unspecified assertion failed", abortText([] { LOG_ALWAYS_FATAL(); }));
    EXPECT_EQ("text", abortText([] { LOG_ALWAYS_FATAL("text"); }));
    EXPECT_EQ("1 and 2", abortText([] { LOG_ALWAYS_FATAL("%d and %d", 1, 2); }));
}

TEST_F(LogMacrosTest, TheDebugAssertionsVanish) {
    int evaluated = 0;
    LOG_FATAL_IF(++evaluated > 0, "text");
    LOG_FATAL("text");
    ALOG_ASSERT(++evaluated < 0, "text %d", 1);
    ALOG_ASSERT(++evaluated < 0);
    EXPECT_EQ(0, evaluated);
}

}  // namespace
