// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

std::vector<json> jsonLines(const std::string& text) {
    std::istringstream lines(text);
    std::vector<json> documents;
    for (std::string line; std::getline(lines, line);) {
        documents.push_back(json::parse(line));
    }
    return documents;
}

TEST(Packets, AreALineEachInTheOrderOfTheirTimes) {
    const FakePlugin plugin;
    const ProcessResult result =
            FakePlugin::run({"packets", plugin.file(fakeFile({fakeVideo(), fakeAudio()}))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              "track            time    until next      size  sync  digest\n"
              "    0        0.000000      0.080000         2  K     08328707b4eb6e3a\n"
              "    1        0.000000      0.060000         2  K     08657307b516a5d7\n"
              "    1        0.060000             -         2  K     07cc7607b4949e25\n"
              "    0        0.080000     -0.040000         2  -     08395507b4f137f2\n"
              "    0        0.040000             -         1  -     af63b94c8601b113\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST(Packets, CanBeThoseOfSomeTracksOnly) {
    const FakePlugin plugin;
    const auto lines =
            jsonLines(FakePlugin::run({"packets", "--json", "--track", "1",
                                       plugin.file(fakeFile({fakeVideo(), fakeAudio()}))})
                              .out);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[1]["track"], 1);
    EXPECT_EQ(lines[2]["track"], 1);
}

std::vector<std::string> linesOf(const std::vector<std::string>& options) {
    const FakePlugin plugin;
    std::vector<std::string> arguments = {"packets",
                                          plugin.file(fakeFile({fakeVideo(), fakeAudio()}))};
    arguments.insert(arguments.end(), options.begin(), options.end());
    std::istringstream out(FakePlugin::run(arguments).out);
    std::vector<std::string> lines;
    for (std::string line; std::getline(out, line);) {
        lines.push_back(line.substr(0, 21));
    }
    lines.erase(lines.begin());
    return lines;
}

TEST(Packets, OfOneTrackAreThoseOfAPlayingOfAll) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo(), fakeAudio()}));
    const ProcessResult result =
            FakePlugin::run({"--log", "info", "packets", "--track", "1", file});
    EXPECT_THAT(result.err, HasSubstr("start track 0"));
    EXPECT_THAT(result.err, testing::Not(HasSubstr("warning")));
}

TEST(Packets, OfOnlyOneTrackWarnAboutTheOthers) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo(), fakeAudio()}));
    const ProcessResult result =
            FakePlugin::run({"--log", "info", "packets", "--only-track", "1", file});
    EXPECT_THAT(result.err, testing::Not(HasSubstr("start track 0")));
    EXPECT_THAT(result.err, HasSubstr("warning: " + file + ": the other tracks are not played: "));
}

TEST(Packets, CanBeThoseOfSomeTimesOnly) {
    EXPECT_THAT(linesOf({"--from", "0.04", "--to", "0:00:00.08"}),
                testing::ElementsAre("    1        0.060000", "    0        0.040000"));
}

TEST(Packets, CanBeSyncFramesOnlyAndAreCountedThen) {
    EXPECT_THAT(linesOf({"--sync-only", "--count", "1"}),
                testing::ElementsAre("    0        0.000000", "    1        0.000000"));
}

TEST(Packets, CanHaveTimesAsHoursMinutesAndSeconds) {
    EXPECT_THAT(linesOf({"--clock", "--track", "0", "--count", "1"}),
                testing::ElementsAre("    0  0:00:00.000000"));
}

TEST(Packets, CanBeCommaSeparatedValues) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo()}), "a,b.fake");
    const ProcessResult result = FakePlugin::run({"packets", "--csv", "--count", "1", file});
    EXPECT_EQ(result.out, "file,seek,track,time,until_next,size,sync,digest\n\"" + file +
                                  "\",,0,0.000000,0.080000,2,1,08328707b4eb6e3a\n");
}

TEST(Packets, OfSeveralFilesComeOneAfterTheOther) {
    const FakePlugin plugin;
    const std::string a = plugin.file(fakeFile({fakeAudio()}), "a.fake");
    const std::string b = plugin.file(fakeFile({fakeAudio()}), "b.fake");
    const ProcessResult result =
            FakePlugin::run({"packets", a, plugin.folder().path("missing"), b});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.out, HasSubstr("# " + a + "\n    0"));
    EXPECT_THAT(result.out, HasSubstr("# " + b + "\n    0"));
}

