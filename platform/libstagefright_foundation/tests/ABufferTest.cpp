// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ABuffer.h>

#include <gtest/gtest.h>
#include <media/stagefright/foundation/AMessage.h>

#include <cstring>
#include <limits>
#include <type_traits>

#include "ExpectAssertion.h"

using android::ABuffer;
using android::AMessage;
using android::sp;

namespace {

constexpr size_t kMoreThanThereIs = std::numeric_limits<size_t>::max() / 2;

TEST(ABuffer, BeginsWithItsWholeCapacityAsRange) {
    sp<ABuffer> buffer = new ABuffer(100);
    ASSERT_NE(buffer->base(), nullptr);
    EXPECT_EQ(buffer->capacity(), 100u);
    EXPECT_EQ(buffer->offset(), 0u);
    EXPECT_EQ(buffer->size(), 100u);
    memset(buffer->base(), 7, 100);
    EXPECT_EQ(buffer->data()[99], 7);
}

TEST(ABuffer, MayHaveNoCapacity) {
    sp<ABuffer> buffer = new ABuffer(0);
    EXPECT_EQ(buffer->capacity(), 0u);
    EXPECT_EQ(buffer->size(), 0u);
    buffer->setRange(0, 0);
}

TEST(ABuffer, WithoutMemoryHasNoBaseAndNoCapacity) {
    sp<ABuffer> buffer = new ABuffer(kMoreThanThereIs);
    EXPECT_EQ(buffer->base(), nullptr);
    EXPECT_EQ(buffer->capacity(), 0u);
    EXPECT_EQ(buffer->offset(), 0u);
    EXPECT_EQ(buffer->size(), 0u);
}

TEST(ABuffer, RefersToForeignBytesWithoutFreeingThem) {
    uint8_t bytes[4] = {1, 2, 3, 4};
    {
        sp<ABuffer> buffer = new ABuffer(bytes, sizeof(bytes));
        EXPECT_EQ(buffer->base(), bytes);
        EXPECT_EQ(buffer->capacity(), 4u);
        EXPECT_EQ(buffer->size(), 4u);
        buffer->data()[0] = 9;
    }
    EXPECT_EQ(bytes[0], 9);
}

TEST(ABuffer, DataMovesWithTheRangeAndBaseDoesNot) {
    sp<ABuffer> buffer = new ABuffer(8);
    buffer->setRange(3, 2);
    EXPECT_EQ(buffer->data(), buffer->base() + 3);
    EXPECT_EQ(buffer->offset(), 3u);
    EXPECT_EQ(buffer->size(), 2u);
    EXPECT_EQ(buffer->capacity(), 8u);
}

TEST(ABuffer, SetRangeMovesNoBytes) {
    sp<ABuffer> buffer = ABuffer::CreateAsCopy("abcdefgh", 8);
    buffer->setRange(2, 3);
    EXPECT_EQ(memcmp(buffer->base(), "abcdefgh", 8), 0);
    EXPECT_EQ(memcmp(buffer->data(), "cde", 3), 0);
}

TEST(ABuffer, AcceptsAnyRangeInsideTheCapacity) {
    sp<ABuffer> buffer = new ABuffer(8);
    buffer->setRange(8, 0);
    EXPECT_EQ(buffer->offset(), 8u);
    buffer->setRange(0, 8);
    EXPECT_EQ(buffer->size(), 8u);
}

TEST(ABuffer, CreateAsCopyHasBytesOfItsOwn) {
    char bytes[] = "xyz";
    sp<ABuffer> copy = ABuffer::CreateAsCopy(bytes, 3);
    bytes[0] = '-';
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->size(), 3u);
    EXPECT_EQ(memcmp(copy->data(), "xyz", 3), 0);
}

TEST(ABuffer, CreateAsCopyOfNothingIsAnEmptyBuffer) {
    sp<ABuffer> copy = ABuffer::CreateAsCopy(nullptr, 0);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->size(), 0u);
}

TEST(ABuffer, CreateAsCopyGivesNullWithoutMemory) {
    EXPECT_EQ(ABuffer::CreateAsCopy("", kMoreThanThereIs), nullptr);
}

TEST(ABuffer, KeepsASpareNumberThatIsZeroAtFirst) {
    sp<ABuffer> buffer = new ABuffer(1);
    EXPECT_EQ(buffer->int32Data(), 0);
    buffer->setInt32Data(-5);
    EXPECT_EQ(buffer->int32Data(), -5);
}

TEST(ABuffer, MetaIsMadeOnceAndIsTheSameMessageEverAfter) {
    sp<ABuffer> buffer = new ABuffer(1);
    sp<AMessage> meta = buffer->meta();
    ASSERT_NE(meta, nullptr);
    EXPECT_EQ(meta->countEntries(), 0u);
    meta->setInt64("timeUs", 40000);
    EXPECT_EQ(buffer->meta(), meta);
    int64_t timeUs = 0;
    EXPECT_TRUE(buffer->meta()->findInt64("timeUs", &timeUs));
    EXPECT_EQ(timeUs, 40000);
}

TEST(ABuffer, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<ABuffer>);
    EXPECT_FALSE(std::is_copy_assignable_v<ABuffer>);
}

TEST(ABufferDeathTest, AnOffsetBeyondTheCapacityAbortsUnderTheProgramsTag) {
    sp<ABuffer> buffer = new ABuffer(8);
    EXPECT_ASSERTION(buffer->setRange(9, 0), nullptr,
                     "frameworks/av/media/libstagefright/foundation/ABuffer.cpp:69 CHECK_LE( "
                     "offset,mCapacity) failed: 9 vs. 8");
}

TEST(ABufferDeathTest, ASizeBeyondTheCapacityBehindTheOffsetAbortsUnderTheProgramsTag) {
    sp<ABuffer> buffer = new ABuffer(8);
    EXPECT_ASSERTION(buffer->setRange(3, 6), nullptr,
                     "frameworks/av/media/libstagefright/foundation/ABuffer.cpp:70 CHECK_LE( "
                     "size,mCapacity - offset) failed: 6 vs. 5");
}

TEST(ABufferDeathTest, AnEndThatWrapsAroundAborts) {
    sp<ABuffer> buffer = new ABuffer(8);
    EXPECT_ASSERTION(buffer->setRange(1, std::numeric_limits<size_t>::max()), nullptr,
                     "frameworks/av/media/libstagefright/foundation/ABuffer.cpp:70 CHECK_LE( "
                     "size,mCapacity - offset) failed: 18446744073709551615 vs. 7");
}

}  // namespace
