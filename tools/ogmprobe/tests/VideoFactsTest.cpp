// SPDX-License-Identifier: Apache-2.0
#include "codecs/VideoFacts.h"

#include <gtest/gtest.h>

#include <string_view>
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
              "11:9 picture, progressive, 4:2:0, quantizer H.263");
}

TEST(Mpeg4Facts, HaveTheProfileAndLevelOfTheSequence) {
    const auto facts = mpeg4Facts(joined({0x00, 0x00, 0x01, 0xb0, 0xf5}, kObjectLayer));
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->profile, "Advanced Simple");
    EXPECT_EQ(facts->level, "5");
}

TEST(Mpeg4Facts, AreEmptyWhereTheLayerIsMissingOrCutOff) {
    EXPECT_FALSE(mpeg4Facts(Bytes{0x00, 0x00, 0x01, 0xb6, 0x00}));
    EXPECT_FALSE(mpeg4Facts(std::span(kObjectLayer).first(9)));
}

/** Writes bits from the most significant one on. */
class BitWriter {
  public:
    BitWriter& put(uint32_t value, unsigned count) {
        for (; count > 0; --count) {
            if (mUsed % 8 == 0) {
                mBytes.push_back(0);
            }
            mBytes.back() |= static_cast<uint8_t>((value >> (count - 1) & 1U) << (7 - mUsed % 8));
            ++mUsed;
        }
        return *this;
    }
    const Bytes& bytes() const { return mBytes; }

  private:
    Bytes mBytes;
    unsigned mUsed = 0;
};

/** A layer of version 2, up to its size; the size is 176x144. */
BitWriter secondVersionLayer() {
    BitWriter bits;
    bits.put(0x00000120, 32).put(0, 1).put(17, 8).put(1, 1).put(2, 4).put(1, 3).put(1, 4);
    bits.put(1, 1).put(1, 2).put(0, 1).put(0, 1);
    bits.put(0, 2).put(1, 1).put(25, 16).put(1, 1).put(0, 1);
    bits.put(1, 1).put(176, 13).put(1, 1).put(144, 13).put(1, 1);
    return bits;
}

TEST(Mpeg4Facts, NameFeaturesThatAreHardForDecoders) {
    BitWriter bits = secondVersionLayer();
    bits.put(1, 1).put(1, 1);                      // interlaced, obmc_disable
    bits.put(2, 2).put(3, 6).put(1, 2).put(0, 1);  // global motion by three points
    bits.put(0, 1).put(1, 1).put(1, 1);            // 8 bits, with a matrix
    bits.put(8, 8).put(9, 8).put(0, 8).put(0, 1);  // it is cut short
    bits.put(1, 1).put(0, 8);                      // quarter_sample
    const auto facts = mpeg4Facts(bits.bytes());
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->quarterPel, true);
    EXPECT_EQ(facts->warpPoints, 3U);
    EXPECT_EQ(facts->quantizer, "MPEG with own matrices");
    EXPECT_EQ(
            videoFactsText(*facts),
            "Advanced Simple profile, 176x144, sample aspect 1:1, 11:9 picture, interlaced, "
            "4:2:0, quantizer MPEG with own matrices, quarter-pel motion, global motion by 3 warp "
            "points");
}

TEST(Mpeg4Facts, DoNotMentionWhatIsNotUsed) {
    BitWriter bits = secondVersionLayer();
    bits.put(0, 1).put(1, 1).put(0, 2).put(0, 1).put(0, 1).put(0, 1).put(0, 8);
    const auto facts = mpeg4Facts(bits.bytes());
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->quarterPel, false);
    EXPECT_FALSE(facts->warpPoints);
    EXPECT_EQ(facts->quantizer, "H.263");
}

Bytes userData(std::string_view text) {
    return joined({0x00, 0x00, 0x01, 0xb2}, {text.begin(), text.end()});
}

TEST(Mpeg4Facts, NameTheEncoderAndWhetherItPacksPictures) {
    const auto divx = mpeg4Facts(joined(kObjectLayer, userData("DivX503b1393p")));
    ASSERT_TRUE(divx);
    EXPECT_TRUE(divx->packed);
    const auto xvid =
            mpeg4Facts(joined(joined(kObjectLayer, userData("XviD0046")), userData("Lavc52.1.2p")));
    ASSERT_TRUE(xvid);
    EXPECT_FALSE(xvid->packed);
    EXPECT_EQ(xvid->encoder, "XviD0046, Lavc52.1.2p");
}

TEST(BPictures, AreCountedInTheLongestRow) {
    const auto picture = [](uint8_t type) {
        return Bytes{0x00, 0x00, 0x01, 0xb6, static_cast<uint8_t>(type << 6), 0x10};
    };
    Bytes stream;
    for (const uint8_t type : {0, 1, 2, 1, 2, 2, 1}) {
        stream = joined(stream, picture(type));
    }
    EXPECT_EQ(mostBPictures(stream), 2U);
    EXPECT_EQ(mostBPictures(picture(0)), 0U);
    EXPECT_EQ(mostBPictures(kSequence), std::nullopt);
    EXPECT_EQ(mostBPictures(Bytes{0x00, 0x00, 0x01, 0x00, 0x00, 0x18}), 1U) << "of MPEG-2";
}

TEST(Mpeg2Facts, AreThoseOfTheSequenceAndItsExtension) {
    const auto facts = mpeg2Facts(joined(kSequence, kSequenceExtension));
    ASSERT_TRUE(facts);
    EXPECT_EQ(videoFactsText(*facts),
              "Main profile, level Main, 720x576, 16:9 picture, interlaced, 4:2:0");
}

TEST(Mpeg2Facts, AreThoseOfMpeg1WithoutAnExtension) {
    const auto facts = mpeg2Facts(kSequence);
    ASSERT_TRUE(facts);
    EXPECT_EQ(videoFactsText(*facts), "MPEG-1, 720x576, progressive, 4:2:0");
}

TEST(H264Facts, AreThoseOfTheSequenceParameterSet) {
    const auto facts = h264Facts(kParameterSet);
    ASSERT_TRUE(facts);
    EXPECT_EQ(facts->profile, "High");
    EXPECT_EQ(facts->level, "3.1");
    EXPECT_EQ(facts->width, 1280U);
    EXPECT_EQ(facts->height, 720U);
    EXPECT_EQ(facts->interlaced, false);
    EXPECT_EQ(facts->chroma, "4:2:0");
}

TEST(H264Facts, AreEmptyWithoutAParameterSet) {
    EXPECT_FALSE(h264Facts(Bytes{0x00, 0x00, 0x01, 0x65, 0x88}));
    EXPECT_FALSE(h264Facts(Bytes{0x00, 0x00, 0x01, 0x67, 0x64}));
}

}  // namespace
}  // namespace ogmprobe