TEST(Packets, CanBeCountedOutForEachTrack) {
    const FakePlugin plugin;
    const auto lines =
            jsonLines(FakePlugin::run({"packets", "--json", "--count", "1",
                                       plugin.file(fakeFile({fakeVideo(), fakeAudio()}))})
                              .out);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_EQ(lines[1]["track"], 0);
    EXPECT_EQ(lines[2]["track"], 1);
}

TEST(PacketsJson, HasAHeaderBuffersAndAnEnd) {
    const FakePlugin plugin;
    const auto lines = jsonLines(
            FakePlugin::run({"packets", "--json", plugin.file(fakeFile({fakeVideo()}))}).out);
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines[0], json({{"type", "header"}, {"schema_version", 1}, {"digest", "fnv1a64"}}));
    EXPECT_EQ(lines[1], json({{"type", "buffer"},
                              {"track", 0},
                              {"time_us", 0},
                              {"until_next_us", 80000},
                              {"size", 2},
                              {"sync", true},
                              {"digest", "08328707b4eb6e3a"}}));
    EXPECT_EQ(lines[2]["until_next_us"], -40000);
    EXPECT_EQ(lines[3]["until_next_us"], nullptr);
    EXPECT_EQ(lines[4], json({{"type", "end"},
                              {"exit_code", 0},
                              {"errors", json::array()},
                              {"warnings", json::array()}}));
}

TEST(Packets, FollowEachSeekInTurn) {
    const FakePlugin plugin;
    const auto lines = jsonLines(
            FakePlugin::run({"packets", "--json", "--seek", "0.05", "--seek", "0", "--track", "0",
                             "--count", "1", plugin.file(fakeFile({fakeVideo()}))})
                    .out);
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_EQ(lines[1], json({{"type", "seek"}, {"target_us", 50000}}));
    EXPECT_EQ(lines[2]["time_us"], 80000);
    EXPECT_EQ(lines[3], json({{"type", "seek"}, {"target_us", 0}}));
    EXPECT_EQ(lines[4]["time_us"], 0);
}

TEST(Packets, OfOtherTracksContinueWhenOneCannotBeRead) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["end"] = -10007;
    const ProcessResult result =
            FakePlugin::run({"packets", "--json", plugin.file(fakeFile({video, fakeAudio()}))});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("reading track 0 failed: AMEDIA_ERROR_IO (-10007)"));
    const auto lines = jsonLines(result.out);
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines.back()["exit_code"], 2);
    EXPECT_EQ(lines.back()["errors"][0]["message"],
              "reading track 0 failed: AMEDIA_ERROR_IO (-10007)");
}

TEST(Packets, EndWithTheNameOfTheStatusThatAReadReturned) {
    const FakePlugin plugin;
    for (const auto& [status, name] :
         std::vector<std::pair<int, std::string>>{{-10000, "AMEDIA_ERROR_UNKNOWN"},
                                                  {-10001, "AMEDIA_ERROR_MALFORMED"},
                                                  {-10002, "AMEDIA_ERROR_UNSUPPORTED"},
                                                  {-10005, "AMEDIA_ERROR_INVALID_OPERATION"},
                                                  {-10007, "AMEDIA_ERROR_IO"},
                                                  {-10008, "AMEDIA_ERROR_WOULD_BLOCK"},
                                                  {-10004, "status"}}) {
        auto video = fakeVideo();
        video["end"] = status;
        const std::string file = plugin.file(fakeFile({video}));
        const ProcessResult result = FakePlugin::run({"packets", file});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.err, "ogmprobe: error: " + file + ": reading track 0 failed: " + name +
                                      " (" + std::to_string(status) + ")\n");
    }
}

TEST(Packets, WithoutATimeOrWithoutABufferAreFailures) {
    const FakePlugin plugin;
    auto withoutTime = fakeVideo();
    withoutTime["buffers"][1].erase("time_us");
    auto withoutBuffer = fakeVideo();
    withoutBuffer["end"] = 0;
    for (const auto& [video, reason] : {std::pair{withoutTime, "a buffer has no time"},
                                        std::pair{withoutBuffer, "a read returned no buffer"}}) {
        const ProcessResult result = FakePlugin::run({"packets", plugin.file(fakeFile({video}))});
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.err, HasSubstr(reason));
    }
}

TEST(Packets, OfATrackThatDoesNotStartAreAFailure) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["start"] = -10001;
    const ProcessResult result = FakePlugin::run({"packets", plugin.file(fakeFile({video}))});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("track 0 does not start: AMEDIA_ERROR_MALFORMED (-10001)"));
}

}  // namespace
}  // namespace ogmprobe::test
