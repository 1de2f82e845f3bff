// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ByteUtils.h>

#include <gtest/gtest.h>

namespace {

constexpr uint8_t kBytes[] = {0x00, 0x81, 0x92, 0xa3, 0xb4, 0xc5, 0xd6, 0xe7, 0xf8};
// No alignment: the reads begin at an odd address.
const uint8_t* const kNumbers = kBytes + 1;

TEST(ByteUtils, BigEndianReadersPutTheFirstByteOnTop) {
    EXPECT_EQ(android::U16_AT(kNumbers), 0x8192u);
    EXPECT_EQ(android::U32_AT(kNumbers), 0x8192a3b4u);
    EXPECT_EQ(android::U64_AT(kNumbers), 0x8192a3b4c5d6e7f8ull);
}

TEST(ByteUtils, LittleEndianReadersPutTheLastByteOnTop) {
    EXPECT_EQ(android::U16LE_AT(kNumbers), 0x9281u);
    EXPECT_EQ(android::U32LE_AT(kNumbers), 0xb4a39281u);
    EXPECT_EQ(android::U64LE_AT(kNumbers), 0xf8e7d6c5b4a39281ull);
}

TEST(ByteUtils, NetworkOrderConversionsReadAndWriteBigEndianNumbers) {
    const uint64_t network = android::hton64(0x0102030405060708ull);
    EXPECT_EQ(android::U64_AT(reinterpret_cast<const uint8_t*>(&network)), 0x0102030405060708ull);
    EXPECT_EQ(android::ntoh64(network), 0x0102030405060708ull);
}

TEST(ByteUtils, FourccHasTheFirstCharacterInTheTopByte) {
    static_assert(android::FOURCC('D', 'I', 'V', 'X') == 0x44495658, "usable at compile time");
    EXPECT_EQ(android::FOURCC('D', 'I', 'V', 'X'), 0x44495658);
    EXPECT_EQ(android::FOURCC("DIVX"), 0x44495658);
    EXPECT_EQ(android::FOURCC("\xff\xff\xff\xfe"), -2);
}

TEST(ByteUtils, MakeFourCCStringWritesTheCharactersAndAZero) {
    char text[6] = "-----";
    android::MakeFourCCString(0x44495658, text);
    EXPECT_STREQ(text, "DIVX");
    EXPECT_EQ(text[5], '\0');
}

}  // namespace
