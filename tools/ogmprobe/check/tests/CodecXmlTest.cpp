// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "CodecXmlText.h"

namespace ogmprobe::check {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

TEST(CodecXmlTest, ADecoderHasItsNameItsTypeAndItsLimits) {
    const Decoder found = decoder(R"(<MediaCodec name="c2.a.avc" type="video/avc">
        <Limit name="size" min="64x32" max="1920x1088"/> <Limit name="alignment" value="2x4"/>
        <Limit name="block-size" value="16x8"/> <Limit name="block-count" range="1-8160"/>
        <Limit name="blocks-per-second" range="1-244800"/>
        <Limit name="bitrate" range="1-20000000"/> <Limit name="frame-rate" range="1-60"/>
        <Limit name="measured-frame-rate-320x240" range="9-9"/></MediaCodec>)");
    EXPECT_EQ(found.name, "c2.a.avc");
    EXPECT_EQ(found.mime, "video/avc");
    EXPECT_EQ(found.unusable, "");
    EXPECT_EQ(found.limits.minSize->width, 64);
    EXPECT_EQ(found.limits.minSize->height, 32);
    EXPECT_EQ(found.limits.maxSize->width, 1920);
    EXPECT_EQ(found.limits.maxSize->height, 1088);
    EXPECT_EQ(found.limits.alignment->height, 4);
    EXPECT_EQ(found.limits.blockSize->height, 8);
    EXPECT_EQ(found.limits.blockCount.at(0).most, 8160);
    EXPECT_EQ(found.limits.blocksPerSecond.at(0).most, 244800);
    EXPECT_EQ(found.limits.bitrate.at(0).least, 1);
    EXPECT_EQ(found.limits.frameRate.at(0).most, 60);
}

TEST(CodecXmlTest, RangesAreListsOfNumbersAndOfTwoEnds) {
    const Ranges ranges = parseRanges("8000, 11025-22050,nonsense,48000");
    ASSERT_THAT(ranges, SizeIs(3));
    EXPECT_TRUE(allows(ranges, 8000));
    EXPECT_TRUE(allows(ranges, 16000));
    EXPECT_FALSE(allows(ranges, 44100));
    EXPECT_TRUE(allows(ranges, 48000));
    EXPECT_TRUE(allows(parseRanges("nonsense"), 1));
}

TEST(CodecXmlTest, ALimitOfChannelsMayHaveOnlyAMaximum) {
    const Decoder found = decoder(R"(<MediaCodec name="a" type="audio/ac3">
        <Limit name="channel-count" max="6"/></MediaCodec>)");
    EXPECT_TRUE(allows(found.limits.channelCount, 6));
    EXPECT_FALSE(allows(found.limits.channelCount, 7));
}

TEST(CodecXmlTest, ACodecMayHaveSeveralTypesEachWithItsOwnLimits) {
    const CodecXml xml = read(R"(<MediaCodecs><Decoders><MediaCodec name="dolby">
        <Type name="audio/ac3"><Limit name="channel-count" max="6"/></Type>
        <Type name="audio/eac3"><Limit name="channel-count" max="8"/></Type>
        </MediaCodec></Decoders></MediaCodecs>)");
    ASSERT_THAT(xml.decoders, SizeIs(2));
    EXPECT_EQ(xml.decoders[0].limits.channelCount.at(0).most, 6);
    EXPECT_EQ(xml.decoders[1].mime, "audio/eac3");
    EXPECT_EQ(xml.decoders[1].limits.channelCount.at(0).most, 8);
}

TEST(CodecXmlTest, EncodersAreNoDecoders) {
    EXPECT_THAT(read(R"(<MediaCodecs><Encoders><MediaCodec name="a" type="video/avc"/></Encoders>
        </MediaCodecs>)")
                        .decoders,
                IsEmpty());
}

TEST(CodecXmlTest, ADecoderThatIsNotEnabledIsUnusable) {
    EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="video/avc" enabled="false"/>)").unusable,
              "is not enabled");
}

TEST(CodecXmlTest, ADecoderOfADomainIsUsableOnlyWhereThatIsEnabled) {
    const std::string element = R"(<MediaCodec name="a" type="video/mpeg2" domain="tv"/>)";
    EXPECT_EQ(decoder(element).unusable, "belongs to the domain tv, which is not enabled");
    EXPECT_EQ(
            decoder(element, R"(<Settings><Domain name="tv" enabled="true"/></Settings>)").unusable,
            "");
}

