// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ABuffer.h>

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <type_traits>

using android::ABuffer;
using android::sp;

namespace {

constexpr size_t kMoreThanThereIs = std::numeric_limits<size_t>::max() / 2;

TEST(ABuffer, HoldsTheRequestedNumberOfBytes) {
    sp<ABuffer> buffer = new ABuffer(100);
    ASSERT_NE(buffer->data(), nullptr);
    EXPECT_EQ(buffer->size(), 100U);
    memset(buffer->data(), 7, 100);
    EXPECT_EQ(buffer->data()[99], 7);
}

TEST(ABuffer, MayHaveNoCapacity) {
    sp<ABuffer> buffer = new ABuffer(0);
    EXPECT_EQ(buffer->size(), 0U);
}

TEST(ABuffer, WithoutMemoryHasNoDataAndNoSize) {
    sp<ABuffer> buffer = new ABuffer(kMoreThanThereIs);
    EXPECT_EQ(buffer->data(), nullptr);
    EXPECT_EQ(buffer->size(), 0U);
}

TEST(ABuffer, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<ABuffer>);
    EXPECT_FALSE(std::is_copy_assignable_v<ABuffer>);
}

}  // namespace
