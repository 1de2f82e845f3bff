// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <unistd.h>

#include <regex>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "CapturedStderr.h"

namespace {

std::string lineFor(int32_t priority, const char* text, const char* file = nullptr) {
    const __android_log_message message = {sizeof message, LOG_ID_MAIN, priority, "Tag",
                                           file,           345,         text};
    const CapturedStderr captured;
    __android_log_stderr_logger(&message);
    return captured.text();
}

std::string padded(int number) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < 5 ? 5 - digits.size() : 0, ' ') + digits;
}

bool matches(const std::string& text, const std::string& pattern) {
    return std::regex_match(text, std::regex(pattern));
}

constexpr char kTimePattern[] = R"(\d\d-\d\d \d\d:\d\d:\d\d)";

TEST(StderrLoggerTest, ALineHoldsTagLetterTimeProcessThreadAndMessage) {
    const std::string line = lineFor(ANDROID_LOG_INFO, "message");
    EXPECT_TRUE(matches(line, std::string("Tag I ") + kTimePattern + " " + padded(getpid()) + " " +
                                      padded(gettid()) + "\\] message\n"))
            << line;
}

TEST(StderrLoggerTest, AFileAndItsLineAreBeforeTheBracket) {
    const std::string line = lineFor(ANDROID_LOG_WARN, "message", "some/file.cpp");
    EXPECT_TRUE(matches(line, std::string("Tag W ") + kTimePattern + " " + padded(getpid()) + " " +
                                      padded(gettid()) + " some/file\\.cpp:345\\] message\n"))
            << line;
}

TEST(StderrLoggerTest, EachPriorityHasItsLetter) {
    const std::string letters = "XXVDIWEF";
    for (int priority = 0; priority < 8; ++priority) {
        EXPECT_EQ(std::string("Tag ") + letters[static_cast<size_t>(priority)] + " ",
                  lineFor(priority, "").substr(0, 6));
    }
}

TEST(StderrLoggerTest, PrioritiesAboveAllOthersAreFatal) {
    EXPECT_EQ("Tag F ", lineFor(9, "").substr(0, 6));
    EXPECT_EQ("Tag F ", lineFor(1000, "").substr(0, 6));
}

TEST(StderrLoggerTest, AMessageThatEndsInANewlineLeavesAnEmptyLine) {
    const std::string line = lineFor(ANDROID_LOG_INFO, "message\n");
    EXPECT_EQ("] message\n\n", line.substr(line.find(']')));
}

TEST(StderrLoggerTest, TheThreadIsThatOfTheCaller) {
    std::string line;
    int threadId = 0;
    std::thread([&] {
        threadId = gettid();
        line = lineFor(ANDROID_LOG_INFO, "message");
    }).join();
    EXPECT_NE(std::string::npos, line.find(" " + padded(threadId) + "] message\n")) << line;
}

}  // namespace
