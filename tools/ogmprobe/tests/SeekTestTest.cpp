// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(SeekTest, ShowsWhereEachSeekOfTheGridLandsAndWhatItCosts) {
    const FakePlugin plugin;
    const ProcessResult result = FakePlugin::run(
            {"seektest", "--steps", "3", plugin.file(fakeFile({fakeVideo(), fakeAudio()}))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "  Target    Landed  Off target  Sync  Reads  Bytes\n"
              "0.000000  0.000000    0.000000  yes       2      2\n"
              "0.040000  0.080000    0.040000  no        2      2\n"
              "0.080000  0.080000    0.000000  no        2      2\n"
              "0.120000       end           -  no        2      2\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST(SeekTestJson, HoldsTheLandingsOfAllTracks) {
    const FakePlugin plugin;
    const ProcessResult result =
            FakePlugin::run({"seektest", "--steps", "3", "--json",
                             plugin.file(fakeFile({fakeAudio(), fakeVideo()}))});
    const json document = json::parse(result.out);
    EXPECT_EQ(document["schema_version"], 1);
    EXPECT_EQ(document["exit_code"], 0);
    EXPECT_EQ(document["duration_known"], true);
    EXPECT_EQ(document["last_target_us"], 120000);
    EXPECT_EQ(document["errors"], json::array());
    EXPECT_EQ(document["warnings"], json::array());
    ASSERT_EQ(document["seeks"].size(), 4U);
    const json& second = document["seeks"][1];
    EXPECT_EQ(second["target_us"], 40000);
    EXPECT_EQ(second["landed_us"], 80000);
    EXPECT_EQ(second["off_target_us"], 40000);
    EXPECT_EQ(second["sync"], false);
    EXPECT_EQ(second["reads"], 2);
    EXPECT_EQ(second["bytes"], 2);
    EXPECT_EQ(second["tracks"][0], json({{"track", 1}, {"time_us", 80000}, {"sync", false}}));
    EXPECT_EQ(second["tracks"][1], json({{"track", 0}, {"time_us", nullptr}, {"sync", false}}));
}

TEST(SeekTest, MeasuresAnUnknownDuration) {
    const FakePlugin plugin;
    auto script = fakeFile({fakeVideo()});
    script["container"]["durationUs"] = 0;
    const json document = json::parse(
            FakePlugin::run({"seektest", "--json", "--steps", "2", plugin.file(script)}).out);
    EXPECT_EQ(document["duration_known"], false);
    EXPECT_EQ(document["last_target_us"], 80000);
}

TEST(SeekTest, FailsWithTheReadThatFails) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["end"] = -10007;
    const ProcessResult result =
            FakePlugin::run({"seektest", "--steps", "2", plugin.file(fakeFile({video}))});
    EXPECT_EQ(result.exitCode, 2);
}

TEST(SeekTest, OfSeveralFilesIsALineEach) {
    const FakePlugin plugin;
    const std::string a = plugin.file(fakeFile({fakeVideo()}), "a.fake");
    const std::string b = plugin.file(fakeFile({fakeVideo()}), "b.fake");
    const ProcessResult result = FakePlugin::run({"seektest", "--steps", "2", a, b});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), 2) << result.out;
    EXPECT_THAT(result.out, HasSubstr(a + ": 3 seeks, "));
    EXPECT_THAT(result.out, HasSubstr(b + ": 3 seeks, "));
}

TEST(SeekTest, FailsStrictlyWhenASeekBeforeTheLastGoesToTheEnd) {
    const FakePlugin plugin;
    const std::string whole = plugin.file(fakeFile({fakeVideo()}), "whole.fake");
    EXPECT_EQ(FakePlugin::run({"seektest", "--strict", "--steps", "2", whole}).exitCode, 0);
    auto video = fakeVideo();
    video["buffers"].erase(1);
    const std::string cut = plugin.file(fakeFile({video}), "cut.fake");
    EXPECT_EQ(FakePlugin::run({"seektest", "--strict", "--steps", "2", cut}).exitCode, 1);
    EXPECT_EQ(FakePlugin::run({"seektest", "--steps", "2", cut}).exitCode, 0);
}

TEST(SeekTest, CanBeCommaSeparatedValues) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo()}), "a.fake");
    const ProcessResult result = FakePlugin::run({"seektest", "--csv", "--steps", "1", file});
    EXPECT_EQ(result.out.substr(0, result.out.find('\n')),
              "file,target,landed,off_target,sync,reads,bytes");
    EXPECT_THAT(result.out, HasSubstr("\n" + file + ",0.000000,0.000000,0.000000,1,1,1\n"));
}

}  // namespace
}  // namespace ogmprobe::test
