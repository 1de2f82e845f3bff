// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "Process.h"
#include "TemporaryFolder.h"

/** Hostile lists of codecs. */
namespace ogmprobe::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class HostileXmlTest : public testing::Test {
  protected:
    /** Returns the message about a list with this content, which must be refused quickly. */
    std::string refusalOf(const std::string& text) {
        return refusalOfFile(mFolder.write("list.xml", text));
    }
    static std::string refusalOfFile(const std::string& path) {
        const auto began = std::chrono::steady_clock::now();
        const auto result =
                runProbe({"check", "--codecs", path, std::string(OGMPROBE_SAMPLES "/mjpeg.ogm")});
        EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(20));
        EXPECT_EQ(result.exitCode, 2) << result.out;
        EXPECT_EQ(result.out, "");
        return result.err;
    }

    TemporaryFolder mFolder;
};

TEST_F(HostileXmlTest, EntitiesThatGrowWithoutEndAreRefused) {
    std::string text = "<?xml version=\"1.0\"?><!DOCTYPE l [<!ENTITY l0 \"lol\">";
    for (int i = 1; i < 10; ++i) {
        text += "<!ENTITY l" + std::to_string(i) + " \"";
        for (int j = 0; j < 10; ++j) {
            text += "&l" + std::to_string(i - 1) + ";";
        }
        text += "\">";
    }
    EXPECT_THAT(refusalOf(text + "]><MediaCodecs>&l9;</MediaCodecs>"),
                HasSubstr("document type declaration, which is refused"));
}

TEST_F(HostileXmlTest, EntitiesOfOtherFilesAreRefusedUnread) {
    const std::string secret = mFolder.write("secret", "a secret");
    const std::string said = refusalOf("<!DOCTYPE l [<!ENTITY f SYSTEM \"file://" + secret +
                                       "\">]><MediaCodecs>&f;</MediaCodecs>");
    EXPECT_THAT(said, HasSubstr("document type declaration, which is refused"));
    EXPECT_THAT(said, Not(HasSubstr("a secret")));
}

TEST_F(HostileXmlTest, AHundredMegabytesAreRefusedUnread) {
    const std::string path = mFolder.write("big.xml", "<MediaCodecs>");
    std::filesystem::resize_file(path, 100'000'000);
    EXPECT_THAT(refusalOfFile(path),
                EndsWith("big.xml is larger than 1.0 MB: it is no list of codecs\n"));
}

TEST_F(HostileXmlTest, ElementsNestedByTheThousandAreRefused) {
    std::string text = "<MediaCodecs>";
    while (text.size() < 900'000) {
        text += "<a>";
    }
    EXPECT_THAT(refusalOf(text), HasSubstr("nested more than 32 deep"));
}

TEST_F(HostileXmlTest, FilesThatIncludeEachOtherInACircleAreRefused) {
    mFolder.write("other.xml", R"(<Included><Include href="list.xml"/></Included>)");
    EXPECT_THAT(refusalOf(R"(<MediaCodecs><Include href="other.xml"/></MediaCodecs>)"),
                HasSubstr("which is being read already"));
}

TEST_F(HostileXmlTest, AnIncludeThatLeadsElsewhereIsRefused) {
    for (const char* href : {"/etc/passwd", "../list.xml", "file:///etc/passwd.xml"}) {
        EXPECT_THAT(refusalOf("<MediaCodecs><Include href=\"" + std::string(href) +
                              "\"/></MediaCodecs>"),
                    HasSubstr("names no .xml file beside it or in a folder below"))
                << href;
    }
}

TEST_F(HostileXmlTest, AttributesByTheThousandAreReadInTime) {
    std::string text = "<MediaCodecs><Decoders><MediaCodec name=\"a\" type=\"b\"";
    for (int i = 0; i < 50'000; ++i) {
        text += " a" + std::to_string(i) + "=\"\"";
    }
    text += "/></Decoders></MediaCodecs>";
    const auto result = runProbe({"check", "--codecs", mFolder.write("list.xml", text),
                                  std::string(OGMPROBE_SAMPLES "/mjpeg.ogm")});
    EXPECT_EQ(result.exitCode, 7);
}

TEST_F(HostileXmlTest, NamesFromAListMoveNoCursor) {
    const std::string path =
            mFolder.write("list.xml",
                          "<MediaCodecs><Decoders><MediaCodec name=\"a&#x202e;&#x9b;31m\" "
                          "type=\"video/x-motion-jpeg\"/>"
                          "</Decoders></MediaCodecs>");
    const auto result =
            runProbe({"check", "--codecs", path, std::string(OGMPROBE_SAMPLES "/mjpeg.ogm")});
    EXPECT_EQ(result.exitCode, 6);
    EXPECT_THAT(result.out, Not(HasSubstr("\u202e")));
    EXPECT_THAT(result.out, Not(HasSubstr("\u009b")));
}

TEST_F(HostileXmlTest, AFolderIsNoList) {
    EXPECT_THAT(refusalOfFile(mFolder.path().string()), HasSubstr("Is a directory"));
}

}  // namespace
}  // namespace ogmprobe::test
