// SPDX-License-Identifier: Apache-2.0
// Different forms of lists of codecs with the same meaning, and values at the limits.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "CodecXmlText.h"

namespace ogmprobe::check {
namespace {

using testing::SizeIs;

TEST(CodecXmlForms, ARangeHasManyForms) {
    constexpr double kNoMost = std::numeric_limits<double>::max();
    const std::vector<std::pair<std::string, Ranges>> forms = {
            {R"(range="1-60")", {{1, 60}}},
            {R"(ranges="1-60")", {{1, 60}}},
            {R"(value="24")", {{24, 24}}},
            {R"(min="5" max="9")", {{5, 9}}},
            {R"(min="5")", {{5, kNoMost}}},
            {R"(max="9")", {{0, 9}}},
            {R"(range="1-2" value="3" max="4")", {{1, 2}}},
            {R"(range=" 1.5 - 2 ,3")", {{1.5, 2}, {3, 3}}},
            {R"(range="1-,-2,a-b,-,3x,7")", {{7, 7}}},
            {R"(range="0-0")", {{0, 0}}},
            {R"(range="none")", {}},
            {"", {}},
    };
    using Member = Ranges DecoderLimits::*;
    const std::vector<std::pair<std::string, Member>> limits = {
            {"block-count", &DecoderLimits::blockCount},
            {"blocks-per-second", &DecoderLimits::blocksPerSecond},
            {"frame-rate", &DecoderLimits::frameRate},
            {"bitrate", &DecoderLimits::bitrate},
            {"sample-rate", &DecoderLimits::sampleRate},
            {"channel-count", &DecoderLimits::channelCount},
    };
    for (const auto& [name, member] : limits) {
        for (const auto& [attributes, ranges] : forms) {
            const Decoder found = decoder(R"(<MediaCodec name="a" type="b"><Limit name=")" + name +
                                          "\" " + attributes + "/></MediaCodec>");
            EXPECT_EQ(found.limits.*member, ranges) << name << " " << attributes;
        }
    }
}

TEST(CodecXmlForms, OnlySoManyRangesAreRead) {
    std::string text = "0";
    for (int i = 1; i < 64; ++i) {
        text += "," + std::to_string(i);
    }
    EXPECT_THAT(parseRanges(text), SizeIs(64));
    EXPECT_THAT(parseRanges(text + ",64"), SizeIs(64));
}

TEST(CodecXmlForms, ASizeHasTwoNumbersAndOneOfTwoSigns) {
    const auto most = [](const std::string& text) {
        return decoder(R"(<MediaCodec name="a" type="b"><Limit name="size" max=")" + text +
                       "\"/></MediaCodec>")
                .limits.maxSize;
    };
    EXPECT_EQ(most("640x480"), (Extent{640, 480}));
    EXPECT_EQ(most("640*480"), (Extent{640, 480}));
    EXPECT_EQ(most("2147483647x0"), (Extent{2147483647, 0}));
    for (const char* text :
         {"640", "x480", "640x", "640x-1", "-1x480", "2147483648x1", "1x2147483648", "1x2x3", ""}) {
        EXPECT_EQ(most(text), std::nullopt) << text;
    }
}

TEST(CodecXmlForms, YesAndNoHaveManyForms) {
    const std::string element = R"(<MediaCodec name="a" type="b" domain="tv"/>)";
    for (const char* yes : {"true", "1", "yes", "y", "on"}) {
        EXPECT_EQ(decoder(element, R"(<Settings><Domain name="tv" enabled=")" + std::string(yes) +
                                           "\"/></Settings>")
                          .unusable,
                  "")
                << yes;
    }
    EXPECT_NE(decoder(element, R"(<Settings><Domain name="tv" enabled="maybe"/></Settings>)")
                      .unusable,
              "");
    for (const char* no : {"false", "0", "no", "n", "off"}) {
        EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="b" enabled=")" + std::string(no) + "\"/>")
                          .unusable,
                  "is not enabled")
                << no;
    }
    EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="b" enabled="maybe"/>)").unusable, "");
}

TEST(CodecXmlForms, ALaterSettingReplacesAnEarlierOne) {
    EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="b" domain="tv"/>)",
                      R"(<Settings><Domain name="tv" enabled="true"/>
                         <Domain name="tv" enabled="false"/></Settings>)")
                      .unusable,
              "belongs to the domain tv, which is not enabled");
}

TEST(CodecXmlForms, ADecoderIsDisabledByALaterElementOfItsName) {
    EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="b"/>
                         <MediaCodec name="a" enabled="false" update="true"/>)")
                      .unusable,
              "is not enabled");
    EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="b" enabled="false"/>
                         <MediaCodec name="a" enabled="true" update="true"/>)")
                      .unusable,
              "");
}

TEST(CodecXmlForms, ADecoderOfTunneledPlaybackAloneIsUnusable) {
    const auto unusable = [](const std::string& required) {
        return decoder(R"(<MediaCodec name="a" type="b"><Feature name="tunneled-playback" )" +
                       required + "/></MediaCodec>")
                .unusable;
    };
    EXPECT_EQ(unusable(R"(required="true")"), "plays in tunneled mode only");
    EXPECT_EQ(unusable(""), "");
}

TEST(CodecXmlForms, OfSeveralVariantsAnyWillDo) {
    const auto unusable = [](const std::string& variant, const std::string& enabled) {
        return decoder(R"(<MediaCodec name="a" type="b" variant=")" + variant + "\"/>",
                       R"(<Settings><Variant name=")" + enabled + R"(" enabled="1"/></Settings>)")
                .unusable;
    };
    EXPECT_EQ(unusable("p,q", "q"), "");
    EXPECT_EQ(unusable("p,q", "p"), "");
    EXPECT_EQ(unusable("p,q", "r"), "belongs to the variant p,q, which is not enabled");
    EXPECT_EQ(unusable("!p", "p"), "belongs to the variant !p, which is not enabled");
    EXPECT_EQ(unusable("!p", "q"), "");
    EXPECT_EQ(unusable("!p,p", "p"), "");
}

TEST(CodecXmlForms, WhatIsAsMuchAsIsAllowedIsRead) {
    std::string many = "<MediaCodecs><Decoders>";
    for (size_t i = 0; i < kMaxDecoders; ++i) {
        many += "<MediaCodec name=\"" + std::to_string(i) + "\" type=\"a\"/>";
    }
    const CodecXml whole = read(many + "</Decoders></MediaCodecs>");
    EXPECT_EQ(whole.error, "");
    EXPECT_THAT(whole.decoders, SizeIs(kMaxDecoders));
    std::string deep = "<MediaCodecs>";
    std::string ends;
    for (size_t i = 1; i < kMaxXmlDepth; ++i) {
        deep += "<a>";
        ends += "</a>";
    }
    EXPECT_EQ(read(deep + ends + "</MediaCodecs>").error, "");
    XmlFiles files;
    for (size_t i = 0; i < kMaxIncludeDepth; ++i) {
        files["f" + std::to_string(i) + ".xml"] =
                i + 1 == kMaxIncludeDepth ? "<Included/>"
                                          : "<Included><Include href=\"f" + std::to_string(i + 1) +
                                                    ".xml\"/></Included>";
    }
    EXPECT_EQ(readCodecXml({"f0.xml"}, files).error, "");
}

}  // namespace
}  // namespace ogmprobe::check
