// SPDX-License-Identifier: Apache-2.0
#include "check/Pool.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <csignal>
#include <map>
#include <stdexcept>
#include <thread>
#include <vector>

namespace ogmprobe::check {
namespace {

/** The answers of these tasks, by task number. */
std::map<size_t, PoolAnswer> answersOf(const std::vector<PoolTask>& tasks, size_t jobs) {
    std::map<size_t, PoolAnswer> answers;
    size_t next = 0;
    runPool({jobs,
             [&]() -> std::optional<PoolTask> {
                 return next == tasks.size() ? std::nullopt : std::optional(tasks[next++]);
             },
             [&](PoolAnswer answer) { answers[answer.task] = std::move(answer); }, [] {}});
    return answers;
}

std::string waitForever() {
    while (true) {
        pause();
    }
}

TEST(PoolTest, OnlyTheProcessorsThatThisThreadMayUseAreAvailable) {
    // A thread of its own: what it may use does not change for others.
    std::thread([] {
        cpu_set_t usable;
        ASSERT_EQ(sched_getaffinity(0, sizeof(usable), &usable), 0);
        EXPECT_EQ(availableProcessors(), static_cast<size_t>(CPU_COUNT(&usable)));
        cpu_set_t first;
        CPU_ZERO(&first);
        int processor = 0;
        while (!CPU_ISSET(processor, &usable)) {
            ++processor;
        }
        CPU_SET(processor, &first);
        ASSERT_EQ(sched_setaffinity(0, sizeof(first), &first), 0);
        EXPECT_EQ(availableProcessors(), 1U);
    }).join();
}

TEST(PoolTest, EachTaskHasItsAnswer) {
    std::vector<PoolTask> tasks;
    for (int i = 0; i < 20; ++i) {
        tasks.push_back({[i] { return std::to_string(i); }});
    }
    const auto answers = answersOf(tasks, 3);
    ASSERT_EQ(answers.size(), 20U);
    for (const auto& [number, answer] : answers) {
        EXPECT_EQ(answer.text, std::to_string(number));
    }
}

TEST(PoolTest, ADeathAndAStandstillCostOnlyTheirOwnTask) {
    const auto answers = answersOf({{[]() -> std::string {
                                        std::raise(SIGKILL);
                                        return "";
                                    }},
                                    {waitForever, 0.2},
                                    {[] { return std::string("done"); }}},
                                   2);
    ASSERT_EQ(answers.size(), 3U);
    EXPECT_FALSE(answers.at(0).text);
    EXPECT_EQ(answers.at(0).ending, "signal 9");
    EXPECT_FALSE(answers.at(1).text);
    EXPECT_EQ(answers.at(1).ending, "it took more than 0.2 s");
    EXPECT_EQ(answers.at(2).text, "done");
}

TEST(PoolTest, WithoutTasksItIsOverAtOnce) {
    EXPECT_TRUE(answersOf({}, 4).empty());
}

TEST(PoolTest, AnExceptionEndsTheRunWithAllItsProcesses) {
    bool isFirst = true;
    const PoolRun run{2,
                      [&]() -> std::optional<PoolTask> {
                          const bool ends = std::exchange(isFirst, false);
                          return ends ? PoolTask{[] { return std::string(); }}
                                      : PoolTask{waitForever};
                      },
                      [](const PoolAnswer&) { throw std::runtime_error("enough"); }, [] {}};
    EXPECT_THROW(runPool(run), std::runtime_error);
}

TEST(PoolTest, ThereIsAProcessor) {
    EXPECT_GE(availableProcessors(), 1U);
}

}  // namespace
}  // namespace ogmprobe::check
