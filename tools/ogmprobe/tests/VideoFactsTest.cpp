// SPDX-License-Identifier: Apache-2.0
#include "codecs/VideoFacts.h"

#include <gtest/gtest.h>

#include <vector>

namespace ogmprobe {
namespace {

using Bytes = std::vector<uint8_t>;

const Bytes kObjectLayer = {0x00, 0x00, 0x01, 0x20, 0x08, 0xd4, 0x8d, 0x08, 0x00, 0xcd,
                            0x05, 0x84, 0x12, 0x14, 0x10, 0x3f, 0x00, 0x00, 0x01, 0xb2};
const Bytes kSequence = {0x00, 0x00, 0x01, 0xb3, 0x2d, 0x02, 0x40, 0x33, 0xff, 0xff, 0xe0, 0x18};
const Bytes kSequenceExtension = {0x00, 0x00, 0x01, 0xb5, 0x14, 0x82, 0x00, 0x01, 0x00, 0x00};
const Bytes kParameterSet = {0x00, 0x00, 0x00, 0x01, 0x67, 0x64, 0x00, 0x1f, 0xac, 0xd9, 0x40, 0x50,
                             0x05, 0xbb, 0x01, 0x10, 0x00, 0x00, 0x03, 0x00, 0x10, 0x00, 0x00, 0x03,
                             0x03, 0x20, 0xf1, 0x83, 0x19, 0x60, 0x00, 0x00, 0x00, 0x01, 0x68};

Bytes joined(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

TEST(Mpeg4Facts, AreThoseOfTheVideoObjectLayer) {
    const auto facts = mpeg4Facts(joined({0x00, 0x55}, kObjectLayer));
    ASSERT_TRUE(facts);
    EXPECT_EQ(videoFactsText(*facts),
              "Advanced Simple profile, 176x144, sample aspect 1:1, "
              "11:9 picture, progressive");
}

TEST(Mpeg4Facts, HaveTheProfileAndLevelOfTheSequence) {
    const auto facts = mpeg4Facts(joined({0x00, 0x00, 0x01, 0xb0, 0xf5}, kObjectLayer));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->profile, "Advanced Simple");
    EXPECT_EQ(facts->level, "5");
}

TEST(Mpeg4Facts, AreNoneWhereTheLayerIsMissingOrCutOff) {
    EXPECT_FALSE(mpeg4Facts(Bytes{0x00, 0x00, 0x01, 0xb6, 0x00}));
    EXPECT_FALSE(mpeg4Facts(std::span(kObjectLayer).first(9)));
}

TEST(Mpeg2Facts, AreThoseOfTheSequenceAndItsExtension) {
    const auto facts = mpeg2Facts(joined(kSequence, kSequenceExtension));
    ASSERT_TRUE(facts);
    EXPECT_EQ(videoFactsText(*facts),
              "Main profile, level Main, 720x576, 16:9 picture, interlaced");
}

TEST(Mpeg2Facts, AreThoseOfMpeg1WithoutAnExtension) {
    const auto facts = mpeg2Facts(kSequence);
    ASSERT_TRUE(facts);
    EXPECT_EQ(videoFactsText(*facts), "MPEG-1, 720x576, progressive");
}

TEST(H264Facts, AreThoseOfTheSequenceParameterSet) {
    const auto facts = h264Facts(kParameterSet);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->profile, "High");
    EXPECT_EQ(facts->level, "3.1");
    EXPECT_EQ(facts->width, 1280U);
    EXPECT_EQ(facts->height, 720U);
    EXPECT_EQ(facts->interlaced, false);
}

TEST(H264Facts, AreNoneWithoutAParameterSet) {
    EXPECT_FALSE(h264Facts(Bytes{0x00, 0x00, 0x01, 0x65, 0x88}));
    EXPECT_FALSE(h264Facts(Bytes{0x00, 0x00, 0x01, 0x67, 0x64}));
}

}  // namespace
}  // namespace ogmprobe
