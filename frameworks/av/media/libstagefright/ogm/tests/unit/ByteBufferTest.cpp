// SPDX-License-Identifier: Apache-2.0
#include "base/ByteBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "Views.h"

namespace android::ogm::test::byte_buffer_test {
namespace {

TEST(ByteBufferTest, ANewOneIsEmpty) {
    EXPECT_TRUE(ByteBuffer().empty());
    EXPECT_EQ(ByteBuffer().view().data(), nullptr);
}

TEST(ByteBufferTest, OneOfNoBytesHasANonNullPointer) {
    EXPECT_NE(ByteBuffer(size_t{0}).data(), nullptr);
}

TEST(ByteBufferTest, AppendingKeepsTheExistingBytes) {
    ByteBuffer buffer(viewOf({1, 2}));
    buffer.append(viewOf({3}));
    buffer.append(ByteView());
    buffer.append(viewOf(pattern(5000, 1)));
    EXPECT_EQ(bytesOf(buffer), joined({{1, 2, 3}, pattern(5000, 1)}));
}

TEST(ByteBufferTest, DroppingTheFrontKeepsTheRest) {
    ByteBuffer buffer(viewOf({1, 2, 3, 4, 5}));
    buffer.dropFront(2);
    EXPECT_EQ(bytesOf(buffer), (Bytes{3, 4, 5}));
    buffer.append(viewOf({6}));
    EXPECT_EQ(bytesOf(buffer), (Bytes{3, 4, 5, 6}));
    buffer.dropFront(100);
    EXPECT_TRUE(buffer.empty());
}

TEST(ByteBufferTest, FilledAndEmptiedManyTimesItKeepsItsStorage) {
    ByteBuffer buffer(viewOf(pattern(100, 0)));
    buffer.append(viewOf(pattern(100, 1)));  // room for twice that from here on
    const uint8_t* const storage = buffer.data();
    for (uint32_t i = 2; i < 1000; ++i) {
        buffer.dropFront(100);
        buffer.append(viewOf(pattern(100, i)));
        ASSERT_EQ(bytesOf(buffer), joined({pattern(100, i - 1), pattern(100, i)}));
        ASSERT_GE(buffer.data(), storage);
        ASSERT_LT(buffer.data(), storage + 400);
    }
}

/** 400 bytes that fill their storage, of which the first `dropped` are dropped. */
ByteBuffer fullOf400(size_t dropped) {
    ByteBuffer buffer(viewOf(pattern(100, 0)));
    buffer.append(viewOf(pattern(100, 1)));
    buffer.append(viewOf(pattern(200, 2)));
    buffer.dropFront(dropped);
    return buffer;
}

TEST(ByteBufferTest, NewStorageHasRoomForAsManyBytesAgain) {
    ByteBuffer buffer(viewOf(pattern(100, 0)));
    EXPECT_TRUE(buffer.isFull());
    buffer.append(viewOf(pattern(100, 1)));
    const uint8_t* const storage = buffer.data();
    buffer.append(viewOf(pattern(199, 2)));
    EXPECT_FALSE(buffer.isFull());
    buffer.append(viewOf({1}));
    EXPECT_TRUE(buffer.isFull());
    EXPECT_EQ(buffer.data(), storage);
}

TEST(ByteBufferTest, BytesAreMovedToTheStartOfTheirStorageOnceAsManyHaveBeenDropped) {
    ByteBuffer buffer = fullOf400(200);
    const uint8_t* const storage = buffer.data() - 200;
    buffer.append(viewOf(pattern(200, 3)));
    EXPECT_EQ(buffer.data(), storage);
    EXPECT_EQ(bytesOf(buffer), joined({pattern(200, 2), pattern(200, 3)}));
    EXPECT_TRUE(buffer.isFull());
}

TEST(ByteBufferTest, BytesGetNewStorageAsLongAsFewerHaveBeenDropped) {
    ByteBuffer buffer = fullOf400(199);
    const uint8_t* const storage = buffer.data() - 199;
    buffer.append(viewOf({3}));
    EXPECT_NE(buffer.data(), storage);
    EXPECT_EQ(bytesOf(buffer), joined({tail(pattern(100, 1), 99), pattern(200, 2), {3}}));
}

TEST(ByteBufferTest, MovingLeavesAnEmptyOne) {
    ByteBuffer from(viewOf({1, 2, 3}));
    from.dropFront(1);
    ByteBuffer to(std::move(from));
    EXPECT_EQ(bytesOf(to), (Bytes{2, 3}));
    EXPECT_TRUE(from.empty());  // NOLINT(bugprone-use-after-move): it is what is tested
    from.append(viewOf({4}));
    EXPECT_EQ(bytesOf(from), (Bytes{4}));
    EXPECT_EQ(bytesOf(to), (Bytes{2, 3}));
}

TEST(ByteBufferTest, ClearingKeepsTheStorage) {
    ByteBuffer buffer(viewOf({1, 2, 3}));
    const uint8_t* const storage = buffer.data();
    buffer.clear();
    EXPECT_TRUE(buffer.empty());
    buffer.append(viewOf({4, 5, 6}));
    EXPECT_EQ(buffer.data(), storage);
}

TEST(ByteBufferTest, IsFullUntilAppendingHasMadeRoom) {
    ByteBuffer buffer(10);
    EXPECT_TRUE(buffer.isFull());
    buffer.dropFront(3);
    EXPECT_TRUE(buffer.isFull());
    buffer.append(viewOf({1}));
    EXPECT_FALSE(buffer.isFull());
}

TEST(ByteBufferTest, APartLiesInTheSameStorageAndEndsWithTheBytes) {
    ByteBuffer buffer(viewOf({1, 2, 3, 4, 5}));
    const ByteBuffer part = buffer.part(1, 3);
    EXPECT_EQ(part.view().data(), buffer.data() + 1);
    EXPECT_EQ(bytesOf(part), (Bytes{2, 3, 4}));
    EXPECT_EQ(bytesOf(buffer.part(3, 100)), (Bytes{4, 5}));
    EXPECT_TRUE(buffer.part(5, 1).empty());
    EXPECT_TRUE(buffer.part(100, 1).empty());
}

TEST(ByteBufferTest, APartKeepsItsBytesWhateverHappensToTheOther) {
    ByteBuffer buffer(viewOf(pattern(100, 0)));
    buffer.append(viewOf(pattern(100, 1)));  // room for twice that from here on
    ByteBuffer part = buffer.part(100, 50);
    buffer.dropFront(150);
    for (uint32_t i = 2; i < 10; ++i) {
        buffer.append(viewOf(pattern(100, i)));
        ASSERT_EQ(bytesOf(part), pattern(50, 1)) << i;
    }
    part.append(viewOf({1, 2, 3}));
    EXPECT_EQ(bytesOf(part), joined({pattern(50, 1), {1, 2, 3}}));
    buffer.dropFront(50);
    EXPECT_EQ(bytesOf(buffer.part(0, 100)), pattern(100, 2));
    EXPECT_EQ(bytesOf(part), joined({pattern(50, 1), {1, 2, 3}}));
}

TEST(ByteBufferTest, APartKeepsItsBytesWhenTheOtherIsClearedAndFilledAgain) {
    ByteBuffer buffer(viewOf(pattern(100, 0)));
    buffer.append(viewOf(pattern(100, 1)));
    const ByteBuffer part = buffer.part(0, 50);
    buffer.clear();
    buffer.append(viewOf(pattern(50, 9)));
    EXPECT_EQ(bytesOf(part), pattern(50, 0));
    const ByteBuffer second = buffer.part(0, 50);
    buffer.reset(50);
    std::fill_n(buffer.data(), 50, uint8_t{7});
    EXPECT_EQ(bytesOf(second), pattern(50, 9));
}

TEST(ByteBufferTest, ReportsWhereItBeginsInItsStorageAndInNoOther) {
    const SharedBytes storage(100);
    ByteBuffer buffer(storage, 10, 20);
    EXPECT_EQ(buffer.offsetIn(storage), 10U);
    buffer.dropFront(5);
    EXPECT_EQ(buffer.offsetIn(storage), 15U);
    EXPECT_EQ(buffer.offsetIn(SharedBytes(100)), std::nullopt);
    EXPECT_EQ(ByteBuffer().offsetIn(SharedBytes()), std::nullopt);
}

TEST(ByteBufferTest, ResettingKeepsStorageThatIsLargeEnough) {
    ByteBuffer buffer(100);
    const uint8_t* const storage = buffer.data();
    buffer.dropFront(10);
    buffer.reset(1);
    EXPECT_EQ(buffer.size(), 1U);
    EXPECT_EQ(buffer.data(), storage);
    buffer.reset(100);
    EXPECT_EQ(buffer.size(), 100U);
    EXPECT_EQ(buffer.data(), storage);
}

TEST(ByteBufferTest, ResettingToMoreThanThereIsRoomForMakesStorageOfThatSize) {
    ByteBuffer buffer(viewOf({1, 2, 3}));
    buffer.reset(5000);
    EXPECT_EQ(buffer.size(), 5000U);
    const Bytes bytes = pattern(5000, 1);
    std::copy(bytes.begin(), bytes.end(), buffer.data());
    EXPECT_EQ(bytesOf(buffer), bytes);
}

TEST(ByteBufferTest, ResettingAnEmptyOneToNoBytesGivesANonNullPointer) {
    ByteBuffer buffer;
    buffer.reset(0);
    EXPECT_NE(buffer.data(), nullptr);
}

TEST(ByteBufferTest, AnEmptiedOneFillsItsWholeStorageAgain) {
    ByteBuffer buffer(viewOf(pattern(100, 0)));
    const uint8_t* const storage = buffer.data();
    buffer.dropFront(100);
    buffer.append(viewOf(pattern(100, 1)));
    EXPECT_EQ(buffer.data(), storage);
    EXPECT_EQ(bytesOf(buffer), pattern(100, 1));
}

TEST(SteppedCapacityTest, TheFirstNeedIsRoundedUpTo64KiB) {
    EXPECT_EQ(SteppedCapacity().growTo(3), 65536U);
    EXPECT_EQ(SteppedCapacity().growTo(65536), 65536U);
    EXPECT_EQ(SteppedCapacity().growTo(65537), 131072U);
}

TEST(SteppedCapacityTest, AFirstNeedOfNothingIsAGrowthToNothing) {
    SteppedCapacity capacity;
    EXPECT_EQ(capacity.growTo(0), 0U);
    EXPECT_EQ(capacity.growTo(0), std::nullopt);
}

TEST(SteppedCapacityTest, ItGrowsOnlyWhenItIsExceededAndNeverShrinks) {
    SteppedCapacity capacity;
    capacity.growTo(1);
    EXPECT_EQ(capacity.growTo(65536), std::nullopt);
    EXPECT_EQ(capacity.growTo(200000), 262144U);
    EXPECT_EQ(capacity.growTo(1), std::nullopt);
    EXPECT_EQ(capacity.growTo(262144), std::nullopt);
}

}  // namespace
}  // namespace android::ogm::test::byte_buffer_test
