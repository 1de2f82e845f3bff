// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBufferGroup.h>

#include <android/log.h>
#include <gtest/gtest.h>
#include <media/stagefright/MediaBuffer.h>

#include <limits>
#include <memory>
#include <vector>

#include "ExpectAssertion.h"
#include "LogCapture.h"

using android::MediaBuffer;
using android::MediaBufferBase;
using android::MediaBufferGroup;

namespace {

constexpr size_t kMoreThanThereIs = std::numeric_limits<size_t>::max() / 2;

/** Acquires without blocking; null if the group would block. */
MediaBufferBase* acquire(MediaBufferGroup& group, size_t size) {
    MediaBufferBase* buffer = nullptr;
    const android::status_t status = group.acquire_buffer(&buffer, true, size);
    EXPECT_EQ(status, buffer != nullptr ? android::OK : android::WOULD_BLOCK);
    return buffer;
}

/** The sizes of all free buffers in the order of the list. */
std::vector<size_t> freeSizes(MediaBufferGroup& group) {
    std::vector<MediaBufferBase*> taken;
    std::vector<size_t> sizes;
    const size_t count = group.buffers();
    while (taken.size() < count) {
        MediaBufferBase* buffer = acquire(group, 0);
        if (buffer == nullptr) {
            break;
        }
        taken.push_back(buffer);
        sizes.push_back(buffer->size());
    }
    for (MediaBufferBase* buffer : taken) {
        buffer->release();
    }
    return sizes;
}

using Sizes = std::vector<size_t>;

// Applies all rules of finding, growing and replacing, far below the limit.
TEST(MediaBufferGroup, FindsGrowsAndReplacesInTheOrderOfItsRules) {
    MediaBufferGroup group;
    group.init(1, 256, 64);

    MediaBufferBase* buffer = acquire(group, 100);
    EXPECT_EQ(buffer->size(), 256U);
    buffer->release();
    EXPECT_EQ(group.buffers(), 1U);

    // A free buffer that is too small is replaced by a larger one.
    MediaBufferBase* first = acquire(group, 300);
    EXPECT_EQ(first->size(), 450U);
    EXPECT_EQ(group.buffers(), 1U);

    // None is free: the list grows.
    MediaBufferBase* second = acquire(group, 100);
    EXPECT_EQ(second->size(), 150U);
    EXPECT_EQ(group.buffers(), 2U);

    // No size requested: the new one is as large as the largest.
    buffer = acquire(group, 0);
    EXPECT_EQ(buffer->size(), 450U);
    EXPECT_EQ(group.buffers(), 3U);
    MediaBufferBase* third = buffer;
    buffer->release();

    // The first buffer that fits is lent, not the smallest.
    first->release();
    second->release();
    buffer = acquire(group, 200);
    EXPECT_EQ(buffer, first);
    EXPECT_EQ(buffer->size(), 450U);
    buffer->release();
    EXPECT_EQ(freeSizes(group), (Sizes{450, 150, 450}));

    // All are free and too small: the smallest is replaced, in its place.
    buffer = acquire(group, 500);
    EXPECT_EQ(buffer->size(), 750U);
    buffer->release();
    EXPECT_EQ(freeSizes(group), (Sizes{450, 750, 450}));
    EXPECT_EQ(acquire(group, 0), first);
    first->release();
    EXPECT_EQ(third->refcount(), 0);
}

TEST(MediaBufferGroup, TheFirstOfEquallySmallBuffersIsReplaced) {
    MediaBufferGroup group(3, 10, 3);
    acquire(group, 20)->release();
    EXPECT_EQ(freeSizes(group), (Sizes{30, 10, 10}));
}

TEST(MediaBufferGroup, ReplacementIsPreferredToGrowth) {
    MediaBufferGroup group(1, 10, 8);
    acquire(group, 11)->release();
    EXPECT_EQ(freeSizes(group), (Sizes{16}));
}

TEST(MediaBufferGroup, ABufferOfExactlyTheRequestedSizeFits) {
    MediaBufferGroup group(1, 10, 8);
    MediaBufferBase* buffer = acquire(group, 10);
    EXPECT_EQ(buffer->size(), 10U);
    buffer->release();
}

TEST(MediaBufferGroup, NewBuffersHaveThreeHalvesOfTheRequestTruncated) {
    for (size_t request : {1U, 2U, 3U, 65535U}) {
        MediaBufferGroup group(1);
        MediaBufferBase* buffer = acquire(group, request);
        EXPECT_EQ(buffer->size(), request * 3 / 2);
        buffer->release();
    }
}

TEST(MediaBufferGroup, AnEmptyGroupBelowItsLimitMakesABufferOfNoBytesForARequestOfNone) {
    MediaBufferGroup group(1);
    MediaBufferBase* buffer = acquire(group, 0);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->size(), 0U);
    buffer->release();
}

