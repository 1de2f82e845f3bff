// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <errno.h>

#include <string>

#include "CapturedStderr.h"
#include "LogFixture.h"

namespace {

__android_log_message message(int32_t bufferId, int32_t priority = ANDROID_LOG_INFO) {
    return {sizeof(__android_log_message),
            bufferId,
            priority,
            "LoggerTest",
            "file.cpp",
            12,
            "text"};
}

class LoggerTest : public LogTest {};

TEST_F(LoggerTest, OnlyTheTextBuffersAreAccepted) {
    for (const int32_t bufferId :
         {LOG_ID_MAIN, LOG_ID_RADIO, LOG_ID_SYSTEM, LOG_ID_CRASH, LOG_ID_DEFAULT}) {
        entries().clear();
        __android_log_message toBuffer = message(bufferId);
        __android_log_write_log_message(&toBuffer);
        ASSERT_EQ(1U, entries().size()) << bufferId;
        EXPECT_EQ(bufferId, entries()[0].bufferId);
    }
    entries().clear();
    for (const int32_t bufferId : {-1, static_cast<int>(LOG_ID_EVENTS),
                                   static_cast<int>(LOG_ID_STATS), 6, 7, 8, 0x7FFFFFFE}) {
        __android_log_message toBuffer = message(bufferId);
        __android_log_write_log_message(&toBuffer);
        EXPECT_TRUE(entries().empty()) << bufferId;
    }
}

TEST_F(LoggerTest, APrintToABufferThatIsNotAcceptedStillGivesOne) {
    EXPECT_EQ(1, __android_log_buf_write(LOG_ID_EVENTS, ANDROID_LOG_INFO, "LoggerTest", "text"));
    EXPECT_TRUE(entries().empty());
}

TEST_F(LoggerTest, AWholeMessageIsNotTestedForItsLevel) {
    __android_log_set_minimum_priority(ANDROID_LOG_ERROR);
    setProperty("log.tag.LoggerTest", "S");
    __android_log_message verbose = message(LOG_ID_MAIN, ANDROID_LOG_VERBOSE);
    __android_log_write_log_message(&verbose);
    EXPECT_EQ(1U, entries().size());
}

TEST_F(LoggerTest, FileAndLineReachTheLogger) {
    __android_log_message withFile = message(LOG_ID_MAIN);
    __android_log_write_log_message(&withFile);
    ASSERT_EQ(1U, entries().size());
    EXPECT_TRUE(entries()[0].hasFile);
    EXPECT_EQ(12U, entries()[0].line);
}

TEST_F(LoggerTest, ANullTagOfAWholeMessageBecomesTheDefaultTag) {
    __android_log_message untagged = message(LOG_ID_MAIN);
    untagged.tag = nullptr;
    __android_log_write_log_message(&untagged);
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("log_test", entries()[0].tag);
}

TEST_F(LoggerTest, AWholeMessagePreservesErrno) {
    __android_log_set_logger([](const struct __android_log_message*) { errno = EIO; });
    __android_log_message any = message(LOG_ID_MAIN);
    errno = EXDEV;
    __android_log_write_log_message(&any);
    EXPECT_EQ(EXDEV, errno);
}

TEST_F(LoggerTest, TheDefaultLoggerWritesALineToStandardError) {
    __android_log_set_logger(__android_log_logd_logger);
    const CapturedStderr captured;
    __android_log_print(ANDROID_LOG_DEBUG, "LoggerTest", "visible");
    const std::string line = captured.text();
    EXPECT_EQ(0U, line.find("LoggerTest D ")) << line;
    EXPECT_NE(std::string::npos, line.find("] visible\n")) << line;
}

}  // namespace