TEST(CodecXmlTest, LimitsOfAVariantApplyWhereItIsEnabled) {
    const std::string element = R"(<MediaCodec name="a" type="video/avc" variant="slow,!slow">
        <Variant name="!slow"><Limit name="size" max="4080x4080"/></Variant>
        <Variant name="slow"><Limit name="size" max="2048x2048"/></Variant></MediaCodec>)";
    EXPECT_EQ(decoder(element).limits.maxSize->width, 4080);
    EXPECT_EQ(decoder(element, R"(<Settings><Variant name="slow" enabled="true"/></Settings>)")
                      .limits.maxSize->width,
              2048);
    EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="video/avc" variant="slow"/>)").unusable,
              "belongs to the variant slow, which is not enabled");
}

TEST(CodecXmlTest, ADecoderOfProtectedContentIsUnusable) {
    EXPECT_EQ(decoder(R"(<MediaCodec name="a.secure" type="video/avc">
        <Feature name="secure-playback" required="true"/></MediaCodec>)")
                      .unusable,
              "plays protected content only");
    EXPECT_EQ(decoder(R"(<MediaCodec name="a" type="video/avc">
        <Feature name="adaptive-playback" required="true"/></MediaCodec>)")
                      .unusable,
              "");
}

TEST(CodecXmlTest, AnUpdateAddsToTheDecoderOfItsName) {
    const Decoder found = decoder(R"(<MediaCodec name="a" type="video/avc"/>
        <MediaCodec name="a" type="video/avc" update="true"><Limit name="size" max="64x64"/>
        </MediaCodec><MediaCodec name="b" type="video/avc" update="true"/>)");
    EXPECT_EQ(found.name, "a");
    EXPECT_EQ(found.limits.maxSize->width, 64);
}

TEST(CodecXmlTest, AFileIsIncludedWhereItIsNamed) {
    const CodecXml xml = readCodecXml(
            {"device/media_codecs.xml"},
            {{"device/media_codecs.xml",
              R"(<MediaCodecs><Decoders><Include href="more.xml"/></Decoders></MediaCodecs>)"},
             {"device/more.xml",
              R"(<Included><MediaCodec name="a" type="audio/mpeg"/></Included>)"}});
    EXPECT_EQ(xml.error, "");
    EXPECT_THAT(xml.missing, IsEmpty());
    EXPECT_THAT(xml.decoders, SizeIs(1));
}

TEST(CodecXmlTest, AnIncludedFileThatIsNotThereIsNamedWithTheOneThatIncludesIt) {
    const CodecXml xml = read(R"(<MediaCodecs><Include href="sub/more.xml"/></MediaCodecs>)");
    ASSERT_THAT(xml.missing, SizeIs(1));
    EXPECT_EQ(xml.missing[0].path, "device/sub/more.xml");
    EXPECT_EQ(xml.missing[0].includedBy, "device/media_codecs.xml");
}

TEST(CodecXmlTest, AnIncludeNamesAFileBesideOrBelow) {
    EXPECT_EQ(includedPath("a/b.xml", "c.xml"), "a/c.xml");
    EXPECT_EQ(includedPath("b.xml", "c/d.xml"), "c/d.xml");
    for (const char* name : {"/etc/passwd.xml", "../c.xml", "c/../../d.xml", "c.txt", "", ".xml",
                             "http://c.xml", "c//d.xml", "./c.xml"}) {
        EXPECT_EQ(includedPath("a/b.xml", name), "") << name;
    }
    EXPECT_THAT(read(R"(<MediaCodecs><Include href="/etc/passwd"/></MediaCodecs>)").error,
                HasSubstr("names no .xml file beside it"));
}

TEST(CodecXmlTest, AFileCanIncludeWhatLiesBesideItOrBelow) {
    EXPECT_TRUE(canInclude("a/b.xml", "a/c.xml"));
    EXPECT_TRUE(canInclude("a/b.xml", "a/c/d.xml"));
    EXPECT_TRUE(canInclude("b.xml", "c.xml"));
    EXPECT_TRUE(canInclude("/b.xml", "/c.xml"));
    EXPECT_TRUE(canInclude("a//b.xml", includedPath("a//b.xml", "c.xml")));
    for (const char* elsewhere : {"c.xml", "/etc/c.xml", "a/../c.xml", "ab/c.xml", "a/c.txt"}) {
        EXPECT_FALSE(canInclude("a/b.xml", elsewhere)) << elsewhere;
    }
}