TEST(MediaBufferGroup, WithLimitZeroTheNumberOfBuffersNeverGrows) {
    MediaBufferGroup group;
    group.init(1, 10);
    MediaBufferBase* buffer = acquire(group, 5);
    EXPECT_EQ(acquire(group, 5), nullptr);
    buffer->release();
    EXPECT_EQ(group.buffers(), 1U);
}

TEST(MediaBufferGroup, WithLimitZeroATooSmallFreeBufferIsStillReplaced) {
    MediaBufferGroup group;
    group.init(1, 10);
    acquire(group, 20)->release();
    EXPECT_EQ(freeSizes(group), (Sizes{30}));
}

TEST(MediaBufferGroup, AtTheLimitATooSmallBufferInUseBlocks) {
    MediaBufferGroup group(2, 10, 2);
    MediaBufferBase* first = acquire(group, 5);
    MediaBufferBase* second = acquire(group, 5);
    MediaBufferBase* third = first;
    EXPECT_EQ(group.acquire_buffer(&third, true, 5), android::WOULD_BLOCK);
    EXPECT_EQ(third, nullptr);
    first->release();
    second->release();
}

TEST(MediaBufferGroup, InitIsNoResetButAddsBuffersAgain) {
    MediaBufferGroup group;
    group.init(1, 10, 4);
    group.init(2, 20, 4);
    EXPECT_EQ(freeSizes(group), (Sizes{10, 20, 20}));
}

TEST(MediaBufferGroup, InitSetsTheLimitAgain) {
    MediaBufferGroup group(1, 10, 2);
    EXPECT_TRUE(group.has_buffers());
    group.init(0, 0, 0);
    MediaBufferBase* buffer = acquire(group, 1);
    EXPECT_FALSE(group.has_buffers());
    EXPECT_EQ(acquire(group, 1), nullptr);
    buffer->release();
}

TEST(MediaBufferGroup, ALimitBelowTheNumberOfBuffersIsRaisedWithAWarning) {
    LogCapture log;
    MediaBufferGroup group;
    group.init(3, 10, 2);
    EXPECT_EQ(group.buffers(), 3U);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].priority, ANDROID_LOG_WARN);
    EXPECT_EQ(log.lines()[0].tag, "MediaBufferGroup");
    EXPECT_EQ(log.lines()[0].message, "growth limit 2 raised to 3 buffers");
}

TEST(MediaBufferGroup, LimitsOfZeroOrOfTheNumberOfBuffersAreTakenSilently) {
    LogCapture log;
    MediaBufferGroup none(3, 10, 0);
    MediaBufferGroup equal(3, 10, 3);
    EXPECT_TRUE(log.lines().empty());
}

TEST(MediaBufferGroup, AddingAtTheLimitDropsFreeBuffersFromTheFront) {
    MediaBufferGroup group(3, 10, 3);
    MediaBufferBase* first = acquire(group, 0);
    group.add_buffer(new MediaBuffer(40));
    EXPECT_EQ(group.buffers(), 3U);
    EXPECT_EQ(freeSizes(group), (Sizes{10, 40}));
    group.init(1, 50, 2);
    EXPECT_EQ(group.buffers(), 2U);
    EXPECT_EQ(freeSizes(group), (Sizes{50}));
    first->release();
}

