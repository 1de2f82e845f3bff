// SPDX-License-Identifier: Apache-2.0
#include <utils/Condition.h>

#include <gtest/gtest.h>
#include <time.h>

#include <limits>
#include <thread>
#include <vector>

using android::Condition;
using android::Mutex;

namespace {

nsecs_t monotonicNow() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * nsecs_t{1000000000} + now.tv_nsec;
}

TEST(Condition, SignalWakesAWaitingThreadThatThenHoldsTheMutex) {
    Mutex mutex;
    Condition condition;
    bool ready = false;
    std::thread waker([&] {
        Mutex::Autolock lock(mutex);
        ready = true;
        condition.signal();
    });
    {
        Mutex::Autolock lock(mutex);
        while (!ready) {
            EXPECT_EQ(condition.wait(mutex), android::OK);
        }
    }
    waker.join();
}

TEST(Condition, BroadcastWakesAllWaitingThreads) {
    Mutex mutex;
    Condition condition;
    bool ready = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            Mutex::Autolock lock(mutex);
            while (!ready) {
                condition.wait(mutex);
            }
        });
    }
    {
        Mutex::Autolock lock(mutex);
        ready = true;
        condition.broadcast();
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    SUCCEED();
}

TEST(Condition, ATimedWaitWithoutASignalTimesOutAfterItsTime) {
    constexpr nsecs_t kWait = 20000000;
    Mutex mutex;
    Condition condition;
    Mutex::Autolock lock(mutex);
    const nsecs_t start = monotonicNow();
    android::status_t result = android::OK;
    while (result == android::OK && monotonicNow() < start + kWait) {
        result = condition.waitRelative(mutex, kWait);
    }
    EXPECT_EQ(result, android::TIMED_OUT);
    EXPECT_GE(monotonicNow() - start, kWait);
}

TEST(Condition, ATimedWaitOfNoOrNegativeLengthTimesOutAtOnce) {
    Mutex mutex;
    Condition condition;
    Mutex::Autolock lock(mutex);
    EXPECT_EQ(condition.waitRelative(mutex, 0), android::TIMED_OUT);
    EXPECT_EQ(condition.waitRelative(mutex, std::numeric_limits<nsecs_t>::min()),
              android::TIMED_OUT);
}

TEST(Condition, TheLongestTimedWaitStillEndsWithASignal) {
    Mutex mutex;
    Condition condition;
    bool ready = false;
    std::thread waker([&] {
        Mutex::Autolock lock(mutex);
        ready = true;
        condition.signal();
    });
    {
        Mutex::Autolock lock(mutex);
        while (!ready) {
            EXPECT_EQ(condition.waitRelative(mutex, std::numeric_limits<nsecs_t>::max()),
                      android::OK);
        }
    }
    waker.join();
}

}  // namespace
