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
    EXPECT_EQ(reader.getBits(3), 0x12U >> 5);
    EXPECT_EQ(reader.getBits(1), 1U);
    EXPECT_EQ(reader.getBits(4), 2U);
    EXPECT_EQ(reader.getBits(12), 0x345U);
    EXPECT_EQ(reader.getBits(32), 0x6789abcdU);
    EXPECT_EQ(reader.numBitsLeft(), 12U);
}

TEST(ABitReader, ReadsUpTo32BitsFromAnyBitPosition) {
    for (size_t skip = 0; skip < 8; ++skip) {
        ABitReader reader(kBytes, sizeof(kBytes));
        ASSERT_TRUE(reader.skipBits(skip));
        const uint64_t first40 = 0x123456789aULL;
        EXPECT_EQ(reader.getBits(32), static_cast<uint32_t>(first40 >> (8 - skip))) << skip;
    }
}

TEST(ABitReader, ReadingNoBitsSucceedsEvenAtTheEnd) {
    ABitReader reader(kBytes, 1);
    EXPECT_EQ(reader.getBits(0), 0U);
    EXPECT_EQ(reader.getBits(8), 0x12U);
    EXPECT_EQ(reader.getBits(0), 0U);
    EXPECT_TRUE(reader.skipBits(0));
    ABitReader empty(nullptr, 0);
    EXPECT_EQ(empty.getBits(0), 0U);
}

TEST(ABitReader, AFailedReadDoesNotChangeTheOutputAndConsumesTheRest) {
    ABitReader reader(kBytes, 2);
    EXPECT_EQ(reader.getBits(4), 1U);
    uint32_t out = 77;
    EXPECT_FALSE(reader.getBitsGraceful(13, &out));
    EXPECT_EQ(out, 77U);
    EXPECT_EQ(reader.numBitsLeft(), 0U);
    EXPECT_FALSE(reader.getBitsGraceful(1, &out));
}

TEST(ABitReader, AReadOfMoreThan32BitsFailsAndConsumesNothing) {
    ABitReader reader(kBytes, sizeof(kBytes));
    uint32_t out = 77;
    EXPECT_FALSE(reader.getBitsGraceful(33, &out));
    EXPECT_EQ(out, 77U);
    EXPECT_EQ(reader.numBitsLeft(), 64U);
    EXPECT_EQ(reader.getBits(8), 0x12U);
}

TEST(ABitReader, SkipsAnyNumberOfBits) {
    std::vector<uint8_t> bytes(100, 0);
    bytes[50] = 0xab;
    ABitReader reader(bytes.data(), bytes.size());
    EXPECT_EQ(reader.getBits(3), 0U);
    EXPECT_TRUE(reader.skipBits(50 * 8 - 3));
    EXPECT_EQ(reader.getBits(8), 0xabU);
    EXPECT_TRUE(reader.skipBits(3));
    EXPECT_TRUE(reader.skipBits(2));
    EXPECT_EQ(reader.numBitsLeft(), 49U * 8 - 5);
    EXPECT_TRUE(reader.skipBits(49 * 8 - 5));
    EXPECT_EQ(reader.numBitsLeft(), 0U);
}

TEST(ABitReader, ASkipBeyondTheEndFailsAndConsumesTheRest) {
    ABitReader reader(kBytes, 2);
    EXPECT_FALSE(reader.skipBits(17));
    EXPECT_EQ(reader.numBitsLeft(), 0U);
}

TEST(ABitReaderDeathTest, GetBitsAbortsAtTheEndOfTheDataUnderTheProgramsTag) {
    ABitReader reader(kBytes, 1);
    EXPECT_ASSERTION(reader.getBits(9), nullptr, kGetBitsText);
}

TEST(ABitReaderDeathTest, GetBitsAbortsForMoreThan32Bits) {
    ABitReader reader(kBytes, sizeof(kBytes));
    EXPECT_ASSERTION(reader.getBits(33), nullptr, kGetBitsText);
}

}  // namespace
