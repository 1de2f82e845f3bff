// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <thread>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ExtractTest : public testing::Test {
  protected:
    ProcessResult extract(const nlohmann::json& script, std::vector<std::string> options = {},
                          const ProcessSetup& setup = {}) {
        std::vector<std::string> arguments = {"extract", mPlugin.file(script), "-o",
                                              mPlugin.folder().path("out/deep")};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return FakePlugin::run(arguments, setup);
    }

    std::string contents(const std::string& name) const {
        return mPlugin.folder().read("out/deep/" + name);
    }
    bool exists(const std::string& name) const {
        return std::filesystem::exists(mPlugin.folder().path("out/deep/" + name));
    }
    std::set<std::string> namesInFolder() const {
        std::set<std::string> names;
        for (const auto& entry :
             std::filesystem::directory_iterator(mPlugin.folder().path("out/deep"))) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    FakePlugin mPlugin;
};

TEST_F(ExtractTest, WritesEachTrackIntoAFileNamedAfterIt) {
    const ProcessResult result = extract(fakeFile({fakeVideo(), fakeAudio()}));
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(contents("a.track0.h264"), (std::string{0, 1, 2, 3, 4}));
    EXPECT_EQ(contents("a.track1.wav").substr(44), "\x11\x11\x22\x22");
    EXPECT_THAT(result.out, HasSubstr("track 0: H.264, 3 buffers, 5 bytes: "));
    EXPECT_THAT(result.out, HasSubstr("track 1: PCM, 2 buffers, 48 bytes: "));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(ExtractTest, LeavesOutACommentHeaderAtTheStartOnly) {
    auto video = fakeVideo();
    const nlohmann::json comments = {{"time_us", 0}, {"hex", "766f72626973000000000000000001"}};
    video["buffers"] = {comments, {{"time_us", 0}, {"hex", "0001"}}, comments};
    const ProcessResult result = extract(fakeFile({video}));
    EXPECT_EQ(contents("a.track0.h264").size(), 2U + 15U);
    EXPECT_THAT(result.out, HasSubstr("3 buffers (comment header left out), 17 bytes"));
}

TEST_F(ExtractTest, WritesOnlyTheRequestedTracks) {
    extract(fakeFile({fakeVideo(), fakeAudio()}), {"--track", "1"});
    EXPECT_FALSE(exists("a.track0.h264"));
    EXPECT_TRUE(exists("a.track1.wav"));
}

TEST_F(ExtractTest, OverwritesOnlyByForce) {
    extract(fakeFile({fakeVideo()}));
    auto other = fakeVideo();
    other["buffers"][0]["hex"] = "ff";
    const ProcessResult refused = extract(fakeFile({other}));
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.err, HasSubstr("exists; --force overwrites it"));
    EXPECT_EQ(contents("a.track0.h264").size(), 5U);
    EXPECT_EQ(extract(fakeFile({other}), {"--force"}).exitCode, 0);
    EXPECT_EQ(contents("a.track0.h264").size(), 4U);
}

TEST_F(ExtractTest, NamesAFileOnlyWhenItsTrackWasReadToTheEnd) {
    auto video = fakeVideo();
    video["end"] = -10007;
    const ProcessResult result = extract(fakeFile({video, fakeAudio()}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_FALSE(exists("a.track0.h264"));
    EXPECT_EQ(contents("a.track0.h264.part").size(), 5U);
    EXPECT_TRUE(exists("a.track1.wav"));
    EXPECT_THAT(result.err, HasSubstr("what could be read of track 0 is in "));
}

TEST_F(ExtractTest, KeepsWhatWasReadWhenTheExtractorDies) {
    auto video = fakeVideo();
    video["end"] = "crash";
    const ProcessResult result = extract(fakeFile({video, fakeAudio()}));
    EXPECT_EQ(result.exitCode, 4);
    // Packets are read one ahead: the video's last one was not passed on yet.
    EXPECT_EQ(namesInFolder(), (std::set<std::string>{"a.track0.h264.part", "a.track1.wav"}));
    EXPECT_EQ(contents("a.track0.h264.part").size(), 4U);
    EXPECT_THAT(result.err, HasSubstr("died in read"));
    EXPECT_THAT(result.err, HasSubstr("what could be read of track 0 is in "));
}

TEST_F(ExtractTest, WritesOverNoPartOfAnEarlierRun) {
    auto video = fakeVideo();
    video["end"] = -10007;
    extract(fakeFile({video}));
    const ProcessResult refused = extract(fakeFile({fakeVideo()}));
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.err, HasSubstr("a.track0.h264.part exists; --force overwrites it"));
    EXPECT_EQ(extract(fakeFile({fakeVideo()}), {"--force"}).exitCode, 0);
    EXPECT_EQ(namesInFolder(), (std::set<std::string>{"a.track0.h264"}));
}

TEST_F(ExtractTest, WritesNothingWhenTheNameOfOneTrackIsTaken) {
    extract(fakeFile({fakeVideo(), fakeAudio()}), {"--track", "1"});
    EXPECT_EQ(extract(fakeFile({fakeVideo(), fakeAudio()})).exitCode, 2);
    EXPECT_EQ(namesInFolder(), (std::set<std::string>{"a.track1.wav"}));
}

TEST_F(ExtractTest, StaysInTheFolderWhateverThePluginSays) {
    auto video = fakeVideo();
    video["format"]["mime"] = "video/../../../escaped";
    EXPECT_EQ(extract(fakeFile({video})).exitCode, 0);
    EXPECT_EQ(namesInFolder(), (std::set<std::string>{"a.track0.bin"}));
}

TEST_F(ExtractTest, LeavesNothingOnAFullDisk) {
    auto video = fakeVideo();
    video["repeat"] = true;
    ProcessSetup setup;
    setup.fileSizeLimit = 10000;
    const ProcessResult result = extract(fakeFile({video}), {}, setup);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("cannot write "));
    EXPECT_THAT(result.err, HasSubstr("File too large"));
    EXPECT_THAT(namesInFolder(), IsEmpty());
}

