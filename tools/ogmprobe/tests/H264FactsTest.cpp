// SPDX-License-Identifier: Apache-2.0
#include <BitWriter.h>
#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "codecs/VideoFacts.h"

namespace ogmprobe::h264_facts_test {
namespace {

using android::ogm::test::BitWriter;
using Bytes = std::vector<uint8_t>;
using Part = std::function<void(BitWriter&)>;

constexpr uint32_t kBaseline = 66;
constexpr uint32_t kHigh = 100;

/** A sequence parameter set in the order of its fields; functions write what varies. */
struct ParameterSet {
    uint32_t profile = kBaseline;
    uint32_t level = 30;
    /** Only in profiles that have this field. */
    Part chroma = [](BitWriter&) {};
    /** Type 2: the picture order count follows from the decoding order. */
    Part order = [](BitWriter& bits) { bits.golomb(2); };
    bool framesOnly = true;
    Part crop = [](BitWriter& bits) { bits.put(0, 1); };
    Part aspect = [](BitWriter& bits) { bits.put(0, 1); };
};

/** 11 by 9 macroblocks. */
Bytes written(const ParameterSet& set) {
    BitWriter bits;
    bits.put(1, 32).put(0x67, 8).put(set.profile, 8).put(0, 8).put(set.level, 8).golomb(0);
    set.chroma(bits);
    bits.golomb(0);
    set.order(bits);
    bits.golomb(1).put(0, 1);
    bits.golomb(10).golomb(8).put(set.framesOnly ? 1 : 0, 1);
    bits.put(0, set.framesOnly ? 1 : 2);
    set.crop(bits);
    set.aspect(bits);
    bits.put(0x80, 8);
    // Zeros for a reader that would read too many bits.
    Bytes bytes = bits.bytes();
    bytes.insert(bytes.end(), {0xff, 0xff, 0xff, 0xff});
    return bytes;
}

std::string textOf(const ParameterSet& set) {
    const auto facts = h264Facts(written(set));
    return facts ? videoFactsText(*facts) : "none";
}

TEST(H264Profile, IsNamed) {
    const std::vector<std::pair<uint32_t, std::string>> names = {
            {66, "Baseline"}, {77, "Main"},
            {88, "Extended"}, {100, "High"},
            {110, "High 10"}, {122, "High 4:2:2"},
            {67, ""},         {244, "High 4:4:4 Predictive"}};
    for (const auto& [code, name] : names) {
        ParameterSet set;
        set.profile = code;
        set.chroma = [code = code](BitWriter& bits) {
            if (code >= kHigh) {
                bits.golomb(1).golomb(0).golomb(0).put(0, 2);
            }
        };
        const auto facts = h264Facts(written(set));
        ASSERT_TRUE(facts) << code;
        EXPECT_EQ(facts->profile, name) << code;
        EXPECT_EQ(facts->width, 176U) << code;
    }
}

TEST(H264Profile, IsFollowedByTheChromaFormatInThoseThatSayOne) {
    for (const uint32_t profile : {100, 110, 122, 244, 44, 83, 86, 118, 128}) {
        ParameterSet set;
        set.profile = profile;
        set.chroma = [](BitWriter& bits) { bits.golomb(2).golomb(0).golomb(0).put(0, 2); };
        const auto facts = h264Facts(written(set));
        ASSERT_TRUE(facts) << profile;
        EXPECT_EQ(facts->chroma, "4:2:2") << profile;
        EXPECT_EQ(facts->width, 176U) << profile;
    }
}

TEST(H264Level, HasItsTenthsAfterAPoint) {
    for (const auto& [code, text] : std::vector<std::pair<uint32_t, std::string>>{
                 {9, "0.9"}, {10, "1.0"}, {31, "3.1"}, {51, "5.1"}}) {
        ParameterSet set;
        set.level = code;
        EXPECT_EQ(h264Facts(written(set))->level, text);
    }
}

TEST(H264Chroma, IsNamedAndThoseOfThreePlanesSayWhetherTheyAreSeparate) {
    const std::vector<std::pair<uint32_t, std::string>> names = {
            {0, "monochrome"}, {1, "4:2:0"}, {2, "4:2:2"}, {3, "4:4:4"}};
    for (const auto& [code, name] : names) {
        ParameterSet set;
        set.profile = kHigh;
        set.chroma = [code = code](BitWriter& bits) {
            bits.golomb(code).put(0, code == 3 ? 1 : 0).golomb(0).golomb(0).put(0, 2);
        };
        EXPECT_EQ(textOf(set), "High profile, level 3.0, 176x144, progressive, " + name);
    }
}

/** The bit depths, a flag, and all scaling lists, two of which end early. */
void putScalingLists(BitWriter& bits, uint32_t chroma) {
    bits.golomb(chroma).put(0, chroma == 3 ? 1 : 0).golomb(2).golomb(1).put(1, 1).put(1, 1);
    for (int list = 0; list < (chroma == 3 ? 12 : 8); ++list) {
        const int size = list < 6 ? 16 : 64;
        const bool isAbsent = list == 2;
        bits.put(isAbsent ? 0 : 1, 1);
        for (int i = 0; i < size && !isAbsent; ++i) {
            // A scale of 0 ends a list: the delta is -8, or the equal value modulo 256.
            const bool ends = (list == 1 && i == 0) || (list == 7 && i == 1);
            bits.signedGolomb(!ends ? 1 : i == 0 ? -8 : -9);
            if (ends) {
                break;
            }
        }
    }
}

TEST(H264ScalingLists, ArePassedOver) {
    for (const uint32_t chroma : {1, 3}) {
        ParameterSet set;
        set.profile = kHigh;
        set.chroma = [chroma](BitWriter& bits) { putScalingLists(bits, chroma); };
        EXPECT_EQ(textOf(set), std::string("High profile, level 3.0, 176x144, progressive, ") +
                                       (chroma == 3 ? "4:4:4" : "4:2:0"));
    }
}

TEST(H264PictureOrder, IsPassedOverWhateverItsType) {
    const std::vector<Part> orders = {
            [](BitWriter& bits) { bits.golomb(0).golomb(4); },
            [](BitWriter& bits) {
                bits.golomb(1).put(1, 1).signedGolomb(-3).signedGolomb(2).golomb(3);
                bits.signedGolomb(1).signedGolomb(-1).signedGolomb(5);
            },
            [](BitWriter& bits) { bits.golomb(2); },
    };
    for (const Part& order : orders) {
        ParameterSet set;
        set.order = order;
        EXPECT_EQ(textOf(set), "Baseline profile, level 3.0, 176x144, progressive, 4:2:0");
    }
}

Part cropping(uint32_t left, uint32_t right, uint32_t top, uint32_t bottom) {
    return [=](BitWriter& bits) {
        bits.put(1, 1).golomb(left).golomb(right).golomb(top).golomb(bottom);
    };
}

TEST(H264Picture, LosesWhatIsCropped) {
    ParameterSet set;
    set.crop = cropping(1, 2, 3, 5);
    EXPECT_EQ(textOf(set), "Baseline profile, level 3.0, 170x128, progressive, 4:2:0");
}

TEST(H264Picture, OfFieldsIsTwiceAsHighAndCroppedByTwiceAsMuch) {
    ParameterSet set;
    set.framesOnly = false;
    EXPECT_EQ(textOf(set), "Baseline profile, level 3.0, 176x288, interlaced, 4:2:0");
    set.crop = cropping(1, 2, 3, 5);
    EXPECT_EQ(textOf(set), "Baseline profile, level 3.0, 170x256, interlaced, 4:2:0");
}

TEST(H264Aspect, IsThatOfItsCode) {
    const std::vector<std::pair<uint32_t, std::string>> aspects = {
            {0, ""},       {1, "1:1"},     {2, "12:11"}, {3, "10:11"}, {4, "16:11"},  {5, "40:33"},
            {6, "24:11"},  {7, "20:11"},   {8, "32:11"}, {9, "80:33"}, {10, "18:11"}, {11, "15:11"},
            {12, "64:33"}, {13, "160:99"}, {14, "4:3"},  {15, "3:2"},  {16, "2:1"},   {17, ""}};
    for (const auto& [code, name] : aspects) {
        ParameterSet set;
        set.aspect = [code = code](BitWriter& bits) { bits.put(3, 2).put(code, 8); };
        EXPECT_EQ(h264Facts(written(set))->aspect, name) << code;
    }
}

TEST(H264Aspect, CanBeSpelledOutOrLeftOut) {
    ParameterSet set;
    set.aspect = [](BitWriter& bits) { bits.put(3, 2).put(255, 8).put(1000, 16).put(999, 16); };
    EXPECT_EQ(h264Facts(written(set))->aspect, "1000:999");
    // Without an aspect ratio, or without any display information.
    set.aspect = [](BitWriter& bits) { bits.put(2, 2).put(1, 8); };
    EXPECT_EQ(h264Facts(written(set))->aspect, "");
    set.aspect = [](BitWriter& bits) { bits.put(1, 2).put(1, 8); };
    EXPECT_EQ(h264Facts(written(set))->aspect, "");
}

TEST(H264Facts, AreThoseOfTheParameterSetBetweenOtherUnits) {
    Bytes stream = {0, 0, 1, 0x09, 0x10, 0, 0, 1, 0x68, 0xee};
    const Bytes set = written({});
    stream.insert(stream.end(), set.begin(), set.end());
    EXPECT_EQ(videoFactsText(*h264Facts(stream)),
              "Baseline profile, level 3.0, 176x144, progressive, 4:2:0");
}

TEST(H264Facts, AreThoseWithoutTheBytesThatHideStartCodes) {
    ParameterSet set;
    // A size whose code contains three zero bytes.
    set.aspect = [](BitWriter& bits) { bits.put(3, 2).put(255, 8).put(0, 16).put(3, 16); };
    Bytes bytes = written(set);
    BitWriter aligned;
    size_t zeros = 0;
    Bytes escaped(bytes.begin(), bytes.begin() + 5);
    for (size_t i = 5; i < bytes.size(); ++i) {
        if (zeros >= 2 && bytes[i] <= 3) {
            escaped.push_back(3);
            zeros = 0;
        }
        zeros = bytes[i] == 0 ? zeros + 1 : 0;
        escaped.push_back(bytes[i]);
    }
    ASSERT_GT(escaped.size(), bytes.size());
    EXPECT_EQ(h264Facts(escaped)->aspect, "0:3");
}

TEST(H264Facts, AreNoneOfASetThatIsCutOff) {
    const Bytes whole = written({});
    const size_t needed = whole.size() - 5;
    for (size_t size = 0; size < needed; ++size) {
        EXPECT_FALSE(h264Facts(std::span(whole).first(size))) << size;
    }
    EXPECT_TRUE(h264Facts(std::span(whole).first(needed)));
}

}  // namespace
}  // namespace ogmprobe::h264_facts_test
