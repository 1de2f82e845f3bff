// SPDX-License-Identifier: Apache-2.0
#include "base/MediaBuffers.h"

#include <gtest/gtest.h>
#include <media/stagefright/MediaBufferGroup.h>

namespace android::ogm::test::media_buffers_test {
namespace {

class MediaBuffersTest : public ::testing::Test {
  protected:
    MediaBuffersTest() { mHelper.init(1, 256, 2); }

    MediaBufferGroup mGroup;
    MediaBufferGroupHelper mHelper{mGroup.wrap()};
};

TEST_F(MediaBuffersTest, ABufferHasAtLeastTheRequestedSize) {
    MediaBufferHelper* const small = acquireBuffer(&mHelper, 10);
    MediaBufferHelper* const large = acquireBuffer(&mHelper, 1000);
    ASSERT_NE(small, nullptr);
    ASSERT_NE(large, nullptr);
    EXPECT_EQ(small->size(), 256U);
    EXPECT_GE(large->size(), 1000U);
    small->release();
    large->release();
}

TEST_F(MediaBuffersTest, WithoutAGroupThereIsNoBuffer) {
    EXPECT_EQ(acquireBuffer(nullptr, 10), nullptr);
}

TEST_F(MediaBuffersTest, TimeAndSyncFlagAreThoseInTheBuffer) {
    MediaBufferHelper* const buffer = acquireBuffer(&mHelper, 10);
    AMediaFormat_setInt64(buffer->meta_data(), AMEDIAFORMAT_KEY_TIME_US, -7);
    AMediaFormat_setInt32(buffer->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME, 1);
    EXPECT_EQ(timeOf(buffer), -7);
    EXPECT_EQ(syncFlagOf(buffer), 1);
    buffer->release();
}

TEST_F(MediaBuffersTest, ABufferWithoutTimeAndSyncFlagHasZeros) {
    MediaBufferHelper* const buffer = acquireBuffer(&mHelper, 10);
    EXPECT_EQ(timeOf(buffer), 0);
    EXPECT_EQ(syncFlagOf(buffer), 0);
    buffer->release();
}

}  // namespace
}  // namespace android::ogm::test::media_buffers_test