TEST(MediaBufferGroup, AddingAtTheLimitAddsEvenWhenNothingCanBeDropped) {
    MediaBufferGroup group(1, 10, 1);
    MediaBufferBase* first = acquire(group, 0);
    group.add_buffer(new MediaBuffer(20));
    EXPECT_EQ(group.buffers(), 2U);
    first->release();
    EXPECT_EQ(freeSizes(group), (Sizes{10, 20}));
}

TEST(MediaBufferGroup, AddingWithLimitZeroDropsNothing) {
    MediaBufferGroup group;
    group.add_buffer(new MediaBuffer(10));
    group.add_buffer(new MediaBuffer(20));
    EXPECT_EQ(freeSizes(group), (Sizes{10, 20}));
}

TEST(MediaBufferGroup, AnAcquiredBufferHasOneUseAndTheWholeStorageAsRange) {
    MediaBufferGroup group(1, 10);
    MediaBufferBase* buffer = acquire(group, 4);
    EXPECT_EQ(buffer->refcount(), 1);
    buffer->set_range(3, 4);
    buffer->release();
    EXPECT_EQ(buffer->range_offset(), 3U);
    EXPECT_EQ(buffer->range_length(), 4U);
    EXPECT_EQ(acquire(group, 4), buffer);
    EXPECT_EQ(buffer->range_offset(), 0U);
    EXPECT_EQ(buffer->range_length(), 10U);
    buffer->release();
}

TEST(MediaBufferGroup, HasBuffersWhileOneIsFreeOrTheListIsBelowTheLimit) {
    MediaBufferGroup group;
    EXPECT_FALSE(group.has_buffers());
    group.init(1, 10, 2);
    EXPECT_TRUE(group.has_buffers());
    MediaBufferBase* first = acquire(group, 1);
    EXPECT_TRUE(group.has_buffers());
    MediaBufferBase* second = acquire(group, 1);
    EXPECT_FALSE(group.has_buffers());
    first->release();
    EXPECT_TRUE(group.has_buffers());
    second->release();
}

TEST(MediaBufferGroup, AFailedAllocationDoesNotChangeTheListAndWouldBlock) {
    MediaBufferGroup group(1, 10, 4);
    LogCapture log;
    EXPECT_EQ(acquire(group, kMoreThanThereIs), nullptr);
    EXPECT_EQ(acquire(group, std::numeric_limits<size_t>::max()), nullptr);
    ASSERT_EQ(log.lines().size(), 2U);
    EXPECT_EQ(log.lines()[0].priority, ANDROID_LOG_ERROR);
    EXPECT_EQ(log.lines()[0].message, "no memory for a buffer of 13835058055282163710 bytes");
    // A request of two thirds of the maximum or more gets no reserve.
    EXPECT_EQ(log.lines()[1].message, "no memory for a buffer of 18446744073709551615 bytes");
    EXPECT_EQ(freeSizes(group), (Sizes{10}));
}

TEST(MediaBufferGroup, InitStopsAddingWhenMemoryEnds) {
    LogCapture log;
    MediaBufferGroup group;
    group.init(3, kMoreThanThereIs, 3);
    EXPECT_EQ(group.buffers(), 0U);
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST(MediaBufferGroupDeathTest, DestroyingTheGroupWithABufferInUseAborts) {
    auto group = std::make_unique<MediaBufferGroup>(1, 10);
    MediaBufferBase* buffer = acquire(*group, 0);
    char text[100];
    snprintf(text, sizeof(text), "buffer(%p) localRefcount 1 != 0, remoteRefcount 0",
             static_cast<void*>(buffer));
    EXPECT_ASSERTION(group.reset(), "MediaBufferGroup", text);
    buffer->release();
}

}  // namespace
