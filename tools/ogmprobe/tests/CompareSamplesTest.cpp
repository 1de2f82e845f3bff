// SPDX-License-Identifier: Apache-2.0
#include "ExplainedFile.h"
#include "FakeFile.h"

namespace ogmprobe::test::compare_samples_test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr const char* kSample = OGMPROBE_SAMPLES "/mpeg4_b_mp3.ogm";

/** An edited copy of the sample, and the result of comparing it with the sample. */
class EditedSample {
  public:
    explicit EditedSample(const std::function<void(Bytes&)>& edit) {
        Bytes bytes = sampleBytes("mpeg4_b_mp3.ogm");
        edit(bytes);
        mPath = mFolder.write("b.ogm", std::string(bytes.begin(), bytes.end()));
    }

    ProcessResult run(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"compare", kSample, mPath};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runProbe(arguments);
    }

    nlohmann::json document() const { return nlohmann::json::parse(run({"--json"}).out); }

  private:
    TemporaryFolder mFolder;
    std::string mPath;
};

TEST(CompareSamples, ACopyIsTheSameDownToTheLog) {
    const EditedSample copy([](Bytes&) {});
    const ProcessResult result = copy.run({"--logs"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("\nNo difference: 2 tracks, 363 packets, 2136 log lines\n"));
}

TEST(CompareSamples, ADamagedByteIsFoundOnlyInItsPacket) {
    const EditedSample damaged([](Bytes& bytes) { bytes[pageOffsets(bytes)[10] + 60] ^= 1; });
    const auto document = damaged.document();
    EXPECT_EQ(document["exit_code"], 5);
    ASSERT_EQ(document["differences"].size(), 1U);
    EXPECT_EQ(document["differences"][0]["kind"], "packet");
    EXPECT_EQ(document["differences"][0]["field"], "digest");
    EXPECT_EQ(document["tracks"][0]["only_in"], nlohmann::json({{"a", 1}, {"b", 1}}));
    EXPECT_EQ(document["tracks"][1]["first_difference"], nullptr);
}

TEST(CompareSamples, PacketsOfACutTailAreOnlyInTheWholeFile) {
    const EditedSample cut([](Bytes& bytes) { bytes.resize(150000); });
    const auto document = cut.document();
    EXPECT_EQ(document["tracks"][1]["packets"], nlohmann::json({{"a", 218}, {"b", 138}}));
    EXPECT_EQ(document["tracks"][1]["only_in"], nlohmann::json({{"a", 80}, {"b", 0}}));
    EXPECT_THAT(cut.run().out, HasSubstr("First difference: track 1, packet 138, at 3.108571 s: "
                                         "only in A\n"));
}

TEST(CompareSamples, ALogLineThatDiffersIsReportedWithItsCall) {
    const EditedSample renamed([](Bytes& bytes) { bytes[pageOffsets(bytes)[2] + 4] = 1; });
    const auto document = nlohmann::json::parse(renamed.run({"--logs", "--json"}).out);
    const auto& last = document["differences"].back();
    EXPECT_EQ(last["kind"], "log");
    EXPECT_THAT(last["text"].get<std::string>(), HasSubstr(", in create: \"I OgmExtractor: "));
}

TEST(CompareSamples, APluginThatDoesNotTakeTheFileIsADifference) {
    const ProcessResult result =
            runProbe({"compare", kSample, "--plugin-b", testedBuild().fakePlugin, "--no-logs"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.out,
                HasSubstr("\nB: " + std::string(kSample) + " with " + testedBuild().fakePlugin +
                          "\nFirst difference: opening: taken in A, \"not recognised by the Fake "
                          "Extractor\" in B\n"));
    EXPECT_THAT(result.out, EndsWith("218     0        218          0                   0\n"));
}

}  // namespace
}  // namespace ogmprobe::test::compare_samples_test
