// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ExplainedFile.h"
#include "UnpackedPage.h"

namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::Ge;
using testing::Gt;
using testing::HasSubstr;
using testing::Lt;
using testing::SizeIs;

/** The page of a file that the real plug-in plays. */
class TimelineEvidence : public testing::Test {
  protected:
    timeline::test::UnpackedPage pageOf(const Bytes& bytes,
                                        const std::vector<std::string>& options = {}) {
        const std::string file = mFolder.write("a.ogm", std::string(bytes.begin(), bytes.end()));
        std::vector<std::string> arguments = {"timeline", file, "--force", "-o",
                                              mFolder.path("a.html")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        EXPECT_EQ(runProbe(arguments).exitCode, 0);
        return timeline::test::UnpackedPage(mFolder.read("a.html"));
    }

    json explained() const {
        return json::parse(runProbe({"explain", "--json", mFolder.path("a.ogm")}).out);
    }

  private:
    TemporaryFolder mFolder;
};

std::vector<std::string> textsOf(const json& findings) {
    std::vector<std::string> texts;
    for (const json& finding : findings) {
        texts.push_back(finding["text"].get<std::string>());
    }
    return texts;
}

TEST_F(TimelineEvidence, HasAllFindingsOfExplainInTheirOrder) {
    Bytes bytes = sampleBytes("mpeg4_mp3_ac3.ogm");
    const auto page = pageOffsets(bytes)[40];
    bytes.insert(bytes.begin() + static_cast<ptrdiff_t>(page), 5000, 'x');
    const json findings = pageOf(bytes).outline()["findings"];
    EXPECT_EQ(textsOf(findings), textsOf(explained()["findings"]));
    EXPECT_THAT(findings, Contains(testing::Truly([](const json& finding) {
                    return finding["id"] == "junk-skipped" && finding["fromUs"].is_number();
                })));
}

TEST_F(TimelineEvidence, CountsTheLostPacketsOfTheLedger) {
    const json outline = pageOf(sampleBytes("mpeg4_mp3_ac3.ogm")).outline();
    const json explanation = explained();
    ASSERT_EQ(explanation["streams"].size(), 3U);
    int lost = 0;
    for (const json& stream : explanation["streams"]) {
        const json& lane = outline["lanes"][stream["track"].get<size_t>()];
        const json& ledger = stream["ledger"];
        EXPECT_EQ(lane["lost"].get<int>(),
                  ledger["in_file"].get<int>() - ledger["handed_out"].get<int>());
        lost += lane["lost"].get<int>();
    }
    EXPECT_GT(lost, 0);
}

TEST_F(TimelineEvidence, HasStreamsWithoutATrackWithTheirPackets) {
    const json refused = pageOf(sampleBytes("xvid_refused_mp3.ogm")).outline()["refused"];
    ASSERT_EQ(refused.size(), 1U);
    EXPECT_THAT(refused[0]["name"].get<std::string>(), HasSubstr("video XVID"));
    EXPECT_EQ(refused[0]["reason"], "codec not supported");
    EXPECT_EQ(refused[0]["packets"], 151);
}

TEST_F(TimelineEvidence, CutsToTheRequestedTime) {
    const auto page = pageOf(sampleBytes("xvid_refused_mp3.ogm"), {"--from", "1", "--to", "2"});
    EXPECT_EQ(page.outline()["refused"][0]["packets"], 25);
    EXPECT_THAT(page.times(0), SizeIs(Gt(10U)));
    EXPECT_THAT(page.times(0), Each(AllOf(Ge(1000000), Lt(2000000))));
}

}  // namespace
}  // namespace ogmprobe::test