TEST(CodecXmlTest, MoreFilesThanAnyDeviceHasAreRefused) {
    XmlFiles files;
    std::vector<std::string> paths;
    for (size_t i = 0; i <= kMaxXmlFiles; ++i) {
        paths.push_back(std::to_string(i) + ".xml");
        files[paths.back()] = "<MediaCodecs/>";
    }
    EXPECT_EQ(readCodecXml(paths, files).error, "there are more than 64 files");
    paths.pop_back();
    EXPECT_EQ(readCodecXml(paths, files).error, "");
}

TEST(CodecXmlTest, AFileThatIncludesItselfIsRefused) {
    EXPECT_EQ(read("<MediaCodecs>\n<Include href=\"media_codecs.xml\"/></MediaCodecs>").error,
              "device/media_codecs.xml:2: it includes device/media_codecs.xml, which is being read "
              "already");
}

TEST(CodecXmlTest, FilesThatIncludeEachOtherTooDeepAreRefused) {
    XmlFiles files;
    for (size_t i = 0; i <= kMaxIncludeDepth; ++i) {
        files["f" + std::to_string(i) + ".xml"] =
                "<Included><Include href=\"f" + std::to_string(i + 1) + ".xml\"/></Included>";
    }
    EXPECT_THAT(readCodecXml({"f0.xml"}, files).error, EndsWith("more than 8 deep"));
}

TEST(CodecXmlTest, FilesThatIncludeEachOtherTooOftenAreRefused) {
    const std::string twice =
            R"(<Included><Include href="NEXT"/><Include href="NEXT"/></Included>)";
    XmlFiles files;
    for (size_t i = 0; i < kMaxIncludeDepth - 1; ++i) {
        std::string text = twice;
        for (size_t at = 0; (at = text.find("NEXT")) != std::string::npos;) {
            text.replace(at, 4, "f" + std::to_string(i + 1) + ".xml");
        }
        files["f" + std::to_string(i) + ".xml"] = text;
    }
    files["f" + std::to_string(kMaxIncludeDepth - 1) + ".xml"] = "<Included/>";
    EXPECT_THAT(readCodecXml({"f0.xml"}, files).error, HasSubstr("more than 64 files"));
}

TEST(CodecXmlTest, ADocumentTypeIsRefusedWithAllItsEntities) {
    EXPECT_EQ(read("<?xml version=\"1.0\"?>\n<!DOCTYPE a [<!ENTITY b \"bb\">]>"
                   "<MediaCodecs>&b;</MediaCodecs>")
                      .error,
              "device/media_codecs.xml:2: it has a document type declaration, which is refused");
}

TEST(CodecXmlTest, ElementsThatAreNestedTooDeepAreRefused) {
    std::string deep = "<MediaCodecs>";
    for (int i = 0; i < 100'000; ++i) {
        deep += "<a>";
    }
    EXPECT_THAT(read(deep).error, EndsWith("nested more than 32 deep"));
}

TEST(CodecXmlTest, MoreDecodersThanAnyDeviceHasAreRefused) {
    std::string many = "<MediaCodecs><Decoders>";
    for (size_t i = 0; i <= kMaxDecoders; ++i) {
        many += "<MediaCodec name=\"" + std::to_string(i) + "\" type=\"a\"/>";
    }
    EXPECT_THAT(read(many).error, EndsWith("more than 4096 decoders"));
}

TEST(CodecXmlTest, WhatIsNoListOfCodecsIsRefused) {
    EXPECT_EQ(read("<html/>").error,
              "device/media_codecs.xml:1: its root is <html>, not <MediaCodecs>: it is no list of "
              "codecs");
    EXPECT_EQ(read("").error, "device/media_codecs.xml:1: no element found");
    EXPECT_EQ(read("<MediaCodecs>").error, "device/media_codecs.xml:1: no element found");
    EXPECT_THAT(read(std::string("<MediaCodecs>\0</MediaCodecs>", 28)).error,
                HasSubstr("not well-formed"));
}

}  // namespace
}  // namespace ogmprobe::check
