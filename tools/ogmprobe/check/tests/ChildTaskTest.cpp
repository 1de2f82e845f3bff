// SPDX-License-Identifier: Apache-2.0
#include "process/ChildTask.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <fstream>
#include <stdexcept>

#include "process/Sandbox.h"
#include "process/Sanitizers.h"

namespace ogmprobe {
namespace {

using namespace std::chrono_literals;
using Rights = ChildTask::Rights;

constexpr uint64_t kMost = 1'000'000;

TEST(ChildTaskTest, AnAnswerComesBackWhole) {
    const std::string long_(500'000, 'x');
    ChildTask task([&] { return long_; }, Rights::kAll, kMost);
    EXPECT_EQ(task.waitForAnswer(10s), long_);
}

TEST(ChildTaskTest, AnEmptyAnswerIsOneToo) {
    ChildTask task([] { return std::string(); }, Rights::kAll, kMost);
    EXPECT_EQ(task.waitForAnswer(10s), "");
}

TEST(ChildTaskTest, ADeathIsNoAnswer) {
    ChildTask task(
            []() -> std::string {
                std::raise(SIGKILL);
                return "";
            },
            Rights::kAll, kMost);
    EXPECT_FALSE(task.waitForAnswer(10s));
    EXPECT_EQ(task.ending(), "signal 9");
}

TEST(ChildTaskTest, AnExceptionIsNoAnswer) {
    ChildTask task([]() -> std::string { throw std::runtime_error("no"); }, Rights::kAll, kMost);
    EXPECT_FALSE(task.waitForAnswer(10s));
    EXPECT_EQ(task.ending(), "exit code 4");
}

TEST(ChildTaskTest, AnAnswerThatIsTooLongIsRefused) {
    ChildTask task([] { return std::string(kMost + 1, 'x'); }, Rights::kAll, kMost);
    EXPECT_FALSE(task.waitForAnswer(10s));
    EXPECT_EQ(task.ending(), "its answer has more than 1000000 bytes");
}

TEST(ChildTaskTest, ATaskThatTakesTooLongIsStopped) {
    ChildTask task(
            [] {
                while (true) {
                    pause();
                }
                return std::string();
            },
            Rights::kAll, kMost);
    EXPECT_FALSE(task.waitForAnswer(50ms));
    EXPECT_EQ(task.ending(), "it took more than 0.05 s");
}

TEST(ChildTaskTest, InTheSandboxNoFileCanBeOpened) {
    if (kSanitized) {
        GTEST_SKIP() << "sanitizers may read files";
    }
    ChildTask task(
            []() -> std::string {
                const int file = open("/etc/passwd", O_RDONLY);
                return file >= 0 ? "open" : "refused";
            },
            Rights::kSandboxed, kMost);
    const auto answer = task.waitForAnswer(10s);
    if (answer == "open") {
        GTEST_SKIP() << "the kernel filters no system calls here";
    }
    EXPECT_FALSE(answer);
}

TEST(ChildTaskTest, InTheSandboxAnAnswerCanBeGiven) {
    ChildTask task([] { return std::string(300'000, 'y'); }, Rights::kSandboxed, kMost);
    EXPECT_EQ(task.waitForAnswer(10s), std::string(300'000, 'y'));
}

}  // namespace
}  // namespace ogmprobe
