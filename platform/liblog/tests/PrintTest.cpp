// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <errno.h>
#include <stdarg.h>

#include <string>
#include <thread>
#include <vector>

#include "LogFixture.h"

namespace {

constexpr char kTag[] = "PrintTest";

class PrintTest : public LogTest {};

__attribute__((__format__(printf, 3, 4))) int vprint(int priority, const char* tag,
                                                     const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = __android_log_vprint(priority, tag, format, arguments);
    va_end(arguments);
    return result;
}

TEST_F(PrintTest, PrintFormatsAndGivesOneAndNotALength) {
    EXPECT_EQ(1, __android_log_print(ANDROID_LOG_WARN, kTag, "%d pages of %s", 3, "file"));
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("3 pages of file", entries()[0].text);
    EXPECT_EQ("PrintTest", entries()[0].tag);
    EXPECT_EQ(ANDROID_LOG_WARN, entries()[0].priority);
}

TEST_F(PrintTest, AMessageHasItsSizeNoFileAndTheMainBuffer) {
    __android_log_print(ANDROID_LOG_INFO, kTag, "text");
    vprint(ANDROID_LOG_INFO, kTag, "text");
    __android_log_write(ANDROID_LOG_INFO, kTag, "text");
    ASSERT_EQ(3U, entries().size());
    for (const Entry& entry : entries()) {
        EXPECT_EQ(sizeof(__android_log_message), entry.structSize);
        EXPECT_FALSE(entry.hasFile);
        EXPECT_EQ(0U, entry.line);
        EXPECT_EQ(LOG_ID_MAIN, entry.bufferId);
    }
}

TEST_F(PrintTest, VprintFormatsAsPrintDoes) {
    EXPECT_EQ(1, vprint(ANDROID_LOG_ERROR, kTag, "%s=%d", "x", 7));
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("x=7", entries()[0].text);
    EXPECT_EQ(ANDROID_LOG_ERROR, entries()[0].priority);
}

TEST_F(PrintTest, DebugAndVerbosePassByDefault) {
    EXPECT_EQ(1, __android_log_print(ANDROID_LOG_DEBUG, kTag, "debug"));
    EXPECT_EQ(1, __android_log_print(ANDROID_LOG_VERBOSE, kTag, "verbose"));
    EXPECT_EQ(2U, entries().size());
}

TEST_F(PrintTest, PrioritiesBelowVerboseDoNotPass) {
    EXPECT_EQ(-EPERM, __android_log_print(ANDROID_LOG_DEFAULT, kTag, "default"));
    EXPECT_EQ(-EPERM, __android_log_print(ANDROID_LOG_UNKNOWN, kTag, "unknown"));
    EXPECT_TRUE(entries().empty());
}

TEST_F(PrintTest, ALineThatIsFilteredOutGivesMinusEperm) {
    setProperty("log.tag.PrintTest", "E");
    EXPECT_EQ(-EPERM, __android_log_print(ANDROID_LOG_WARN, kTag, "text"));
    EXPECT_EQ(-EPERM, vprint(ANDROID_LOG_WARN, kTag, "text"));
    EXPECT_EQ(-EPERM, __android_log_write(ANDROID_LOG_WARN, kTag, "text"));
    EXPECT_EQ(-EPERM, __android_log_buf_write(LOG_ID_SYSTEM, ANDROID_LOG_WARN, kTag, "text"));
    EXPECT_EQ(-EPERM, __android_log_buf_print(LOG_ID_SYSTEM, ANDROID_LOG_WARN, kTag, "text"));
    EXPECT_TRUE(entries().empty());
}

TEST_F(PrintTest, TheFormatOfALineThatIsFilteredOutIsNotRead) {
    __android_log_set_minimum_priority(ANDROID_LOG_ERROR);
    const char* const unreadable = reinterpret_cast<const char*>(1);
    EXPECT_EQ(-EPERM, __android_log_print(ANDROID_LOG_WARN, kTag, "%s", unreadable));
    EXPECT_EQ(-EPERM, vprint(ANDROID_LOG_WARN, kTag, "%s", unreadable));
}

TEST_F(PrintTest, AFormattedTextIsCutAt1023Bytes) {
    const std::string text(5000, 'x');
    EXPECT_EQ(1, __android_log_print(ANDROID_LOG_INFO, kTag, "%s", text.c_str()));
    EXPECT_EQ(1, vprint(ANDROID_LOG_INFO, kTag, "%s", text.c_str()));
    EXPECT_EQ(1, __android_log_buf_print(LOG_ID_MAIN, ANDROID_LOG_INFO, kTag, "%s", text.c_str()));
    ASSERT_EQ(3U, entries().size());
    for (const Entry& entry : entries()) {
        EXPECT_EQ(text.substr(0, 1023), entry.text);
    }
}

TEST_F(PrintTest, AFormattedTextOf1023BytesIsWhole) {
    const std::string text(1023, 'y');
    __android_log_print(ANDROID_LOG_INFO, kTag, "%s", text.c_str());
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ(text, entries()[0].text);
}

TEST_F(PrintTest, AWrittenTextIsUnchangedWhateverItsLength) {
    const std::string text = std::string(5000, 'z') + "%s %n";
    EXPECT_EQ(1, __android_log_write(ANDROID_LOG_INFO, kTag, text.c_str()));
    EXPECT_EQ(1, __android_log_buf_write(LOG_ID_MAIN, ANDROID_LOG_INFO, kTag, text.c_str()));
    ASSERT_EQ(2U, entries().size());
    EXPECT_EQ(text, entries()[0].text);
    EXPECT_EQ(text, entries()[1].text);
}

TEST_F(PrintTest, TrailingNewlinesAreNeitherRemovedNorAdded) {
    __android_log_print(ANDROID_LOG_INFO, kTag, "one\n");
    __android_log_print(ANDROID_LOG_INFO, kTag, "none");
    ASSERT_EQ(2U, entries().size());
    EXPECT_EQ("one\n", entries()[0].text);
    EXPECT_EQ("none", entries()[1].text);
}

TEST_F(PrintTest, TheBufferFormsCarryTheBuffer) {
    EXPECT_EQ(1, __android_log_buf_write(LOG_ID_RADIO, ANDROID_LOG_INFO, kTag, "write"));
    EXPECT_EQ(1, __android_log_buf_print(LOG_ID_CRASH, ANDROID_LOG_INFO, kTag, "print %d", 1));
    ASSERT_EQ(2U, entries().size());
    EXPECT_EQ(LOG_ID_RADIO, entries()[0].bufferId);
    EXPECT_EQ(LOG_ID_CRASH, entries()[1].bufferId);
    EXPECT_EQ("print 1", entries()[1].text);
}

TEST_F(PrintTest, ErrnoIsPreserved) {
    __android_log_set_logger([](const struct __android_log_message*) { errno = EIO; });
    errno = EXDEV;
    __android_log_print(ANDROID_LOG_INFO, kTag, "text");
    EXPECT_EQ(EXDEV, errno);
    __android_log_write(ANDROID_LOG_INFO, kTag, "text");
    EXPECT_EQ(EXDEV, errno);
    __android_log_set_minimum_priority(ANDROID_LOG_ERROR);
    __android_log_print(ANDROID_LOG_INFO, kTag, "text");
    EXPECT_EQ(EXDEV, errno);
}

TEST_F(PrintTest, TheFormatSeesTheCallersErrno) {
    errno = ENOENT;
    __android_log_print(ANDROID_LOG_INFO, kTag, "%m");
    ASSERT_EQ(1U, entries().size());
    EXPECT_EQ("No such file or directory", entries()[0].text);
}

TEST_F(PrintTest, SeveralThreadsMayLogAndReconfigureAtOnce) {
    constexpr size_t kThreads = 4;
    constexpr size_t kMessages = 200;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (size_t i = 0; i < kThreads; ++i) {
        threads.emplace_back([] {
            for (size_t n = 0; n < kMessages; ++n) {
                __android_log_set_default_tag("log_test");
                __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
                __android_log_print(ANDROID_LOG_INFO, nullptr, "%zu", n);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(kThreads * kMessages, entries().size());
}

}  // namespace
