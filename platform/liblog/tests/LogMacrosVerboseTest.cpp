// SPDX-License-Identifier: Apache-2.0
// The macros as in debug builds, where LOG_NDEBUG is 0; through the header's second path.
#define LOG_NDEBUG 0
#define LOG_TAG "LogMacrosVerboseTest"
#include <utils/Log.h>

#include "AbortText.h"
#include "LogFixture.h"

namespace {

class LogMacrosVerboseTest : public LogTest {
  private:
    const ThrowingAborter mAborter;
};

TEST_F(LogMacrosVerboseTest, VerboseIsLogged) {
    ALOGV("%d", 1);
    ALOGV_IF(true, "%d", 2);
    ALOGV_IF(false, "%d", 3);
    ASSERT_EQ(2U, entries().size());
    EXPECT_EQ(ANDROID_LOG_VERBOSE, entries()[0].priority);
    EXPECT_EQ("1", entries()[0].text);
    EXPECT_EQ("2", entries()[1].text);
}

TEST_F(LogMacrosVerboseTest, TheDebugAssertionsAbort) {
    const bool odd = true;
    EXPECT_EQ("Assertion failed: odd", abortText([&] { LOG_FATAL_IF(odd); }));
    EXPECT_EQ("odd 3", abortText([&] { LOG_FATAL_IF(odd, "odd %d", 3); }));
    EXPECT_EQ("text", abortText([] { LOG_FATAL("text"); }));
    EXPECT_EQ("Assertion failed: !(!odd)", abortText([&] { ALOG_ASSERT(!odd); }));
    EXPECT_EQ("not 3", abortText([&] { ALOG_ASSERT(!odd, "not %d", 3); }));
    EXPECT_EQ("(no abort)", abortText([&] { ALOG_ASSERT(odd); }));
}

}  // namespace
