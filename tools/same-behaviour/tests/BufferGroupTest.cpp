// SPDX-License-Identifier: Apache-2.0
#include "BufferGroup.h"

#include <gtest/gtest.h>

namespace android::ogm::trace {
namespace {

CMediaBuffer* acquire(BufferGroup* group, size_t size) {
    CMediaBuffer* buffer = nullptr;
    const media_status_t status =
            group->table()->acquire_buffer(group->table()->handle, &buffer, true, size);
    EXPECT_EQ(buffer == nullptr ? AMEDIA_ERROR_UNKNOWN : AMEDIA_OK, status);
    return buffer;
}

size_t capacity(CMediaBuffer* buffer) {
    return buffer->size(buffer->handle);
}

void release(CMediaBuffer* buffer) {
    buffer->release(buffer->handle);
}

class BufferGroupTest : public ::testing::Test {
  protected:
    BufferGroup* group(size_t buffers, size_t growthLimit) {
        mGroup.table()->init(mGroup.table()->handle, buffers, 100, growthLimit);
        return &mGroup;
    }
    BufferGroup mGroup{"group", {}};
};

TEST_F(BufferGroupTest, LendsTheFirstFreeBufferThatIsLargeEnough) {
    CMediaBuffer* const first = acquire(group(2, 4), 100);
    EXPECT_EQ(100U, capacity(first));
    release(first);
    EXPECT_EQ(first, acquire(&mGroup, 60));
    EXPECT_NE(first, acquire(&mGroup, 60));
}

TEST_F(BufferGroupTest, ANewBufferHasHalfAsMuchAgain) {
    EXPECT_EQ(300U, capacity(acquire(group(1, 4), 200)));
}

TEST_F(BufferGroupTest, ANewBufferReplacesTheSmallestFreeOne) {
    CMediaBuffer* const large = acquire(group(1, 1), 200);
    EXPECT_EQ(nullptr, acquire(&mGroup, 10));
    release(large);
    EXPECT_EQ(large, acquire(&mGroup, 10));
}

TEST_F(BufferGroupTest, ABufferThatIsLentAgainHasItsWholeRange) {
    CMediaBuffer* const buffer = acquire(group(1, 1), 100);
    buffer->set_range(buffer->handle, 10, 20);
    EXPECT_EQ(10U, buffer->range_offset(buffer->handle));
    EXPECT_EQ(20U, buffer->range_length(buffer->handle));
    release(buffer);
    EXPECT_EQ(buffer, acquire(&mGroup, 100));
    EXPECT_EQ(0U, buffer->range_offset(buffer->handle));
    EXPECT_EQ(100U, buffer->range_length(buffer->handle));
}

TEST(BufferGroupFaultTest, RefusesTheRequestedNumberFromTheFirstOn) {
    BufferGroup group("group", {1, 2});
    group.table()->init(group.table()->handle, 1, 100, 64);
    EXPECT_NE(nullptr, acquire(&group, 10));
    EXPECT_EQ(nullptr, acquire(&group, 10));
    EXPECT_EQ(nullptr, acquire(&group, 10));
    EXPECT_NE(nullptr, acquire(&group, 10));
}

}  // namespace
}  // namespace android::ogm::trace
