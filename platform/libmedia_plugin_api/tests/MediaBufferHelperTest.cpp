// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginHelper.h>

#include <gtest/gtest.h>

#include "FakeBuffer.h"

using android::MediaBufferHelper;

#ifdef __LP64__
static_assert(sizeof(MediaBufferHelper) == 16);
#endif

namespace {

TEST(MediaBufferHelperTest, EachFunctionForwardsToTheTable) {
    FakeBuffer buffer;
    AMediaFormat* const format = AMediaFormat_new();
    buffer.format = format;
    MediaBufferHelper helper(buffer.table());

    EXPECT_EQ(&buffer.bytes, helper.data());
    EXPECT_EQ(100U, helper.size());
    EXPECT_EQ(10U, helper.range_offset());
    EXPECT_EQ(20U, helper.range_length());
    EXPECT_EQ(format, helper.meta_data());
    helper.set_range(30, 40);
    EXPECT_EQ(30U, buffer.offset);
    EXPECT_EQ(40U, buffer.length);
    helper.release();
    EXPECT_EQ(1, buffer.releases);
    AMediaFormat_delete(format);
}

TEST(MediaBufferHelperTest, DestroyingTheHelperDoesNotReleaseTheBuffer) {
    FakeBuffer buffer;
    delete new MediaBufferHelper(buffer.table());
    EXPECT_EQ(0, buffer.releases);
}

TEST(MediaBufferHelperTest, ReleasingTheBufferDoesNotDestroyTheHelper) {
    FakeBuffer buffer;
    auto* const helper = new MediaBufferHelper(buffer.table());
    helper->release();
    EXPECT_EQ(100U, helper->size());
    delete helper;
}

}  // namespace
