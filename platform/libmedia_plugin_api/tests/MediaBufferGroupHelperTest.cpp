// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginHelper.h>

#include <type_traits>

#include <gtest/gtest.h>

#include "FakeBuffer.h"
#include "FakeBufferGroup.h"

using android::MediaBufferGroupHelper;
using android::MediaBufferHelper;

static_assert(!std::has_virtual_destructor_v<MediaBufferGroupHelper>);

namespace {

class MediaBufferGroupHelperTest : public testing::Test {
  protected:
    FakeBuffer mBuffer;
    FakeBuffer mOtherBuffer;
    FakeBufferGroup mGroup;
    MediaBufferGroupHelper mHelper{mGroup.table()};
};

TEST_F(MediaBufferGroupHelperTest, InitForwardsWithAGrowthLimitOf0ByDefault) {
    EXPECT_TRUE(mHelper.init(3, 4096));
    EXPECT_EQ(3U, mGroup.initBuffers);
    EXPECT_EQ(4096U, mGroup.initBufferSize);
    EXPECT_EQ(0U, mGroup.initGrowthLimit);
    mGroup.initResult = false;
    EXPECT_FALSE(mHelper.init(1, 2, 64));
    EXPECT_EQ(64U, mGroup.initGrowthLimit);
}

TEST_F(MediaBufferGroupHelperTest, AddBufferAndHasBuffersForward) {
    mHelper.add_buffer(1234);
    EXPECT_EQ(1234U, mGroup.addedSize);
    EXPECT_FALSE(mHelper.has_buffers());
    mGroup.hasBuffers = true;
    EXPECT_TRUE(mHelper.has_buffers());
}

TEST_F(MediaBufferGroupHelperTest, AcquiringIsBlockingAndOfAnySizeByDefault) {
    mGroup.acquiredBuffer = mBuffer.table();
    MediaBufferHelper* buffer = nullptr;
    EXPECT_EQ(AMEDIA_OK, mHelper.acquire_buffer(&buffer));
    EXPECT_FALSE(mGroup.acquireNonBlocking);
    EXPECT_EQ(0U, mGroup.acquireRequestedSize);
    EXPECT_EQ(AMEDIA_OK, mHelper.acquire_buffer(&buffer, true, 500));
    EXPECT_TRUE(mGroup.acquireNonBlocking);
    EXPECT_EQ(500U, mGroup.acquireRequestedSize);
}

TEST_F(MediaBufferGroupHelperTest, ThereIsOneHelperForEachBuffer) {
    MediaBufferHelper* first = nullptr;
    MediaBufferHelper* other = nullptr;
    MediaBufferHelper* again = nullptr;
    mGroup.acquiredBuffer = mBuffer.table();
    mHelper.acquire_buffer(&first);
    mGroup.acquiredBuffer = mOtherBuffer.table();
    mHelper.acquire_buffer(&other);
    mGroup.acquiredBuffer = mBuffer.table();
    mHelper.acquire_buffer(&again);
    ASSERT_NE(nullptr, first);
    ASSERT_NE(nullptr, other);
    EXPECT_NE(first, other);
    EXPECT_EQ(first, again);
    EXPECT_EQ(&mBuffer.bytes, first->data());
    EXPECT_EQ(&mOtherBuffer.bytes, other->data());
}

TEST_F(MediaBufferGroupHelperTest, AFailureGivesItsStatusAndNoBuffer) {
    mGroup.acquireResult = AMEDIA_ERROR_UNKNOWN;
    mGroup.acquiredBuffer = mBuffer.table();
    auto* buffer = reinterpret_cast<MediaBufferHelper*>(&mGroup);
    EXPECT_EQ(AMEDIA_ERROR_UNKNOWN, mHelper.acquire_buffer(&buffer));
    EXPECT_EQ(nullptr, buffer);
}

TEST_F(MediaBufferGroupHelperTest, AMissingBufferGivesTheStatusAndNoBuffer) {
    auto* buffer = reinterpret_cast<MediaBufferHelper*>(&mGroup);
    EXPECT_EQ(AMEDIA_OK, mHelper.acquire_buffer(&buffer));
    EXPECT_EQ(nullptr, buffer);
    mGroup.acquireWrites = false;
    buffer = reinterpret_cast<MediaBufferHelper*>(&mGroup);
    EXPECT_EQ(AMEDIA_OK, mHelper.acquire_buffer(&buffer));
    EXPECT_EQ(nullptr, buffer);
}

TEST_F(MediaBufferGroupHelperTest, DestroyingTheGroupHelperReleasesNoBuffer) {
    {
        MediaBufferGroupHelper helper(mGroup.table());
        mGroup.acquiredBuffer = mBuffer.table();
        MediaBufferHelper* buffer = nullptr;
        helper.acquire_buffer(&buffer);
    }
    EXPECT_EQ(0, mBuffer.releases);
}

}  // namespace
