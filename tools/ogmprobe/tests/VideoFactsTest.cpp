// SPDX-License-Identifier: Apache-2.0
#include "codecs/VideoFacts.h"

#include <BitWriter.h>
#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

namespace ogmprobe {
namespace {

using android::ogm::test::BitWriter;
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

/** A sequence of 720x576 with its extension. */
Bytes mpeg2Sequence(uint32_t aspect, uint32_t profile, uint32_t level, uint32_t chroma) {
    BitWriter bits;
    bits.put(0x1b3, 32).put(720, 12).put(576, 12).put(aspect, 4).put(3, 4);
    bits.put(0x1b5, 32).put(1, 4).put(1, 1).put(profile, 3).put(level, 4).put(1, 1).put(chroma, 2);
    bits.put(0, 17);
    return bits.bytes();
}

TEST(Mpeg2Facts, HaveTheNamesOfTheirCodes) {
    using Names = std::vector<std::pair<uint32_t, std::string>>;
    for (const auto& [code, name] : Names{{0, ""},
                                          {1, "1:1"},
                                          {2, "4:3 picture"},
                                          {3, "16:9 picture"},
                                          {4, "2.21:1 picture"},
                                          {5, ""}}) {
        EXPECT_EQ(mpeg2Facts(mpeg2Sequence(code, 4, 8, 1))->aspect, name) << code;
    }
    for (const auto& [code, name] : Names{{0, ""},
                                          {1, "High"},
                                          {2, "Spatially Scalable"},
                                          {3, "SNR Scalable"},
                                          {4, "Main"},
                                          {5, "Simple"},
                                          {6, ""}}) {
        EXPECT_EQ(mpeg2Facts(mpeg2Sequence(3, code, 8, 1))->profile, name) << code;
    }
    for (const auto& [code, name] :
         Names{{3, ""}, {4, "High"}, {5, ""}, {6, "High 1440"}, {8, "Main"}, {10, "Low"}}) {
        EXPECT_EQ(mpeg2Facts(mpeg2Sequence(3, 4, code, 1))->level, name) << code;
    }
    for (const auto& [code, name] : Names{{0, ""}, {1, "4:2:0"}, {2, "4:2:2"}, {3, "4:4:4"}}) {
        EXPECT_EQ(mpeg2Facts(mpeg2Sequence(3, 4, 8, code))->chroma, name) << code;
    }
}

TEST(Mpeg2Facts, AreOfMpeg1WithoutAWholeExtensionOfTheSequence) {
    const Bytes whole = mpeg2Sequence(1, 4, 8, 1);
    const size_t extension = 8;
    for (size_t size = whole.size() - 1; size > extension + 6; --size) {
        EXPECT_EQ(mpeg2Facts(std::span(whole).first(size))->profile, "Main") << size;
    }
    for (size_t size = extension; size <= extension + 6; ++size) {
        EXPECT_EQ(videoFactsText(*mpeg2Facts(std::span(whole).first(size))),
                  "MPEG-1, 720x576, sample aspect 1:1, 5:4 picture, progressive, 4:2:0")
                << size;
    }
    Bytes another = whole;
    another[extension + 4] = 0x24;
    EXPECT_EQ(mpeg2Facts(another)->profile, "MPEG-1") << "with a display extension alone";
}

TEST(Mpeg2Facts, AreNoneOfASequenceThatIsCutOff) {
    EXPECT_FALSE(mpeg2Facts(std::span(kSequence).first(7)));
    EXPECT_TRUE(mpeg2Facts(std::span(kSequence).first(8)));
}

TEST(VideoFactsText, NamesOnlyWhatIsKnown) {
    VideoFacts facts;
    EXPECT_EQ(videoFactsText(facts), "");
    facts.width = 720;
    facts.height = 576;
    facts.aspect = "16:11";
    EXPECT_EQ(videoFactsText(facts), "720x576, sample aspect 16:11, 20:11 picture");
    facts.bPictures = 0;
    facts.packed = true;
    EXPECT_EQ(videoFactsText(facts),
              "720x576, sample aspect 16:11, 20:11 picture, no B pictures, packed");
    facts.aspect = "0:11";
    facts.bPictures = 1;
    EXPECT_EQ(videoFactsText(facts),
              "720x576, sample aspect 0:11, up to 1 B picture in a row, packed");
    facts.aspect = "16:0";
    facts.bPictures = 3;
    facts.packed = false;
    EXPECT_EQ(videoFactsText(facts), "720x576, sample aspect 16:0, up to 3 B pictures in a row");
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
