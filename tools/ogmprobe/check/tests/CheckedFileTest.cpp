// SPDX-License-Identifier: Apache-2.0
#include "check/CheckedFile.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CheckedFiles.h"
#include "check/CheckText.h"

namespace ogmprobe::check {
namespace {

CheckedFile withEverything() {
    CheckedFile file = checkedFile("a, \"b\".ogm", {reasonOf("frames-lost", "31 of 100", 31, 2)},
                                   {reasonOf("duration-unknown", "unknown")});
    file.tracks[0].reasons[0].subject = "AC-3 at 44100 Hz";
    CheckedTrack stream;
    stream.serial = 9;
    stream.kind = "Vorbis";
    stream.reasons = {reasonOf("vorbis-stream", "passed over")};
    file.tracks.push_back(stream);
    file.failures.push_back({ExitCode::kDied, "it died"});
    return file;
}

TEST(CheckedFileTest, TheVerdictIsTheWorstOfTracksAndFile) {
    EXPECT_EQ(checkedFile("a").verdict(), Verdict::kPlays);
    EXPECT_EQ(checkedFile("a", {}, {reasonOf("duration-unknown", "")}).verdict(),
              Verdict::kPlaysWithFaults);
    EXPECT_EQ(checkedFile("a", {reasonOf("no-decoder", "")}, {reasonOf("duration-unknown", "")})
                      .verdict(),
              Verdict::kDoesNotPlay);
}

TEST(CheckedFileTest, TheExitCodeIsThatOfTheVerdictOrOfWhatPreventedOne) {
    EXPECT_EQ(checkedFile("a").exitCode(), ExitCode::kDone);
    EXPECT_EQ(checkedFile("a", {reasonOf("frames-lost", "")}).exitCode(), ExitCode::kFaults);
    EXPECT_EQ(checkedFile("a", {reasonOf("no-decoder", "")}).exitCode(), ExitCode::kDoesNotPlay);
    CheckedFile unread = checkedFile("a", {}, {reasonOf("check-ended", "")});
    EXPECT_EQ(unread.exitCode(), ExitCode::kFile);
    unread.failures.push_back({ExitCode::kDied, ""});
    EXPECT_EQ(unread.exitCode(), ExitCode::kDied);
}

TEST(CheckedFileTest, WhatIsWrittenAsJsonIsReadAgain) {
    EXPECT_EQ(checkedFileOf(toJson(withEverything())), withEverything());
    CheckedFile unopened = checkedFile("a", {}, {reasonOf("cannot-read", "gone")});
    unopened.durationUs.reset();
    EXPECT_EQ(checkedFileOf(toJson(unopened)), unopened);
}

TEST(CheckedFileTest, JsonOfAnythingElseIsRefused) {
    nlohmann::ordered_json json = toJson(withEverything());
    json["tracks"][0]["reasons"][0]["verdict"] = "flies";
    EXPECT_THROW(checkedFileOf(json), std::exception);
    EXPECT_THROW(checkedFileOf({{"path", "a"}}), std::exception);
    EXPECT_THROW(checkedFileOf(nullptr), std::exception);
}

TEST(CheckedFileTest, ALineNamesReasonsTheWorstFirstAndEachOnce) {
    CheckedFile file = withEverything();
    file.tracks.push_back(file.tracks[0]);
    EXPECT_EQ(lineText(file, false),
              "a, \"b\".ogm: does not play: vorbis-stream, duration-unknown, frames-lost\n");
}

TEST(CheckedFileTest, CsvHasALineForEachReasonAndOneForATrackWithout) {
    EXPECT_EQ(csvText(withEverything()),
              "\"a, \"\"b\"\".ogm\",does not play,,,,,,fault,duration-unknown,,,unknown\n"
              "\"a, \"\"b\"\".ogm\",does not play,0,audio,audio/ac3,\"44100 Hz, 2 channels\","
              "c2.maker.ac3.decoder,fault,frames-lost,31,2,31 of 100\n"
              "\"a, \"\"b\"\".ogm\",does not play,,Vorbis,,,,fatal,vorbis-stream,,,passed over\n");
    EXPECT_EQ(csvText(checkedFile("a")),
              "a,plays,0,audio,audio/ac3,\"44100 Hz, 2 channels\",c2.maker.ac3.decoder,,,,,\n");
}

TEST(CheckedFileTest, WhatAFileHoldsMovesNoCursor) {
    CheckedFile file = checkedFile("a\033[2J.ogm", {reasonOf("no-decoder", "for \n\033]0;x\a")});
    file.tracks[0].codec = "\033[31m";
    EXPECT_EQ(fullText(file, "list\n", false).find('\033'), std::string::npos);
    EXPECT_EQ(lineText(file, false).find('\033'), std::string::npos);
}

}  // namespace
}  // namespace ogmprobe::check
