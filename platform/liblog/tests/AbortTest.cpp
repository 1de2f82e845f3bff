// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <setjmp.h>
#include <signal.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "AbortText.h"
#include "CapturedStderr.h"
#include "LogFixture.h"

namespace {

constexpr char kTag[] = "AbortTest";

class AbortTest : public LogTest {
    const ThrowingAborter mAborter;
};

TEST_F(AbortTest, AMessageIsTheTextAndTheConditionIsNotUsed) {
    EXPECT_EQ("7 of x",
              abortText([] { __android_log_assert("condition", kTag, "%d of %s", 7, "x"); }));
}

TEST_F(AbortTest, WithoutAMessageTheTextNamesTheCondition) {
    EXPECT_EQ("Assertion failed: a < b",
              abortText([] { __android_log_assert("a < b", kTag, nullptr); }));
}

TEST_F(AbortTest, WithoutMessageAndConditionTheTextSaysSo) {
    EXPECT_EQ("Unspecified assertion failed",
              abortText([] { __android_log_assert(nullptr, kTag, nullptr); }));
}

TEST_F(AbortTest, TheTextIsCutAt1023Bytes) {
    const std::string longText(3000, 't');
    const char* const text = longText.c_str();
    EXPECT_EQ(longText.substr(0, 1023),
              abortText([=] { __android_log_assert(nullptr, kTag, "%s", text); }));
    EXPECT_EQ(("Assertion failed: " + longText).substr(0, 1023),
              abortText([=] { __android_log_assert(text, kTag, nullptr); }));
    ASSERT_EQ(2U, entries().size());
    EXPECT_EQ(longText.substr(0, 1023), entries()[0].text);
}

TEST_F(AbortTest, TheTextAndANewlineGoBareToDescriptor2) {
    EXPECT_EQ("bare 1\n",
              recordAbort([] { __android_log_assert(nullptr, kTag, "bare %d", 1); }).written);
}

TEST_F(AbortTest, TheTextIsLoggedAsFatalUnderTheTag) {
    abortText([] { __android_log_assert(nullptr, kTag, "fatal"); });
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ(ANDROID_LOG_FATAL, entries()[0].priority);
    EXPECT_EQ("AbortTest", entries()[0].tag);
    EXPECT_EQ("fatal", entries()[0].text);
    EXPECT_EQ(LOG_ID_MAIN, entries()[0].bufferId);
}

TEST_F(AbortTest, AnAssertionWithoutTagIsLoggedUnderTheDefaultTag) {
    abortText([] { __android_log_assert(nullptr, nullptr, "fatal"); });
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("log_test", entries()[0].tag);
}

TEST_F(AbortTest, TheLogLineIsSubjectToTheLevelButTheRestIsNot) {
    setProperty("log.tag.AbortTest", "S");
    const AbortRecord record = recordAbort([] { __android_log_assert(nullptr, kTag, "silent"); });
    EXPECT_EQ("silent", record.text);
    EXPECT_EQ("silent\n", record.written);
    EXPECT_TRUE(entries().empty());
}

const CapturedStderr* gCaptured = nullptr;
std::string gWrittenBeforeLogger;
size_t gLoggedBeforeAborter = 0;
size_t gLogged = 0;

TEST_F(AbortTest, TheOrderIsDescriptorThenLoggerThenAborter) {
    const CapturedStderr captured;
    gCaptured = &captured;
    __android_log_set_logger([](const struct __android_log_message*) {
        gWrittenBeforeLogger = gCaptured->text();
        ++gLogged;
    });
    __android_log_set_aborter([](const char* text) {
        gLoggedBeforeAborter = gLogged;
        ThrowingAborter::abort(text);
    });
    EXPECT_THROW(__android_log_assert(nullptr, kTag, "ordered"), Aborted);
    EXPECT_EQ("ordered\n", gWrittenBeforeLogger);
    EXPECT_EQ(1U, gLoggedBeforeAborter);
}

jmp_buf gAfterAssertion;

TEST_F(AbortTest, AnAborterMayLeaveByLongjmp) {
    const CapturedStderr captured;
    __android_log_set_aborter([](const char*) { longjmp(gAfterAssertion, 1); });
    if (setjmp(gAfterAssertion) == 0) {
        __android_log_assert("condition", kTag, nullptr);
    }
    EXPECT_EQ(1U, entries().size());
}

TEST_F(AbortTest, AnAborterMayEndTheProcessItsOwnWay) {
    __android_log_set_aborter([](const char*) { _exit(77); });
    EXPECT_EXIT(__android_log_assert(nullptr, kTag, "leaving"), testing::ExitedWithCode(77),
                "leaving");
}

TEST_F(AbortTest, AnAborterThatReturnsIsFollowedByAbort) {
    __android_log_set_aborter([](const char*) { fputs("returning\n", stderr); });
    EXPECT_EXIT(__android_log_assert(nullptr, kTag, "failed"), testing::KilledBySignal(SIGABRT),
                "failed\nreturning\n");
}

TEST_F(AbortTest, TheDefaultAborterAborts) {
    __android_log_set_aborter(__android_log_default_aborter);
    EXPECT_EXIT(__android_log_assert("x > 0", kTag, nullptr), testing::KilledBySignal(SIGABRT),
                "Assertion failed: x > 0\n");
    EXPECT_EXIT(__android_log_default_aborter("text"), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(AbortTest, CallAborterHandsTheTextToTheAborter) {
    EXPECT_THROW(
            {
                try {
                    __android_log_call_aborter("called");
                } catch (const Aborted& aborted) {
                    EXPECT_EQ("called", aborted.text);
                    throw;
                }
            },
            Aborted);
    EXPECT_TRUE(entries().empty());
}

TEST_F(AbortTest, CallAborterReturnsIfTheAborterDoes) {
    static std::vector<std::string> texts;
    texts.clear();
    __android_log_set_aborter([](const char* text) { texts.push_back(text); });
    __android_log_call_aborter("once");
    EXPECT_EQ(std::vector<std::string>{"once"}, texts);
}

}  // namespace
