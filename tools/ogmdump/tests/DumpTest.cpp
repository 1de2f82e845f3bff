// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "tests/FakeFile.h"

namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

ProcessResult runDump(const std::vector<std::string>& arguments) {
    return runProgram(OGMDUMP_PROGRAM, arguments);
}

/** With the plug-in of the tests. */
ProcessResult runFake(const std::vector<std::string>& arguments) {
    ProcessSetup setup;
    setup.environment = {{"OGMDUMP_PLUGIN", testedBuild().fakePlugin}};
    return runProgram(OGMDUMP_PROGRAM, arguments, setup);
}

std::vector<json> linesOf(const ProcessResult& result, const std::string& type) {
    std::vector<json> lines;
    std::istringstream stream(result.out);
    for (std::string line; std::getline(stream, line);) {
        const json parsed = json::parse(line);
        if (parsed["type"] == type) {
            lines.push_back(parsed);
        }
    }
    return lines;
}

/** The buffers of each track, in its order. */
std::vector<json> byTrack(std::vector<json> buffers) {
    std::stable_sort(buffers.begin(), buffers.end(), [](const json& a, const json& b) {
        return a["track"].get<int>() < b["track"].get<int>();
    });
    return buffers;
}

TEST(Dump, HasTheBuffersThatOgmprobeLists) {
    for (const char* name : {"mpeg4_mp3_ac3.ogm", "divx3_pcm16.ogm", "mpeg4_b_mp3.ogm"}) {
        const std::string path = std::string(OGMPROBE_SAMPLES "/") + name;
        const auto dumped = byTrack(linesOf(runDump({path}), "buffer"));
        EXPECT_THAT(dumped, testing::Not(IsEmpty()));
        EXPECT_EQ(dumped, byTrack(linesOf(runProbe({"packets", "--json", path}), "buffer")))
                << name;
    }
}

TEST(Dump, BeginsWithAHeaderAndEndsWithHowItWent) {
    const auto result = runDump({OGMPROBE_SAMPLES "/mjpeg.ogm"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(json::parse(result.out.substr(0, result.out.find('\n'))),
              (json{{"type", "header"}, {"schema_version", 1}, {"digest", "fnv1a64"}}));
    const auto ends = linesOf(result, "end");
    ASSERT_EQ(ends.size(), 1U);
    EXPECT_EQ(ends[0]["exit_code"], 0);
}

TEST(Dump, HasTheFormatsOfTheTracks) {
    const auto tracks = linesOf(runDump({OGMPROBE_SAMPLES "/mpeg4_mp3_ac3.ogm"}), "track");
    ASSERT_EQ(tracks.size(), 3U);
    EXPECT_EQ(tracks[0]["mime"], "video/mp4v-es");
    EXPECT_EQ(tracks[0]["width"], 176);
    EXPECT_TRUE(tracks[0]["sample_rate"].is_null());
    EXPECT_THAT(tracks[0]["csd_0"].get<std::string>(), testing::StartsWith("000001"));
    EXPECT_EQ(tracks[2]["channel_count"], 2);
    EXPECT_THAT(tracks[2]["format"].get<std::string>(), HasSubstr("mime: string(audio/ac3)"));
}

TEST(Dump, SeeksToTheGivenTimes) {
    const auto result = runDump({OGMPROBE_SAMPLES "/long_mpeg4_mp3.ogm", "--seek", "30", "--seek",
                                 "1.5", "--count", "2"});
    const auto seeks = linesOf(result, "seek");
    ASSERT_EQ(seeks.size(), 2U);
    EXPECT_EQ(seeks[1]["target_us"], 1500000);
    const auto buffers = byTrack(linesOf(result, "buffer"));
    ASSERT_EQ(buffers.size(), 8U);
    EXPECT_EQ(buffers[0]["track"], 0);
    EXPECT_EQ(buffers[0]["time_us"], 27800000);
    EXPECT_EQ(buffers[0]["sync"], true);
}

TEST(Dump, ATrackThatFailsEndsWithoutAWord) {
    const FakePlugin plugin;
    auto failing = fakeAudio();
    failing["end"] = -10007;
    const auto result = runFake({plugin.file(fakeFile({fakeVideo(), failing}))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(linesOf(result, "buffer").size(), 5U);
}

TEST(Dump, AFileThatIsNotTakenIsAnError) {
    const FakePlugin plugin;
    const auto result = runDump({plugin.folder().write("text", "nothing")});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_EQ(linesOf(result, "end")[0]["errors"][0]["exit_code"], 3);
    EXPECT_EQ(runDump({"/nowhere"}).exitCode, 2);
}

TEST(Dump, AWrongCommandLineIsExplained) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{},
                                               {"a", "b"},
                                               {"--seek"},
                                               {"--seek", "x", "a"},
                                               {"--count", "0", "a"},
                                               {"--count", "-1", "a"},
                                               {"--other", "a"}}) {
        const auto result = runDump(arguments);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_THAT(result.err, HasSubstr("Usage: ogmdump"));
        EXPECT_EQ(result.out, "");
    }
    EXPECT_THAT(runDump({"--help"}).out, HasSubstr("Usage: ogmdump"));
}

TEST(Dump, AFullDeviceIsAnError) {
    ProcessSetup setup;
    setup.out = StandardStream::kFullDevice;
    EXPECT_EQ(runProgram(OGMDUMP_PROGRAM, {OGMPROBE_SAMPLES "/mjpeg.ogm"}, setup).exitCode, 2);
}

}  // namespace
}  // namespace ogmprobe::test
