// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginHelper.h>

#include <stddef.h>
#include <stdint.h>

#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

using android::UUID;

namespace {

constexpr size_t kTextSize = 37;

constexpr char kInvalidTexts[][kTextSize] = {
        "g2345678-1234-1234-1234-123456789abc", "12345678-1234-1234-1234-123456789ab ",
        "1234567--1234-1234-1234-123456789abc", "12345678x1234-1234-1234-123456789abc",
        "12345678-1234x1234-1234-123456789abc", "12345678-1234-1234x1234-123456789abc",
        "12345678-1234-1234-1234x123456789abc", "12345678-1234-1234-1234-12345678/abc",
        "12345678-1234-1234-1234-12345678:abc", "12345678-1234-1234-1234-123456789@bc",
        "12345678-1234-1234-1234-123456789`bc",
};
constexpr size_t kInvalidTextCount = sizeof kInvalidTexts / sizeof kInvalidTexts[0];

constexpr char kValidText[kTextSize] = "12345678-1234-1234-1234-123456789abc";

template <size_t index>
struct InvalidText {
    static constexpr uint8_t firstByte() { return UUID(kInvalidTexts[index]).b[0]; }
};

struct ValidText {
    static constexpr uint8_t firstByte() { return UUID(kValidText).b[0]; }
};

template <typename Text, uint8_t = Text::firstByte()>
constexpr bool isConstant(int) {
    return true;
}

template <typename Text>
constexpr bool isConstant(...) {
    return false;
}

template <size_t... indices>
constexpr bool isAnyConstant(std::index_sequence<indices...>) {
    return (isConstant<InvalidText<indices>>(0) || ...);
}

TEST(UuidTest, TheBytesAreInTextOrder) {
    constexpr auto uuid = UUID("01234567-89ab-cdef-fedc-ba9876543210");
    const uint8_t expected[16] = {0x01, 0x23, 0x45, 0x67, 0x89, 0xab, 0xcd, 0xef,
                                  0xfe, 0xdc, 0xba, 0x98, 0x76, 0x54, 0x32, 0x10};
    for (size_t i = 0; i < sizeof expected; ++i) {
        EXPECT_EQ(expected[i], uuid.b[i]) << i;
    }
}

TEST(UuidTest, DigitsMayBeOfEitherCase) {
    constexpr auto lower = UUID("abcdefab-cdef-abcd-efab-cdefabcdefab");
    constexpr auto upper = UUID("ABCDEFAB-CDEF-ABCD-EFAB-CDEFABCDEFAB");
    for (size_t i = 0; i < sizeof lower.b; ++i) {
        EXPECT_EQ(lower.b[i], upper.b[i]) << i;
    }
    EXPECT_EQ(0xab, upper.b[0]);
}

TEST(UuidTest, AValidTextIsAConstantExpression) {
    static_assert(isConstant<ValidText>(0));
    static_assert(std::is_same_v<decltype(UUID(kValidText)), android::media_uuid_t>);
    EXPECT_EQ(0x12, ValidText::firstByte());
}

TEST(UuidTest, AWrongCharacterIsNoConstantExpression) {
    EXPECT_FALSE(isAnyConstant(std::make_index_sequence<kInvalidTextCount>()));
}

}  // namespace
