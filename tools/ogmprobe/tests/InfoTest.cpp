// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(Info, IsATableForPeople) {
    const FakePlugin plugin;
    const std::string path = plugin.file(fakeFile({fakeVideo(), fakeAudio()}));
    const ProcessResult result = FakePlugin::run({"info", path});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out,
              path + ": video/fake, " + std::to_string(fs::file_size(path)) +
                      " B, duration 0:00:00.120, 2 tracks\n"
                      "  Track  Type   Codec  Format                 Duration  MIME type\n"
                      "      0  video  H.264  64x48, ? fps        0:00:00.120  video/avc\n"
                      "      1  audio  PCM    8000 Hz, 1 channel  0:00:00.120  audio/raw\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST(Info, CallsADurationOfZeroUnknown) {
    const FakePlugin plugin;
    auto script = fakeFile({});
    script["container"]["durationUs"] = 0;
    EXPECT_THAT(FakePlugin::run({"info", plugin.file(script)}).out,
                HasSubstr("duration unknown, 0 tracks"));
}

TEST(Info, SaysWhenAFileHasNoTracks) {
    const FakePlugin plugin;
    const ProcessResult result = FakePlugin::run({"info", plugin.file(fakeFile({}))});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, HasSubstr("warning: "));
    EXPECT_THAT(result.err, HasSubstr("no tracks that can be played"));
}

TEST(Info, DecodesTheEsdsBelowTheTable) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["format"]["esds"] = "0303000100";
    EXPECT_THAT(FakePlugin::run({"info", plugin.file(fakeFile({video}))}).out,
                HasSubstr("  Track 0 ESDS, 5 bytes: 03 03 00 01 00\n"
                          "    tags 0x03, ES_ID 1, flags 0x00\n"));
}

TEST(Info, ListsAllEntriesOfAllFormats) {
    const FakePlugin plugin;
    auto audio = fakeAudio();
    audio["format"]["anything"] = 7;
    const ProcessResult result =
            FakePlugin::run({"info", "--format", plugin.file(fakeFile({audio}))});
    EXPECT_THAT(result.out, HasSubstr("  Format of the container:\n"
                                      "    durationUs: int64(120000)\n"
                                      "    mime: string(video/fake)\n"
                                      "  Format of track 0:\n"));
    EXPECT_THAT(result.out, HasSubstr("    anything: int32(7)\n"));
}

TEST(Info, CutsLongBytesOnATerminalOnly) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["format"]["esds"] = std::string(400, '7');
    const std::string file = plugin.file(fakeFile({video}));
    ProcessSetup terminal;
    terminal.out = StandardStream::kTerminal;
    terminal.columns = 60;
    const std::string cut = FakePlugin::run({"info", file}, terminal).out;
    EXPECT_THAT(cut, HasSubstr("77…"));
    EXPECT_THAT(FakePlugin::run({"info", "--verbose", file}, terminal).out,
                testing::Not(HasSubstr("…")));
    EXPECT_THAT(FakePlugin::run({"info", file}).out, testing::Not(HasSubstr("…")));
}

TEST(InfoJson, HoldsWhatTheTableHolds) {
    const FakePlugin plugin;
    const std::string path = plugin.file(fakeFile({fakeVideo(), fakeAudio()}));
    const json document = json::parse(FakePlugin::run({"info", "--json", path}).out);
    EXPECT_EQ(document["schema_version"], 1);
    EXPECT_EQ(document["errors"], json::array());
    EXPECT_EQ(document["warnings"], json::array());
    const json& file = document["files"][0];
    EXPECT_EQ(file["path"], path);
    EXPECT_EQ(file["exit_code"], 0);
    EXPECT_EQ(file["extractor"], "Fake Extractor");
    EXPECT_EQ(file["container"], json({{"mime", "video/fake"},
                                       {"size_bytes", fs::file_size(path)},
                                       {"duration_us", 120000},
                                       {"format",
                                        {{{"name", "durationUs"}, {"value", "int64(120000)"}},
                                         {{"name", "mime"}, {"value", "string(video/fake)"}}}}}));
    EXPECT_EQ(file["errors"], json::array());
    EXPECT_EQ(file["warnings"], json::array());
    EXPECT_EQ(file["tracks"][0]["codec"], "H.264");
    EXPECT_EQ(file["tracks"][0]["width"], 64);
    EXPECT_EQ(file["tracks"][1]["sample_rate"], 8000);
    EXPECT_EQ(file["tracks"][1]["duration_us"], 120000);
}

TEST(InfoJson, HasTheErrorOfEachFile) {
    const FakePlugin plugin;
    const ProcessResult result = FakePlugin::run(
            {"info", "--json", plugin.folder().path("missing"), plugin.file(fakeFile({}))});
    EXPECT_EQ(result.exitCode, 2);
    const json files = json::parse(result.out)["files"];
    EXPECT_EQ(files[0]["exit_code"], 2);
    EXPECT_EQ(files[0]["errors"][0]["exit_code"], 2);
    EXPECT_EQ(files[0]["errors"][0]["message"], "cannot open: No such file or directory");
    EXPECT_EQ(files[0]["container"], nullptr);
    EXPECT_EQ(files[1]["errors"], json::array());
    EXPECT_EQ(files[1]["warnings"].size(), 1U);
}

TEST(InfoJson, HasTheErrorOfAMissingPlugin) {
    const ProcessResult result = runProbe({"--plugin", "missing.so", "info", "--json", "a"});
    EXPECT_EQ(result.exitCode, 2);
    const json document = json::parse(result.out);
    EXPECT_EQ(document["errors"].size(), 1U);
    EXPECT_EQ(document["files"], json::array());
}

TEST(InfoJson, ReplacesBytesOfAPathThatAreNoText) {
    const FakePlugin plugin;
    const ProcessResult result =
            FakePlugin::run({"info", "--json", plugin.file(fakeFile({}), "a\xff.fake")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(json::parse(result.out)["files"][0]["path"].get<std::string>(),
                HasSubstr("a\xef\xbf\xbd.fake"));
}

}  // namespace
}  // namespace ogmprobe::test