TEST_F(ExtractTest, LeavesNothingWhenASignalEndsIt) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        auto video = fakeVideo();
        video["end"] = "hang";
        ProcessSetup setup;
        setup.meanwhile = [this, number](pid_t process) {
            while (!exists("a.track0.h264.part")) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
            kill(process, number);
        };
        EXPECT_EQ(extract(fakeFile({video}), {}, setup).exitCode, -number);
        EXPECT_THAT(namesInFolder(), IsEmpty());
    }
}

TEST_F(ExtractTest, FailsWhereNoFolderCanBeMade) {
    mPlugin.folder().write("out", "a file in the way");
    const ProcessResult result = extract(fakeFile({fakeVideo()}));
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("cannot make the folder"));
}

TEST_F(ExtractTest, WritesOneTrackToStandardOutput) {
    const std::string file = mPlugin.file(fakeFile({fakeVideo(), fakeAudio()}));
    const ProcessResult video = FakePlugin::run({"extract", file, "-o", "-", "--track", "0"});
    EXPECT_EQ(video.exitCode, 0);
    EXPECT_EQ(video.out, (std::string{0, 1, 2, 3, 4}));
    const ProcessResult audio = FakePlugin::run({"extract", file, "-o", "-", "--track", "1"});
    EXPECT_EQ(audio.out.substr(40), "\xff\xff\xff\xff\x11\x11\x22\x22") << "to the end";
    EXPECT_THAT(audio.err, IsEmpty());
}

TEST_F(ExtractTest, RefusesSeveralTracksOnStandardOutput) {
    const ProcessResult result = FakePlugin::run(
            {"extract", mPlugin.file(fakeFile({fakeVideo(), fakeAudio()})), "-o", "-"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("standard output takes one track, and there are 2: choose "
                                      "one with --track"));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(ExtractTest, EndsQuietlyWhenNobodyReadsStandardOutput) {
    auto video = fakeVideo();
    video["buffers"][0]["hex"] = std::string(40000, '0');
    ProcessSetup setup;
    setup.out = StandardStream::kClosedPipe;
    const ProcessResult result = FakePlugin::run(
            {"extract", mPlugin.file(fakeFile({video})), "-o", "-", "--track", "0"}, setup);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(ExtractTest, WritesTheStreamsOfSeveralFilesIntoOneFolder) {
    const std::string second = mPlugin.file(fakeFile({fakeAudio()}), "b.fake");
    const ProcessResult result = extract(fakeFile({fakeVideo()}), {second});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(namesInFolder(), (std::set<std::string>{"a.track0.h264", "b.track0.wav"}));
}

TEST_F(ExtractTest, WritesOverNothingThatItWroteForAnotherFile) {
    const std::string second = mPlugin.file(fakeFile({fakeVideo(), fakeAudio()}), "a.other");
    const ProcessResult result = extract(fakeFile({fakeVideo()}), {second, "--force"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("a.other: "));
    EXPECT_THAT(result.err, HasSubstr("a.fake has the same name without its suffix"));
    EXPECT_EQ(namesInFolder(), (std::set<std::string>{"a.track0.h264"}));
}

TEST_F(ExtractTest, ContinuesWithTheNextFileAfterOneThatFails) {
    const std::string second = mPlugin.file(fakeFile({fakeAudio()}), "b.fake");
    const ProcessResult result = extract({{"fake", false}}, {second});
    EXPECT_NE(result.exitCode, 0);
    EXPECT_EQ(namesInFolder(), (std::set<std::string>{"b.track0.wav"}));
}

TEST_F(ExtractTest, RefusesSeveralFilesOnStandardOutput) {
    const std::string file = mPlugin.file(fakeFile({fakeVideo()}));
    const ProcessResult result = FakePlugin::run({"extract", file, file, "-o", "-"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("standard output takes one track of one file"));
    EXPECT_THAT(result.out, IsEmpty());
}

TEST_F(ExtractTest, SaysWhenTheFolderIsAFile) {
    const std::string taken = mPlugin.folder().write("taken", "");
    const ProcessResult result =
            FakePlugin::run({"extract", mPlugin.file(fakeFile({fakeVideo()})), "-o", taken});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("taken: a file has that name"));
}

TEST_F(ExtractTest, SaysWhenTheFileIsAFolder) {
    std::filesystem::create_directories(mPlugin.folder().path("out/deep/a.track0.h264"));
    for (const std::vector<std::string>& options : {std::vector<std::string>{}, {"--force"}}) {
        const ProcessResult result = extract(fakeFile({fakeVideo()}), options);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_THAT(result.err, HasSubstr("a.track0.h264 is a folder, not a file"));
    }
}

TEST_F(ExtractTest, WritesOnlyTheTracksThatAreChosen) {
    extract(fakeFile({fakeVideo(), fakeAudio()}), {"--track", "1"});
    EXPECT_EQ(namesInFolder(), std::set<std::string>{"a.track1.wav"});
}

}  // namespace
}  // namespace ogmprobe::test
