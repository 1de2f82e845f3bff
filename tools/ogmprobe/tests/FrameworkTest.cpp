// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/** The calls that the fake plug-in has logged. */
std::vector<std::string> callsOf(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--log", "info"});
    std::istringstream lines(FakePlugin::run(arguments).err);
    std::vector<std::string> calls;
    for (std::string line; std::getline(lines, line);) {
        const size_t end = line.find("] ");
        if (line.rfind("FakeExtractor I ", 0) == 0 && end != std::string::npos) {
            calls.push_back(line.substr(end + 2));
        }
    }
    return calls;
}

TEST(Framework, ReadsAnExtractorsTracksNameAndFormatFirst) {
    const FakePlugin plugin;
    EXPECT_THAT(callsOf({"info", plugin.file(fakeFile({fakeVideo()}))}),
                ElementsAre("countTracks", "name", "getMetaData", "free extractor"));
}

TEST(Framework, StartsAudioBeforeVideoAndFreesTracksBeforeTheExtractor) {
    const FakePlugin plugin;
    EXPECT_THAT(callsOf({"packets", plugin.file(fakeFile({fakeVideo(), fakeAudio()}))}),
                ElementsAre("countTracks", "name", "getMetaData", "getTrack 0", "getTrack 1",
                            "start track 1", "start track 0", "stop track 0", "free track 0",
                            "stop track 1", "free track 1", "free extractor"));
}

TEST(Framework, MakesOnlyTheRequestedTracks) {
    const FakePlugin plugin;
    EXPECT_THAT(callsOf({"packets", plugin.file(fakeFile({fakeVideo(), fakeAudio()})),
                         "--only-track", "1"}),
                ElementsAre("countTracks", "name", "getMetaData", "getTrack 1", "start track 1",
                            "stop track 1", "free track 1", "free extractor"));
}

TEST(Framework, DoesNotStopATrackThatDidNotStart) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["start"] = -10000;
    EXPECT_THAT(callsOf({"packets", plugin.file(fakeFile({video}))}),
                ElementsAre("countTracks", "name", "getMetaData", "getTrack 0", "start track 0",
                            "free track 0", "free extractor"));
}

TEST(Framework, SeeksTheVideoFirstThenTheAudioToWhereItLanded) {
    const FakePlugin plugin;
    const auto calls = callsOf({"packets", plugin.file(fakeFile({fakeAudio(), fakeVideo()})),
                                "--seek", "0.05", "--count", "1"});
    const auto seeks = std::vector<std::string>(calls.begin() + 7, calls.begin() + 9);
    EXPECT_THAT(seeks, ElementsAre("seek track 1 to 50000 mode 2", "seek track 0 to 80000 mode 3"));
}

TEST(Framework, HidesLogLinesByDefault) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo()}));
    EXPECT_THAT(FakePlugin::run({"packets", file}).err, IsEmpty());
    EXPECT_THAT(FakePlugin::run({"--log", "warn", "packets", file}).err, IsEmpty());
    EXPECT_THAT(FakePlugin::run({"--log", "info", "packets", file}).err,
                testing::HasSubstr("FakeExtractor I"));
}

TEST(Framework, ShowsALogLineInOneLineWhateverItHolds) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["buffers"][0]["log"] = "a\nb\u001b[2J\u202e";
    const std::string file = plugin.file(fakeFile({video}));
    EXPECT_THAT(FakePlugin::run({"--log", "info", "packets", file}).err,
                testing::HasSubstr("a\\nb\\x1b[2J\\u{202e}\n"));
    EXPECT_THAT(FakePlugin::run({"explain", file}).out, testing::Not(testing::HasSubstr("\u001b")));
}

}  // namespace
}  // namespace ogmprobe::test
