// SPDX-License-Identifier: Apache-2.0
#include <OgmStreamHeaders.h>

#include "ExplainedFile.h"
#include "FakeFile.h"

namespace ogmprobe::test::explain_end_test {
namespace {

using namespace android::ogm::test;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kSample = "mpeg4_b_mp3.ogm";
constexpr const char* kLongSample = "long_mpeg4_mp3.ogm";

TEST(ExplainEnd, LastPacketsAreWithheldAsAlways) {
    const ExplainedFile file(sampleBytes(kLongSample));
    const auto found = file.findings("last-packets-withheld");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]["text"],
              "The last packets of track 0 are not returned: a stream's last page (here with 4 "
              "packets) is never read, and the packet before it stays open.");
    EXPECT_EQ(found[0]["usual"], true);
    EXPECT_THAT(found[0]["log"]["text"].get<std::string>(),
                StartsWith("getNextGranulePosition: Cannot find a page start"));
    EXPECT_THAT(file.run({"--verbose"}).out, HasSubstr("The last packets of track 0"));
}

TEST(ExplainEnd, AllReadingStopsAtTheFirstLastPage) {
    OgmFile file = videoAndAudio(100, 20);
    const auto found = ExplainedFile(file.bytes()).findings("pages-not-read");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]["text"],
              "The last 80 pages of track 0, with 80 packets, are not read: all reading stops at "
              "the first page that is the last one of its stream, here at offset " +
                      std::to_string(pageOffsets(file.bytes())[2 + 39]) + " (track 1).");
    EXPECT_EQ(found[0]["usual"], false);
    EXPECT_EQ(ExplainedFile(sampleBytes(kSample)).findings("pages-not-read")[0]["usual"], true);
}

TEST(ExplainEnd, ATrackWithoutPacketsIsReported) {
    OgmFile file = videoAndAudio(20, 2);
    file.addHeader(3, AudioHeader());
    const auto found = ExplainedFile(file.bytes()).findings("track-without-packets");
    ASSERT_EQ(found.size(), 3U);
    EXPECT_EQ(found[0]["text"],
              "Track 0 returns no packet: all reading stops at the first page that is the last one "
              "of its stream, here at offset " +
                      std::to_string(pageOffsets(file.bytes())[2 + 3]) + " (track 1).");
    EXPECT_EQ(found[1]["text"],
              "Track 1 returns no packet: its 2 pages hold 1 packet left in the queue, 1 on the "
              "stream's last page.");
    EXPECT_EQ(found[2]["text"], "Track 2 returns no packet: no page holds any of its data.");

    Bytes damaged = sampleBytes(kSample);
    damaged[pageOffsets(damaged)[1] + 4] = 1;
    ExplainedFile(damaged).expectOne(
            "track-without-packets",
            "Track 0 returns no packet: reading ended at the damaged page header at offset 85.",
            "getNextGranulePosition:Cannot read a page header, at 0x00000055");
}

TEST(ExplainEnd, ATrackWhoseSerialNumberIsAnnouncedAgainIsReported) {
    const Bytes once = sampleBytes(kSample);
    const auto found = ExplainedFile(joined({once, once})).findings("serial-number-twice");
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(
            found[1]["text"],
            "Track 1 returns no packet: its serial number 1 is announced again for track 3, which "
            "gets the packets of both.");
    EXPECT_EQ(found[1]["offset"], once.size() + 85);
}

TEST(ExplainEnd, ACommentHeaderComesOutFirst) {
    const auto finding = ExplainedFile(sampleBytes(kSample))
                                 .expectOne("comment-header-comes-out",
                                            "The first buffer of track 0 is its comment header, "
                                            "which is returned like a frame.",
                                            "");
    EXPECT_EQ(finding["usual"], true);
}

nlohmann::json fakeFindings(const nlohmann::json& end, int exitCode) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["end"] = end;
    const ProcessResult result =
            FakePlugin::run({"explain", "--json", plugin.file(fakeFile({video}))});
    EXPECT_EQ(result.exitCode, exitCode);
    return nlohmann::json::parse(result.out)["findings"];
}

TEST(ExplainEnd, AFailedReadIsReported) {
    const auto findings = fakeFindings(-10007, 2);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["id"], "reading-failed");
    EXPECT_EQ(findings[0]["text"], "Reading track 0 ended with AMEDIA_ERROR_IO (-10007).");
}

TEST(ExplainEnd, ProvesNothingOfAFileThatIsNotOgg) {
    const FakePlugin plugin;
    const ProcessResult result = FakePlugin::run({"explain", plugin.file(fakeFile({fakeVideo()}))});
    EXPECT_EQ(result.out, "nothing found to explain, but no packets counted\n");
}

