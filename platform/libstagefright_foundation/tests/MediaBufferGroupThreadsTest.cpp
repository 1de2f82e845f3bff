// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <media/stagefright/MediaBufferGroup.h>

#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>
#include <vector>

using android::MediaBufferBase;
using android::MediaBufferGroup;

namespace {

TEST(MediaBufferGroupThreads, ABlockingAcquisitionWaitsForARelease) {
    MediaBufferGroup group(1, 10);
    MediaBufferBase* held = nullptr;
    ASSERT_EQ(group.acquire_buffer(&held), android::OK);
    std::atomic<bool> released{false};
    std::thread waiter([&] {
        MediaBufferBase* buffer = nullptr;
        EXPECT_EQ(group.acquire_buffer(&buffer, false, 5), android::OK);
        EXPECT_TRUE(released.load());
        EXPECT_EQ(buffer, held);
        buffer->release();
    });
    // Long enough for the other thread to reach its wait in most runs; both orders must work.
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    released = true;
    held->release();
    waiter.join();
}

TEST(MediaBufferGroupThreads, ABlockedAcquisitionStartsOverAndMayReplaceTheReturnedBuffer) {
    MediaBufferGroup group(1, 10);
    MediaBufferBase* held = nullptr;
    ASSERT_EQ(group.acquire_buffer(&held), android::OK);
    std::thread waiter([&] {
        MediaBufferBase* buffer = nullptr;
        EXPECT_EQ(group.acquire_buffer(&buffer, false, 20), android::OK);
        EXPECT_EQ(buffer->size(), 30U);
        buffer->release();
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    held->release();
    waiter.join();
    EXPECT_EQ(group.buffers(), 1U);
}

TEST(MediaBufferGroupThreads, EachBufferHasOneUserAtATime) {
    constexpr int kThreads = 4;
    constexpr int kRounds = 500;
    MediaBufferGroup group(2, 16, 2);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&group, i] {
            for (int round = 0; round < kRounds; ++round) {
                MediaBufferBase* buffer = nullptr;
                ASSERT_EQ(group.acquire_buffer(&buffer, false, 16), android::OK);
                memset(buffer->data(), i, 16);
                for (int k = 0; k < 16; ++k) {
                    ASSERT_EQ(static_cast<char*>(buffer->data())[k], i);
                }
                buffer->release();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(group.buffers(), 2U);
}

}  // namespace
