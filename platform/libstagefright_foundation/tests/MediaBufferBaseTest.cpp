// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBufferBase.h>

#include <gtest/gtest.h>
#include <media/NdkMediaFormat.h>
#include <media/stagefright/MediaBuffer.h>

using android::CMediaBuffer;
using android::MediaBuffer;
using android::MediaBufferBase;

namespace {

class MediaBufferBaseTest : public testing::Test {
  protected:
    void SetUp() override { mTable = mBuffer->wrap(); }
    void TearDown() override { mBuffer->release(); }

    MediaBufferBase* const mBuffer = new MediaBuffer(10);
    CMediaBuffer* mTable = nullptr;
};

TEST_F(MediaBufferBaseTest, TheTableIsMadeOnceAndItsHandleIsTheBuffer) {
    EXPECT_EQ(mBuffer->wrap(), mTable);
    EXPECT_EQ(mTable->handle, mBuffer);
}

TEST_F(MediaBufferBaseTest, TheTableForwardsToTheBuffer) {
    EXPECT_EQ(mTable->data(mTable->handle), mBuffer->data());
    EXPECT_EQ(mTable->size(mTable->handle), 10U);
    mTable->set_range(mTable->handle, 2, 3);
    EXPECT_EQ(mBuffer->range_offset(), 2U);
    EXPECT_EQ(mBuffer->range_length(), 3U);
    EXPECT_EQ(mTable->range_offset(mTable->handle), 2U);
    EXPECT_EQ(mTable->range_length(mTable->handle), 3U);
}

TEST_F(MediaBufferBaseTest, TheFormatIsMadeOnceAndSurvivesAReset) {
    AMediaFormat* format = mTable->meta_data(mTable->handle);
    ASSERT_NE(format, nullptr);
    AMediaFormat_setInt64(format, AMEDIAFORMAT_KEY_TIME_US, 1234);
    mBuffer->reset();
    EXPECT_EQ(mTable->meta_data(mTable->handle), format);
    int64_t timeUs = 0;
    EXPECT_TRUE(AMediaFormat_getInt64(format, AMEDIAFORMAT_KEY_TIME_US, &timeUs));
    EXPECT_EQ(timeUs, 1234);
}

TEST(MediaBufferBase, ReleaseThroughTheTableFreesABufferWithoutAGroup) {
    MediaBufferBase* buffer = new MediaBuffer(1);
    CMediaBuffer* table = buffer->wrap();
    ASSERT_NE(table->meta_data(table->handle), nullptr);
    table->release(table->handle);
}

}  // namespace
