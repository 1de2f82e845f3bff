// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBuffer.h>

#include <android/log.h>
#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <type_traits>

#include "ExpectAssertion.h"
#include "LogCapture.h"

using android::MediaBuffer;
using android::MediaBufferBase;
using android::MediaBufferObserver;

namespace {

#define MEDIA_BUFFER_CPP "frameworks/av/media/libstagefright/foundation/MediaBuffer.cpp"

constexpr size_t kSizeMax = std::numeric_limits<size_t>::max();

class CountingObserver : public MediaBufferObserver {
  public:
    void signalBufferReturned(MediaBufferBase* buffer) override {
        ++count;
        last = buffer;
    }

    int count = 0;
    MediaBufferBase* last = nullptr;
};

TEST(MediaBuffer, BeginsWithoutAGroupAndWithTheWholeStorageAsRange) {
    auto* buffer = new MediaBuffer(100);
    ASSERT_NE(buffer->data(), nullptr);
    EXPECT_EQ(buffer->size(), 100U);
    EXPECT_EQ(buffer->range_offset(), 0U);
    EXPECT_EQ(buffer->range_length(), 100U);
    EXPECT_EQ(buffer->refcount(), 0);
    memset(buffer->data(), 1, 100);
    buffer->release();
}

TEST(MediaBuffer, WithoutMemoryHasNoData) {
    auto* buffer = new MediaBuffer(kSizeMax / 2);
    EXPECT_EQ(buffer->data(), nullptr);
    buffer->release();
}

TEST(MediaBuffer, DataDoesNotMoveWithTheRange) {
    auto* buffer = new MediaBuffer(10);
    void* data = buffer->data();
    buffer->set_range(4, 6);
    EXPECT_EQ(buffer->data(), data);
    EXPECT_EQ(buffer->range_offset(), 4U);
    EXPECT_EQ(buffer->range_length(), 6U);
    EXPECT_EQ(buffer->size(), 10U);
    buffer->release();
}

TEST(MediaBuffer, ARangeWhoseEndWrapsAroundPasses) {
    auto* buffer = new MediaBuffer(10);
    buffer->set_range(kSizeMax, 11);
    EXPECT_EQ(buffer->range_offset(), kSizeMax);
    EXPECT_EQ(buffer->range_length(), 11U);
    buffer->release();
}

TEST(MediaBuffer, ResetMakesTheRangeTheWholeStorage) {
    auto* buffer = new MediaBuffer(10);
    buffer->set_range(1, 2);
    buffer->reset();
    EXPECT_EQ(buffer->range_offset(), 0U);
    EXPECT_EQ(buffer->range_length(), 10U);
    buffer->release();
}

TEST(MediaBuffer, TheObserverIsNotifiedWhenTheLastUseEnds) {
    CountingObserver observer;
    auto* buffer = new MediaBuffer(1);
    buffer->setObserver(&observer);
    buffer->add_ref();
    buffer->add_ref();
    EXPECT_EQ(buffer->refcount(), 2);
    buffer->release();
    EXPECT_EQ(observer.count, 0);
    buffer->release();
    EXPECT_EQ(observer.count, 1);
    EXPECT_EQ(observer.last, buffer);
    EXPECT_EQ(buffer->refcount(), 0);
    buffer->setObserver(nullptr);
    buffer->release();
}

TEST(MediaBuffer, CreateGivesABufferOrNullWithAnErrorLine) {
    MediaBufferBase* buffer = MediaBufferBase::Create(10);
    ASSERT_NE(buffer, nullptr);
    EXPECT_EQ(buffer->size(), 10U);
    buffer->release();
    LogCapture log;
    EXPECT_EQ(MediaBufferBase::Create(kSizeMax / 2), nullptr);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].priority, ANDROID_LOG_ERROR);
    EXPECT_EQ(log.lines()[0].tag, "MediaBuffer");
    EXPECT_EQ(log.lines()[0].message, "no memory for a buffer of 9223372036854775807 bytes");
}

TEST(MediaBuffer, CannotBeDeletedNorPutOnTheStackNorCopied) {
    EXPECT_FALSE(std::is_destructible_v<MediaBuffer>);
    EXPECT_FALSE(std::is_copy_constructible_v<MediaBuffer>);
}

TEST(MediaBufferDeathTest, ARangeBeyondTheStorageWritesAnErrorLineAndAborts) {
    auto* buffer = new MediaBuffer(10);
    EXPECT_ABORT_WITH_OUTPUT(
            buffer->set_range(4, 7),
            plainLogLine(ANDROID_LOG_ERROR, "MediaBuffer",
                         "range of 7 bytes at 4 lies beyond a buffer of 10 bytes") +
                    assertionOutput("MediaBuffer", MEDIA_BUFFER_CPP
                                    ":145 CHECK(offset + length <= mSize) failed."));
    buffer->release();
}

TEST(MediaBufferDeathTest, ReleasingACountedBufferWithoutAnObserverAborts) {
    auto* buffer = new MediaBuffer(1);
    EXPECT_ASSERTION(
            {
                buffer->add_ref();
                buffer->release();
            },
            "MediaBuffer", MEDIA_BUFFER_CPP ":108 CHECK_EQ( mRefCount,0) failed: 1 vs. 0");
    buffer->release();
}

TEST(MediaBufferDeathTest, ReleasingABufferOfAGroupTooOftenAborts) {
    CountingObserver observer;
    auto* buffer = new MediaBuffer(1);
    buffer->setObserver(&observer);
    EXPECT_ASSERTION(buffer->release(), "MediaBuffer",
                     MEDIA_BUFFER_CPP ":122 CHECK(prevCount > 0) failed.");
    buffer->setObserver(nullptr);
    buffer->release();
}

TEST(MediaBufferDeathTest, ASecondObserverAborts) {
    CountingObserver observer;
    auto* buffer = new MediaBuffer(1);
    buffer->setObserver(&observer);
    EXPECT_ASSERTION(buffer->setObserver(&observer), "MediaBuffer",
                     MEDIA_BUFFER_CPP
                     ":171 CHECK(group == nullptr || mObserver == nullptr) failed.");
    buffer->setObserver(nullptr);
    buffer->release();
}

}  // namespace
