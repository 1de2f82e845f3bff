// SPDX-License-Identifier: Apache-2.0
#include "base/ByteView.h"

#include <gtest/gtest.h>

namespace android::ogm {
namespace {

constexpr uint8_t kBytes[] = {'O', 'g', 'g', 'S', 0x81, 0x92, 0xA3, 0xB4, 0xC5};
constexpr ByteView kView(kBytes, sizeof(kBytes));

TEST(ByteViewTest, ABytePastTheEndIsZero) {
    EXPECT_EQ(kView[8], 0xC5);
    EXPECT_EQ(kView[9], 0);
    EXPECT_EQ(kView[SIZE_MAX], 0);
    EXPECT_EQ(ByteView()[0], 0);
}

TEST(ByteViewTest, NumbersAreReadInTheirByteOrder) {
    EXPECT_EQ(kView.u16le(4), 0x9281);
    EXPECT_EQ(kView.u32le(4), 0xB4A39281U);
    EXPECT_EQ(kView.u64le(0), 0xB4A392815367674FULL);
    EXPECT_EQ(kView.u32be(4), 0x8192A3B4U);
}

TEST(ByteViewTest, TheMissingBytesOfANumberAreZero) {
    EXPECT_EQ(kView.u16le(8), 0x00C5);
    EXPECT_EQ(kView.u32le(7), 0x0000C5B4U);
    EXPECT_EQ(kView.u64le(8), 0xC5U);
    EXPECT_EQ(kView.u32be(6), 0xA3B4C500U);
    EXPECT_EQ(kView.u32be(7), 0xB4C50000U);
    EXPECT_EQ(kView.u32be(8), 0xC5000000U);
    EXPECT_EQ(kView.u32be(SIZE_MAX), 0U);
    EXPECT_EQ(kView.u64le(SIZE_MAX - 3), 0U);
}

TEST(ByteViewTest, AByteIsFoundAtOrAfterThePlaceWhereTheSearchBegins) {
    EXPECT_EQ(kView.find('g', 0), 1U);
    EXPECT_EQ(kView.find('g', 1), 1U);
    EXPECT_EQ(kView.find('g', 2), 2U);
    EXPECT_EQ(kView.find('g', 3), std::nullopt);
    EXPECT_EQ(kView.find(0xC5, 0), 8U);
    EXPECT_EQ(kView.find(0, 0), std::nullopt);
    EXPECT_EQ(kView.find('O', SIZE_MAX), std::nullopt);
    EXPECT_EQ(ByteView().find(0, 0), std::nullopt);
}

TEST(ByteViewTest, ATextIsFoundAtOrAfterThePlaceWhereTheSearchBegins) {
    EXPECT_EQ(kView.find("gS", 0), 2U);
    EXPECT_EQ(kView.find("gS", 2), 2U);
    EXPECT_EQ(kView.find("gS", 3), std::nullopt);
    EXPECT_EQ(kView.first(3).find("gS", 0), std::nullopt);
    EXPECT_EQ(kView.find("O", SIZE_MAX), std::nullopt);
    EXPECT_EQ(ByteView().find("O", 0), std::nullopt);
}

TEST(ByteViewTest, ATextMustFitWholly) {
    EXPECT_TRUE(kView.holds("OggS", 0));
    EXPECT_TRUE(kView.holds("S", 3));
    EXPECT_FALSE(kView.holds("Ogg", 1));
    EXPECT_FALSE(kView.first(3).holds("OggS", 0));
    EXPECT_FALSE(kView.holds("O", SIZE_MAX));
    EXPECT_TRUE(kView.holds("", 9));
}

TEST(ByteViewTest, PartsStayWithinTheWhole) {
    EXPECT_EQ(kView.from(4).size(), 5U);
    EXPECT_EQ(kView.from(4)[0], 0x81);
    EXPECT_TRUE(kView.from(100).empty());
    EXPECT_EQ(kView.first(4).size(), 4U);
    EXPECT_EQ(kView.first(4)[4], 0);
    EXPECT_EQ(kView.first(100).size(), 9U);
}

}  // namespace
}  // namespace android::ogm
