// SPDX-License-Identifier: Apache-2.0
#include <utils/Mutex.h>

#include <errno.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

using android::AutoMutex;
using android::Mutex;

namespace {

android::status_t tryLockElsewhere(Mutex* mutex) {
    android::status_t result = 0;
    std::thread([&] {
        result = mutex->tryLock();
        if (result == 0) {
            mutex->unlock();
        }
    }).join();
    return result;
}

TEST(Mutex, LockGivesZeroAndKeepsOthersOut) {
    Mutex mutex;
    EXPECT_EQ(mutex.lock(), 0);
    EXPECT_EQ(tryLockElsewhere(&mutex), -EBUSY);
    mutex.unlock();
    EXPECT_EQ(tryLockElsewhere(&mutex), 0);
}

TEST(Mutex, AutolockHoldsTheMutexForItsBlock) {
    Mutex mutex;
    {
        Mutex::Autolock lock(mutex);
        EXPECT_EQ(tryLockElsewhere(&mutex), -EBUSY);
    }
    {
        AutoMutex lock(&mutex);
        EXPECT_EQ(tryLockElsewhere(&mutex), -EBUSY);
    }
    EXPECT_EQ(tryLockElsewhere(&mutex), 0);
}

TEST(Mutex, SerialisesThreads) {
    Mutex mutex;
    int sum = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 1000; ++round) {
                Mutex::Autolock lock(mutex);
                ++sum;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(sum, 4000);
}

}  // namespace
