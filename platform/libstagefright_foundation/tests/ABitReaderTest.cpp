// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ABitReader.h>

#include <gtest/gtest.h>

#include <vector>

#include "ExpectAssertion.h"

using android::ABitReader;

namespace {

constexpr uint8_t kBytes[] = {0x12, 0x34, 0x56, 0x78, 0x9a, 0xbc, 0xde, 0xf0};

constexpr char kGetBitsText[] =
        "frameworks/av/media/libstagefright/foundation/ABitReader.cpp:56 "
        "CHECK(getBitsGraceful(n, &ret)) failed.";

TEST(ABitReader, ReadsTheMostSignificantBitFirst) {
    ABitReader reader(kBytes, sizeof(kBytes));
    EXPECT_EQ(reader.getBits(3), 0x12u >> 5);
    EXPECT_EQ(reader.getBits(1), 1u);
    EXPECT_EQ(reader.getBits(4), 2u);
    EXPECT_EQ(reader.getBits(12), 0x345u);
    EXPECT_EQ(reader.getBits(32), 0x6789abcdu);
    EXPECT_EQ(reader.numBitsLeft(), 12u);
}

TEST(ABitReader, ReadsUpTo32BitsFromAnyBitPosition) {
    for (size_t skip = 0; skip < 8; ++skip) {
        ABitReader reader(kBytes, sizeof(kBytes));
        ASSERT_TRUE(reader.skipBits(skip));
        const uint64_t first40 = 0x123456789aull;
        EXPECT_EQ(reader.getBits(32), static_cast<uint32_t>(first40 >> (8 - skip))) << skip;
    }
}

TEST(ABitReader, ReadingNoBitsSucceedsEvenAtTheEnd) {
    ABitReader reader(kBytes, 1);
    EXPECT_EQ(reader.getBits(0), 0u);
    EXPECT_EQ(reader.getBits(8), 0x12u);
    EXPECT_EQ(reader.getBits(0), 0u);
    EXPECT_TRUE(reader.skipBits(0));
    EXPECT_FALSE(reader.overRead());
    ABitReader empty(nullptr, 0);
    EXPECT_EQ(empty.getBits(0), 0u);
    EXPECT_FALSE(empty.overRead());
}

TEST(ABitReader, AFailedReadLeavesTheOutputAloneAndConsumesTheRest) {
    ABitReader reader(kBytes, 2);
    EXPECT_EQ(reader.getBits(4), 1u);
    uint32_t out = 77;
    EXPECT_FALSE(reader.getBitsGraceful(13, &out));
    EXPECT_EQ(out, 77u);
    EXPECT_EQ(reader.numBitsLeft(), 0u);
    EXPECT_TRUE(reader.overRead());
    EXPECT_FALSE(reader.getBitsGraceful(1, &out));
}

TEST(ABitReader, AReadOfMoreThan32BitsFailsAndConsumesNothing) {
    ABitReader reader(kBytes, sizeof(kBytes));
    uint32_t out = 77;
    EXPECT_FALSE(reader.getBitsGraceful(33, &out));
    EXPECT_EQ(out, 77u);
    EXPECT_EQ(reader.numBitsLeft(), 64u);
    EXPECT_FALSE(reader.overRead());
    EXPECT_EQ(reader.getBits(8), 0x12u);
}

TEST(ABitReader, TheFallbackStandsForAFailedRead) {
    ABitReader reader(kBytes, 1);
    EXPECT_EQ(reader.getBitsWithFallback(4, 99), 1u);
    EXPECT_EQ(reader.getBitsWithFallback(33, 99), 99u);
    EXPECT_EQ(reader.numBitsLeft(), 4u);
    EXPECT_EQ(reader.getBitsWithFallback(5, 99), 99u);
    EXPECT_EQ(reader.numBitsLeft(), 0u);
    EXPECT_TRUE(reader.overRead());
}

TEST(ABitReader, SkipsAnyNumberOfBits) {
    std::vector<uint8_t> bytes(100, 0);
    bytes[50] = 0xab;
    ABitReader reader(bytes.data(), bytes.size());
    EXPECT_EQ(reader.getBits(3), 0u);
    EXPECT_TRUE(reader.skipBits(50 * 8 - 3));
    EXPECT_EQ(reader.getBits(8), 0xabu);
    EXPECT_TRUE(reader.skipBits(3));
    EXPECT_TRUE(reader.skipBits(2));
    EXPECT_EQ(reader.numBitsLeft(), 49u * 8 - 5);
    EXPECT_TRUE(reader.skipBits(49 * 8 - 5));
    EXPECT_EQ(reader.numBitsLeft(), 0u);
    EXPECT_FALSE(reader.overRead());
}

TEST(ABitReader, ASkipBeyondTheEndFailsAndConsumesTheRest) {
    ABitReader reader(kBytes, 2);
    EXPECT_FALSE(reader.skipBits(17));
    EXPECT_EQ(reader.numBitsLeft(), 0u);
    EXPECT_TRUE(reader.overRead());
}

TEST(ABitReader, DataIsTheByteOfTheNextUnreadBit) {
    ABitReader reader(kBytes, sizeof(kBytes));
    EXPECT_EQ(reader.data(), kBytes);
    reader.getBits(1);
    EXPECT_EQ(reader.data(), kBytes);
    reader.getBits(6);
    EXPECT_EQ(reader.data(), kBytes);
    reader.getBits(1);
    EXPECT_EQ(reader.data(), kBytes + 1);
    reader.getBits(32);
    EXPECT_EQ(reader.data(), kBytes + 5);
    reader.skipBits(9);
    EXPECT_EQ(reader.data(), kBytes + 6);
}

TEST(ABitReader, BitsPutBackAreReadNext) {
    ABitReader reader(kBytes, sizeof(kBytes));
    EXPECT_EQ(reader.getBits(12), 0x123u);
    reader.putBits(0x23, 8);
    EXPECT_EQ(reader.numBitsLeft(), 60u);
    EXPECT_EQ(reader.data(), kBytes);
    EXPECT_EQ(reader.getBits(16), 0x2345u);
}

TEST(ABitReader, OnlyTheLowestBitsArePutBack) {
    ABitReader reader(kBytes, sizeof(kBytes));
    reader.getBits(8);
    reader.putBits(0xffffff5, 4);
    EXPECT_EQ(reader.getBits(4), 5u);
    EXPECT_EQ(reader.getBits(8), 0x34u);
    reader.putBits(0xff, 0);
    EXPECT_EQ(reader.getBits(8), 0x56u);
}

TEST(ABitReader, AllThatWasReadCanBePutBack) {
    ABitReader reader(kBytes, sizeof(kBytes));
    reader.getBits(32);
    reader.getBits(32);
    reader.putBits(0x9abcdef0, 32);
    reader.putBits(0x12345678, 32);
    EXPECT_EQ(reader.numBitsLeft(), 64u);
    EXPECT_EQ(reader.data(), kBytes);
    EXPECT_EQ(reader.getBits(32), 0x12345678u);
    EXPECT_EQ(reader.getBits(32), 0x9abcdef0u);
}

TEST(ABitReader, PuttingBitsBackAfterAnOverReadDoesNothing) {
    ABitReader reader(kBytes, 1);
    EXPECT_FALSE(reader.skipBits(9));
    reader.putBits(0xff, 8);
    EXPECT_EQ(reader.numBitsLeft(), 0u);
}

TEST(ABitReaderDeathTest, GetBitsAbortsAtTheEndOfTheDataUnderTheProgramsTag) {
    ABitReader reader(kBytes, 1);
    EXPECT_ASSERTION(reader.getBits(9), nullptr, kGetBitsText);
}

TEST(ABitReaderDeathTest, GetBitsAbortsForMoreThan32Bits) {
    ABitReader reader(kBytes, sizeof(kBytes));
    EXPECT_ASSERTION(reader.getBits(33), nullptr, kGetBitsText);
}

TEST(ABitReaderDeathTest, PuttingBackMoreThan32BitsAborts) {
    ABitReader reader(kBytes, sizeof(kBytes));
    EXPECT_ASSERTION(reader.putBits(0, 33), nullptr,
                     "frameworks/av/media/libstagefright/foundation/ABitReader.cpp:117 CHECK_LE( "
                     "n,32u) failed: 33 vs. 32");
}

TEST(ABitReaderDeathTest, PuttingBackFarMoreThanWasReadAborts) {
    ABitReader reader(kBytes, sizeof(kBytes));
    reader.putBits(0, 32);
    EXPECT_ASSERTION(reader.putBits(0, 32), nullptr,
                     "frameworks/av/media/libstagefright/foundation/ABitReader.cpp:120 CHECK(mNext "
                     "> mBegin) failed.");
}

}  // namespace
