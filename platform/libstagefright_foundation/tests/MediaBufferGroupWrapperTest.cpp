// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <gtest/gtest.h>
#include <media/NdkMediaFormat.h>
#include <media/stagefright/MediaBufferGroup.h>

#include <limits>

#include "LogCapture.h"

using android::CMediaBuffer;
using android::CMediaBufferGroup;
using android::MediaBufferGroup;

namespace {

class MediaBufferGroupWrapper : public testing::Test {
  protected:
    bool init(size_t buffers, size_t size, size_t limit) {
        return mTable->init(mTable->handle, buffers, size, limit);
    }
    media_status_t acquire(CMediaBuffer** buffer, size_t size) {
        return mTable->acquire_buffer(mTable->handle, buffer, true, size);
    }

    MediaBufferGroup mGroup;
    CMediaBufferGroup* const mTable = mGroup.wrap();
};

TEST_F(MediaBufferGroupWrapper, TheTableIsMadeOnceAndItsHandleIsTheGroup) {
    EXPECT_EQ(mGroup.wrap(), mTable);
    EXPECT_EQ(mTable->handle, &mGroup);
}

TEST_F(MediaBufferGroupWrapper, InitAlwaysGivesTrue) {
    EXPECT_TRUE(init(2, 10, 2));
    EXPECT_EQ(mGroup.buffers(), 2U);
    LogCapture log;
    EXPECT_TRUE(init(2, std::numeric_limits<size_t>::max() / 2, 2));
    EXPECT_EQ(mGroup.buffers(), 2U);
}

TEST_F(MediaBufferGroupWrapper, AddBufferMakesABufferOfTheSize) {
    mTable->add_buffer(mTable->handle, 33);
    CMediaBuffer* buffer = nullptr;
    ASSERT_EQ(acquire(&buffer, 0), AMEDIA_OK);
    EXPECT_EQ(buffer->size(buffer->handle), 33U);
    buffer->release(buffer->handle);
}

TEST_F(MediaBufferGroupWrapper, AddBufferAddsNothingWithoutMemory) {
    LogCapture log;
    mTable->add_buffer(mTable->handle, std::numeric_limits<size_t>::max() / 2);
    EXPECT_EQ(mGroup.buffers(), 0U);
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST_F(MediaBufferGroupWrapper, TheTableOfABufferIdentifiesItAcrossUses) {
    init(1, 10, 1);
    CMediaBuffer* first = nullptr;
    ASSERT_EQ(acquire(&first, 10), AMEDIA_OK);
    first->release(first->handle);
    CMediaBuffer* again = nullptr;
    ASSERT_EQ(acquire(&again, 10), AMEDIA_OK);
    EXPECT_EQ(again, first);
    again->release(again->handle);
}

TEST_F(MediaBufferGroupWrapper, AReusedBufferKeepsTheEntriesOfItsFormat) {
    init(1, 10, 1);
    CMediaBuffer* buffer = nullptr;
    ASSERT_EQ(acquire(&buffer, 10), AMEDIA_OK);
    AMediaFormat_setInt64(buffer->meta_data(buffer->handle), AMEDIAFORMAT_KEY_TIME_US, 7);
    buffer->release(buffer->handle);
    ASSERT_EQ(acquire(&buffer, 10), AMEDIA_OK);
    int64_t timeUs = 0;
    EXPECT_TRUE(AMediaFormat_getInt64(buffer->meta_data(buffer->handle), AMEDIAFORMAT_KEY_TIME_US,
                                      &timeUs));
    EXPECT_EQ(timeUs, 7);
    buffer->release(buffer->handle);
}

TEST_F(MediaBufferGroupWrapper, AFailedNonBlockingAcquisitionGivesTheUnknownErrorAndAnErrorLine) {
    init(1, 10, 0);
    CMediaBuffer* held = nullptr;
    ASSERT_EQ(acquire(&held, 1), AMEDIA_OK);
    LogCapture log;
    CMediaBuffer* buffer = held;
    EXPECT_EQ(acquire(&buffer, 1), AMEDIA_ERROR_UNKNOWN);
    EXPECT_EQ(buffer, nullptr);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].priority, ANDROID_LOG_ERROR);
    EXPECT_EQ(log.lines()[0].message, "status -11 has no media status, reported as unknown error");
    held->release(held->handle);
}

TEST_F(MediaBufferGroupWrapper, HasBuffersForwards) {
    EXPECT_FALSE(mTable->has_buffers(mTable->handle));
    init(1, 10, 0);
    EXPECT_TRUE(mTable->has_buffers(mTable->handle));
}

}  // namespace