TEST(ExplainEnd, ADeathIsReportedWithTheLastRead) {
    const auto findings = fakeFindings("abort", 4);
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["id"], "extractor-ended");
    EXPECT_EQ(findings[0]["text"],
              "Playing did not end: the extractor died in read: Aborted (SIGABRT). The last "
              "read was at offset 0.");
}

TEST(ExplainEnd, AnAssertionOfThePluginIsExplained) {
    const std::vector<std::pair<std::string, std::string>> causes = {
            {"Ogmavc_utils:542 CHECK(x) failed.",
             " A video object layer header is of fine granularity scalable video."},
            {"Ogmavc_utils:573 CHECK(x) failed.",
             " A video object layer header is not of rectangular pictures."},
            {"Ogmavc_utils:589 CHECK(x) failed.",
             " A video object layer header has a fixed rate and a resolution of 0."},
            {"Ogmavc_utils:768 CHECK(x) failed.",
             " There are more than 16361 bytes between the video object layer header and the first "
             "picture."},
            {"Ogmavc_utils:1 CHECK(br.getBits(1)) failed.",
             " A marker bit of a video object layer header is 0."},
            {"Ogmavc_utils:2 CHECK(getBitsGraceful(1)) failed.",
             " A video object layer header, or the beginning of an AC-3 frame, is cut off."},
            {"OgmExtractor:717 CHECK(x) failed.",
             " An MPEG audio frame has a negative time: its granule position is too large."},
            {"OgmExtractor:783 CHECK(x) failed.",
             " A DTS frame has a negative time: its granule position is too large."},
            {"OgmExtractor:499 CHECK(x) failed.",
             " The frames have more bytes than the packets brought."},
            {"OgmExtractor:4990 CHECK(x) failed.", ""},
    };
    for (const auto& [assertion, cause] : causes) {
        const auto findings = fakeFindings("assert " + assertion, 4);
        ASSERT_EQ(findings.size(), 1U);
        EXPECT_EQ(findings[0]["text"],
                  "Playing did not end: the extractor died in read: " + assertion + cause +
                          " The last read was at offset 0.");
    }
}

TEST(ExplainEnd, ATrackThatDoesNotStartIsReported) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["start"] = -10001;
    const ProcessResult result =
            FakePlugin::run({"explain", "--json", plugin.file(fakeFile({video}))});
    EXPECT_EQ(result.exitCode, 2);
    const auto findings = nlohmann::json::parse(result.out)["findings"];
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0]["id"], "not-played");
    EXPECT_EQ(findings[0]["text"],
              "The file was not played to its end: track 0 does not start: AMEDIA_ERROR_MALFORMED "
              "(-10001).");
}

TEST(ExplainEnd, AFileThatBeginsWithDataIsReadAgainAndAgain) {
    OgmFile file;
    file.addData(1, 1, dataPacket(kSyncPacket, pattern(50, 1)));
    file.addHeader(1, VideoHeader());
    for (int i = 2; i <= 30; ++i) {
        file.addData(1, i, dataPacket(kSyncPacket, pattern(50, i)));
    }
    const auto findings = ExplainedFile(file.bytes()).findings("extractor-ended");
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_THAT(findings[0]["text"].get<std::string>(),
                HasSubstr("The file begins with a data page, and offset 0 means an unknown place, "
                          "so that page is read again and again."));
}

TEST(ExplainLines, WhatMisleadsIsNamedWhereItIsLogged) {
    struct Case {
        std::string line;
        size_t count;
        std::string id;
    };
    for (const Case& expected :
         {Case{"getNextGranulePosition failed,set averGranulePosition to 0 now", 1,
               "average-logged-wrong"},
          Case{"*** Skip 3", 1, "junk-look-up-early"}, Case{"other", 2, ""}}) {
        const FakePlugin plugin;
        auto video = fakeVideo();
        for (size_t i = 0; i < expected.count; ++i) {
            video["buffers"][i]["log"] = expected.line;
        }
        const auto document = nlohmann::json::parse(
                FakePlugin::run({"explain", "--json", plugin.file(fakeFile({video}))}).out);
        const auto& findings = document["findings"];
        ASSERT_EQ(findings.size(), expected.id.empty() ? 0U : 1U) << document;
        if (!expected.id.empty()) {
            EXPECT_EQ(findings[0]["id"], expected.id);
            EXPECT_EQ(findings[0]["usual"], true);
            EXPECT_EQ(findings[0]["log"]["text"], expected.line);
        }
    }
}

}  // namespace
}  // namespace ogmprobe::test::explain_end_test
