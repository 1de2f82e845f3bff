// SPDX-License-Identifier: Apache-2.0
#include <BitWriter.h>
#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

#include "codecs/VideoFacts.h"

namespace ogmprobe::mpeg4_facts_test {
namespace {

using android::ogm::test::BitWriter;
using Bytes = std::vector<uint8_t>;
using Part = std::function<void(BitWriter&)>;

constexpr uint32_t kMarker = 1;

/** A video object layer in the order of its fields; functions write what varies. */
struct Layer {
    uint32_t type = 1;
    uint32_t version = 1;
    Part aspect = [](BitWriter& bits) { bits.put(1, 4); };
    Part control = [](BitWriter& bits) { bits.put(0, 1); };
    uint32_t shape = 0;
    /** The time resolution, and a fixed picture duration if there is one. */
    Part rate = [](BitWriter& bits) { bits.put(25, 16).put(kMarker, 1).put(0, 1); };
    Part sprite = [](BitWriter& bits) { bits.put(0, 1); };
    Part precision = [](BitWriter& bits) { bits.put(0, 1); };
    Part quantizer = [](BitWriter& bits) { bits.put(0, 1); };
    bool quarterPel = false;
};

/** 176x144, interlaced. */
Bytes written(const Layer& layer) {
    BitWriter bits;
    bits.put(0x120, 32).put(0, 1).put(layer.type, 8);
    bits.put(layer.version == 1 ? 0 : 1, 1);
    if (layer.version != 1) {
        bits.put(layer.version, 4).put(5, 3);
    }
    layer.aspect(bits);
    layer.control(bits);
    bits.put(layer.shape, 2).put(kMarker, 1);
    layer.rate(bits);
    bits.put(kMarker, 1).put(176, 13).put(kMarker, 1).put(144, 13).put(kMarker, 1);
    bits.put(1, 1).put(1, 1);
    layer.sprite(bits);
    layer.precision(bits);
    layer.quantizer(bits);
    bits.put(layer.version != 1 && layer.quarterPel ? 1 : 0, layer.version == 1 ? 0 : 1);
    bits.put(0x55, 8);
    return bits.bytes();
}

std::string textOf(const Layer& layer) {
    const auto facts = mpeg4Facts(written(layer));
    return facts ? videoFactsText(*facts) : "none";
}

const std::string kUsualStart = "Simple profile, 176x144, sample aspect 1:1, 11:9 picture, ";
const std::string kUsual = kUsualStart + "interlaced, 4:2:0, quantizer H.263";

TEST(Mpeg4Layer, NamesItsTypeOfObject) {
    for (const auto& [code, name] : std::vector<std::pair<uint32_t, std::string>>{
                 {1, "Simple"}, {3, "Core"}, {4, "Main"}, {17, "Advanced Simple"}, {2, ""}}) {
        Layer layer;
        layer.type = code;
        EXPECT_EQ(mpeg4Facts(written(layer))->profile, name) << code;
    }
}

TEST(Mpeg4Layer, NamesTheAspectOfItsSamples) {
    for (const auto& [code, name] : std::vector<std::pair<uint32_t, std::string>>{{0, ""},
                                                                                  {1, "1:1"},
                                                                                  {2, "12:11"},
                                                                                  {3, "10:11"},
                                                                                  {4, "16:11"},
                                                                                  {5, "40:33"},
                                                                                  {6, ""}}) {
        Layer layer;
        layer.aspect = [code = code](BitWriter& bits) { bits.put(code, 4); };
        EXPECT_EQ(mpeg4Facts(written(layer))->aspect, name) << code;
    }
    Layer layer;
    layer.aspect = [](BitWriter& bits) { bits.put(15, 4).put(200, 8).put(199, 8); };
    EXPECT_EQ(mpeg4Facts(written(layer))->aspect, "200:199");
}

TEST(Mpeg4Layer, SaysItsChromaAndPassesOverTheParametersOfItsBuffer) {
    Layer layer;
    layer.control = [](BitWriter& bits) { bits.put(1, 1).put(1, 2).put(1, 1).put(0, 1); };
    EXPECT_EQ(textOf(layer), kUsual);
    layer.control = [](BitWriter& bits) {
        bits.put(1, 1).put(1, 2).put(0, 1).put(1, 1);
        bits.put(0x7fffffff, 32).put(0x55555555, 32).put(0x2aaa, 15);
    };
    EXPECT_EQ(textOf(layer), kUsual);
    layer.control = [](BitWriter& bits) { bits.put(1, 1).put(2, 2).put(1, 1).put(0, 1); };
    EXPECT_EQ(mpeg4Facts(written(layer))->chroma, "") << "of a reserved format";
}

TEST(Mpeg4Layer, OfAnotherShapeThanARectangleHasNoSize) {
    for (const uint32_t shape : {1, 2, 3}) {
        Layer layer;
        layer.shape = shape;
        EXPECT_EQ(textOf(layer), "Simple profile, sample aspect 1:1, 4:2:0") << shape;
    }
}

TEST(Mpeg4Layer, HasAFixedRateInAsManyBitsAsItsResolutionNeeds) {
    for (const auto& [resolution, width] :
         std::vector<std::pair<uint32_t, unsigned>>{{1, 1},
                                                    {2, 1},
                                                    {3, 2},
                                                    {4, 2},
                                                    {5, 3},
                                                    {25, 5},
                                                    {32, 5},
                                                    {33, 6},
                                                    {30000, 15},
                                                    {32768, 15},
                                                    {32769, 16},
                                                    {65535, 16}}) {
        Layer layer;
        layer.rate = [resolution = resolution, width = width](BitWriter& bits) {
            bits.put(resolution, 16).put(kMarker, 1).put(1, 1).put(0xffff, width);
        };
        EXPECT_EQ(textOf(layer), kUsual) << resolution;
    }
}

/** Warping points of a sprite, their accuracy, and whether brightness changes. */
void putPoints(BitWriter& bits, uint32_t points) {
    bits.put(points, 6).put(3, 2).put(0, 1);
}

TEST(Mpeg4Layer, PassesOverASpriteAndSaysByHowManyPointsAllMoves) {
    Layer layer;
    // Width, height, left and top of a static sprite with a marker bit each, then a flag.
    layer.sprite = [](BitWriter& bits) {
        bits.put(1, 1);
        for (int i = 0; i < 4; ++i) {
            bits.put(0x1555, 13).put(kMarker, 1);
        }
        putPoints(bits, 2);
        bits.put(1, 1);
    };
    EXPECT_EQ(textOf(layer), kUsual);
    layer.version = 2;
    layer.sprite = [](BitWriter& bits) { putPoints(bits.put(2, 2), 1); };
    EXPECT_EQ(textOf(layer), kUsual + ", global motion by 1 warp point");
    layer.sprite = [](BitWriter& bits) { bits.put(3, 2); };
    EXPECT_EQ(textOf(layer), kUsual) << "of a reserved kind";
}

void putMatrix(BitWriter& bits, int entries) {
    bits.put(1, 1);
    for (int i = 0; i < entries; ++i) {
        bits.put(16, 8);
    }
    bits.put(0, entries < 64 ? 8 : 0);
}

TEST(Mpeg4Layer, PassesOverPrecisionAndMatricesOnTheWayToQuarterPel) {
    const std::vector<std::pair<Part, std::string>> quantizers = {
            {[](BitWriter& bits) { bits.put(0, 1); }, "H.263"},
            {[](BitWriter& bits) { bits.put(1, 1).put(0, 2); }, "MPEG"},
            {[](BitWriter& bits) {
                 putMatrix(bits.put(1, 1), 64);
                 bits.put(0, 1);
             },
             "MPEG with own matrices"},
            {[](BitWriter& bits) { putMatrix(bits.put(1, 1).put(0, 1), 3); },
             "MPEG with own matrices"},
            {[](BitWriter& bits) {
                 putMatrix(bits.put(1, 1), 63);
                 putMatrix(bits, 64);
             },
             "MPEG with own matrices"},
    };
    for (const auto& [quantizer, name] : quantizers) {
        for (const bool quarterPel : {false, true}) {
            Layer layer;
            layer.version = 2;
            layer.sprite = [](BitWriter& bits) { bits.put(0, 2); };
            layer.precision = [](BitWriter& bits) { bits.put(1, 1).put(0x98, 8); };
            layer.quantizer = quantizer;
            layer.quarterPel = quarterPel;
            EXPECT_EQ(textOf(layer), kUsualStart + "interlaced, 4:2:0, quantizer " + name +
                                             (quarterPel ? ", quarter-pel motion" : ""));
        }
    }
}

TEST(Mpeg4Sequence, NamesProfileAndLevel) {
    struct Case {
        uint8_t code;
        const char* profile;
        const char* level;
    };
    for (const Case& expected :
         {Case{0x08, "Simple", "0"}, Case{0x01, "Simple", "1"}, Case{0x02, "Simple", "2"},
          Case{0x03, "Simple", "3"}, Case{0x04, "Main", ""}, Case{0x21, "Core", "1"},
          Case{0x22, "Core", "2"}, Case{0x20, "Main", ""}, Case{0x23, "Main", ""},
          Case{0xef, "Main", ""}, Case{0xf0, "Advanced Simple", "0"},
          Case{0xf1, "Advanced Simple", "1"}, Case{0xf5, "Advanced Simple", "5"},
          Case{0xf6, "Main", ""}, Case{0x00, "Main", ""}}) {
        Layer layer;
        layer.type = 4;
        Bytes stream = {0, 0, 1, 0xb0, expected.code};
        const Bytes bytes = written(layer);
        stream.insert(stream.end(), bytes.begin(), bytes.end());
        const auto facts = mpeg4Facts(stream);
        ASSERT_TRUE(facts);
        EXPECT_EQ(facts->profile, expected.profile) << int{expected.code};
        EXPECT_EQ(facts->level, expected.level) << int{expected.code};
    }
}

TEST(Mpeg4Encoder, IsNamedUpToTheFirstPictureAndOnlyAsFarAsItIsText) {
    Bytes stream = written({});
    const auto add = [&stream](uint8_t code, const std::string& text) {
        stream.insert(stream.end(), {0, 0, 1, code});
        stream.insert(stream.end(), text.begin(), text.end());
    };
    add(0xb2, "one ~\x7f rest");
    add(0xb2, "\x1f");
    add(0xb2, "DivX9\x1fp");
    add(0xb6, "\x10");
    add(0xb2, "DivX9p");
    const auto facts = mpeg4Facts(stream);
    EXPECT_EQ(facts->encoder, "one ~, DivX9");
    EXPECT_FALSE(facts->packed);
}

}  // namespace
}  // namespace ogmprobe::mpeg4_facts_test
