// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/** Two scripts and the result of comparing them. */
class Pair {
  public:
    Pair(const json& a, const json& b)
        : mA(mPlugin.file(a, "a.fake")), mB(mPlugin.file(b, "b.fake")) {}

    ProcessResult run(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"compare", mA, mB};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return FakePlugin::run(arguments);
    }

    json document(int exitCode, const std::vector<std::string>& options = {}) const {
        std::vector<std::string> all = options;
        all.push_back("--json");
        const ProcessResult result = run(all);
        EXPECT_EQ(result.exitCode, exitCode) << result.err;
        const json parsed = json::parse(result.out);
        EXPECT_EQ(parsed["exit_code"], exitCode);
        return parsed;
    }

    /** The texts of all differences; there must be some. */
    std::vector<std::string> differences(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> texts;
        const json all = document(5, options);
        EXPECT_EQ(all["same"], false);
        for (const json& difference : all["differences"]) {
            texts.push_back(difference["text"].get<std::string>());
        }
        return texts;
    }

    const std::string& pathA() const { return mA; }
    const std::string& pathB() const { return mB; }

  private:
    FakePlugin mPlugin;
    std::string mA;
    std::string mB;
};

json withBuffer(size_t number, const char* key, const json& value) {
    json video = fakeVideo();
    video["buffers"][number][key] = value;
    return fakeFile({video, fakeAudio()});
}

json original() {
    return fakeFile({fakeVideo(), fakeAudio()});
}

TEST(Compare, OfEqualFilesSaysWhatIsEqual) {
    const Pair pair(original(), original());
    const ProcessResult result = pair.run();
    EXPECT_EQ(result.exitCode, 0);
    const std::string with = " with " + testedBuild().fakePlugin;
    EXPECT_EQ(result.out, "A: " + pair.pathA() + with + "\nB: " + pair.pathB() + with +
                                  "\nNo difference: 2 tracks, 5 packets, log not compared "
                                  "(--logs)\n");
    EXPECT_THAT(result.err, IsEmpty());
}

TEST(Compare, ShowsTheFirstDifferenceOnOneLineAndSumsUpEachTrack) {
    const Pair pair(original(), withBuffer(1, "hex", "020304"));
    const ProcessResult result = pair.run({"--color", "never"});
    EXPECT_EQ(result.exitCode, 5);
    EXPECT_THAT(result.out,
                testing::EndsWith(
                        "First difference: track 0, packet 1, at 0.080000 s: size 2 in A, 3 in B\n"
                        "Track  MIME type  Packets in A  in B  Only in A  Only in B  First that "
                        "differs\n"
                        "    0  video/avc             3     3          1          1               "
                        "    1\n"
                        "    1  audio/raw             2     2          0          0               "
                        "    -\n"));
}

TEST(Compare, FindsTimesSyncFlagsSizesAndBytesOfPackets) {
    EXPECT_THAT(Pair(original(), withBuffer(1, "time_us", 90000)).differences(),
                ElementsAre("track 0, packet 1, at 0.080000 s: time 0.080000 s in A, 0.090000 s in "
                            "B"));
    EXPECT_THAT(Pair(original(), withBuffer(1, "sync", 1)).differences(),
                ElementsAre("track 0, packet 1, at 0.080000 s: sync no in A, yes in B"));
    EXPECT_THAT(Pair(original(), withBuffer(1, "hex", "02")).differences(),
                ElementsAre("track 0, packet 1, at 0.080000 s: size 2 in A, 1 in B"));
    EXPECT_THAT(Pair(original(), withBuffer(1, "hex", "0204")).differences(),
                ElementsAre("track 0, packet 1, at 0.080000 s: digest of the bytes "
                            "08395507b4f137f2 in A, 08395007b4f12f73 in B"));
}

TEST(Compare, FindsPacketsThatOneSideLacks) {
    json fewer = original();
    fewer["tracks"][0]["buffers"].erase(2);
    EXPECT_THAT(Pair(original(), fewer).differences(),
                ElementsAre("track 0, packet 2, at 0.040000 s: only in A"));
    const json document = Pair(fewer, original()).document(5);
    EXPECT_EQ(document["differences"][0]["text"], "track 0, packet 2, at 0.040000 s: only in B");
    EXPECT_EQ(document["differences"][0]["a"], nullptr);
    EXPECT_EQ(document["differences"][0]["b"], json({{"time_us", 40000},
                                                     {"sync", false},
                                                     {"size", 1},
                                                     {"digest", "af63b94c8601b113"},
                                                     {"entries", ""}}));
    EXPECT_EQ(document["tracks"][0], json({{"track", 0},
                                           {"mime", "video/avc"},
                                           {"packets", {{"a", 2}, {"b", 3}}},
                                           {"only_in", {{"a", 0}, {"b", 1}}},
                                           {"first_difference", 2}}));
}

TEST(Compare, ShowsPacketsOfTheSmallestTimeFirst) {
    json other = withBuffer(1, "hex", "ff");
    other["tracks"][1]["buffers"][1]["sync"] = 0;
    const auto differences = Pair(original(), other).differences();
    ASSERT_EQ(differences.size(), 2U);
    EXPECT_THAT(differences[0], HasSubstr("track 1, packet 1, at 0.060000 s"));
    EXPECT_THAT(differences[1], HasSubstr("track 0, packet 1, at 0.080000 s"));
    EXPECT_THAT(Pair(original(), other).run().out, HasSubstr("\nThen: track 0, packet 1"));
}

TEST(Compare, FindsContainersAndFormatsThatDiffer) {
    json other = original();
    other["container"]["durationUs"] = 130000;
    other["tracks"][0]["format"]["width"] = 128;
    other["tracks"][0]["format"]["esds"] = "0304";
    EXPECT_THAT(Pair(original(), other).differences(),
                ElementsAre("the container: duration 0.120000 s in A, 0.130000 s in B",
                            "track 0: width 64 in A, 128 in B",
                            "track 0: esds nothing in A, 0304 in B"));
}

TEST(Compare, FindsTracksThatOneSideLacks) {
    EXPECT_THAT(Pair(original(), fakeFile({fakeVideo()})).differences(),
                ElementsAre("the container: track count 2 in A, 1 in B", "track 1: only in A"));
    EXPECT_THAT(Pair(fakeFile({fakeVideo()}), original()).differences(),
                ElementsAre("the container: track count 1 in A, 2 in B", "track 1: only in B"));
}

TEST(Compare, FindsEndsThatDiffer) {
    json failing = original();
    failing["tracks"][1]["end"] = -10007;
    EXPECT_THAT(Pair(original(), failing).differences(),
                ElementsAre("the end of track 1: end of stream in A, \"AMEDIA_ERROR_IO (-10007)\" "
                            "in B"));
    EXPECT_EQ(Pair(failing, failing).run().exitCode, 2);
    json dying = original();
    dying["tracks"][1]["end"] = "abort";
    const Pair pair(dying, original());
    const auto differences = pair.differences();
    EXPECT_EQ(differences.back(),
              "the end of playing: \"the extractor died in read: Aborted (SIGABRT)\" in A, comes "
              "to its end in B");
    EXPECT_THAT(pair.run().err, HasSubstr("error: A (" + pair.pathA() + "): the extractor died"));
}

TEST(Compare, OfFilesThatDieInTheSameWayHasTheCodeOfTheDeath) {
    json dying = original();
    dying["tracks"][1]["end"] = "abort";
    EXPECT_EQ(Pair(dying, dying).document(4)["same"], true);
}

TEST(Compare, EndsAListThatNeverEnds) {
    json endless = fakeFile({fakeVideo()});
    endless["tracks"][0]["repeat"] = true;
    endless["tracks"][0]["buffers"][0]["hex"] = std::string(2000, 'a');
    const json document = Pair(endless, original()).document(5);
    EXPECT_EQ(document["errors"][0],
              json({{"exit_code", 4},
                    {"message",
                     "the extractor never ends: it has returned many times the bytes of the file"},
                    {"side", "a"}}));
}

TEST(Compare, AFileThatOnlyOneSideAcceptsIsADifference) {
    const json other = {{"fake", false}};
    EXPECT_THAT(Pair(original(), other).differences(),
                ElementsAre("opening: taken in A, \"not recognised by the Fake Extractor\" in B"));
    const Pair neither(other, other);
    const ProcessResult result = neither.run();
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.out, HasSubstr("No difference: neither is taken\n"));
}

TEST(Compare, FailsForAMissingFile) {
    const FakePlugin plugin;
    const std::vector<std::string> arguments = {"compare", plugin.file(original()),
                                                plugin.folder().path("missing")};
    const ProcessResult result = FakePlugin::run(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_THAT(result.err, HasSubstr("missing): cannot open: No such file or directory"));
    auto asJson = arguments;
    asJson.push_back("--json");
    const json document = json::parse(FakePlugin::run(asJson).out);
    EXPECT_EQ(document["same"], nullptr);
    EXPECT_EQ(document["exit_code"], 2);
    EXPECT_EQ(document["errors"][0]["side"], "b");
    EXPECT_THAT(document["differences"], IsEmpty());
}

TEST(Compare, WhereInABufferItsBytesBeginIsNoDifference) {
    EXPECT_EQ(Pair(original(), withBuffer(1, "offset", 3)).document(0)["same"], true);
}

TEST(Compare, ReadsTheLogOnlyOnRequest) {
    json other = original();
    other["tracks"][0]["buffers"][0]["log"] = "something else";
    const Pair pair(original(), other);
    EXPECT_EQ(pair.document(0)["a"]["log_lines"], nullptr);
    const json document = pair.document(5, {"--logs"});
    ASSERT_EQ(document["differences"].size(), 1U);
    const json& difference = document["differences"][0];
    EXPECT_EQ(difference["kind"], "log");
    EXPECT_THAT(
            difference["text"].get<std::string>(),
            HasSubstr(
                    ", in stop of track 0 (A), read of track 0 (B): \"I FakeExtractor: stop track "
                    "0\" in A, \"I FakeExtractor: something else\" in B"));
    EXPECT_EQ(document["b"]["log_lines"], document["a"]["log_lines"].get<int>() + 1);
}

TEST(Compare, FindsLogLinesThatOneSideLacks) {
    json dying = original();
    dying["tracks"][1]["end"] = "abort";
    EXPECT_THAT(
            Pair(original(), dying).differences({"--logs"}).back(),
            HasSubstr(", in stop of track 0: \"I FakeExtractor: stop track 0\" in A, no further "
                      "line in B"));
}

TEST(Compare, ShowsLogLinesOnlyUpToTheRequestedNumber) {
    const Pair pair(original(), original());
    EXPECT_THAT(pair.run({"--logs"}).err, IsEmpty());
    EXPECT_THAT(pair.run({"--logs", "--log", "info"}).err, HasSubstr("] getTrack 0\n"));
    EXPECT_EQ(pair.run({"--log", "info"}).exitCode, 0);
}

TEST(Compare, OfTwoPluginsTakesOneFileAndLooksAtTheLog) {
    const FakePlugin plugin;
    const std::string file = plugin.file(original());
    const ProcessResult same =
            FakePlugin::run({"compare", file, "--plugin-b", testedBuild().fakePlugin});
    EXPECT_EQ(same.exitCode, 0);
    EXPECT_THAT(same.out, HasSubstr("No difference: 2 tracks, 5 packets, "));
    EXPECT_THAT(same.out, HasSubstr(" log lines\n"));
    const ProcessResult without =
            FakePlugin::run({"compare", file, "--plugin-b", testedBuild().fakePlugin, "--no-logs"});
    EXPECT_THAT(without.out, HasSubstr("log not compared"));
}

TEST(Compare, FailsForAPluginThatCannotBeLoaded) {
    const FakePlugin plugin;
    const std::string file = plugin.file(original());
    const ProcessResult result = FakePlugin::run({"compare", file, "--plugin-b", file});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("cannot load the plug-in"));
}

TEST(Compare, NeedsASecondFileOrPlugin) {
    const ProcessResult result = runProbe({"compare", "a.ogm"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("B, --plugin-b or --device is required"));
    EXPECT_THAT(result.err, Not(HasSubstr("a.ogm")));
}

TEST(Compare, FindsAnEntryThatItDoesNotKnow) {
    json other = original();
    other["tracks"][0]["format"]["anything"] = 7;
    EXPECT_THAT(Pair(original(), other).differences(),
                ElementsAre("track 0: anything nothing in A, int32(7) in B"));
    EXPECT_THAT(Pair(other, original()).differences(),
                ElementsAre("track 0: anything int32(7) in A, nothing in B"));
    other = original();
    other["container"]["thumbnail-time"] = 7;
    EXPECT_THAT(Pair(original(), other).differences(),
                ElementsAre("the container: thumbnail-time nothing in A, int32(7) in B"));
}

TEST(Compare, FindsAnotherThumbnailTime) {
    json a = original();
    json b = original();
    a["tracks"][0]["format"]["thumbnail-timeUs"] = 1;
    b["tracks"][0]["format"]["thumbnail-timeUs"] = 2;
    EXPECT_THAT(Pair(a, b).differences(),
                ElementsAre("track 0: thumbnail-timeUs int64(1) in A, int64(2) in B"));
}

TEST(Compare, FindsAnEntryOfABuffer) {
    const auto texts = Pair(original(), withBuffer(1, "entries", {{"anything", 7}})).differences();
    EXPECT_THAT(texts, ElementsAre("track 0, packet 1, at 0.080000 s: entries  in A, anything: "
                                   "int32(7) in B"));
}

TEST(Compare, FindsOneReadWhereReadsAreCompared) {
    json other = original();
    other["create"] = "read once";
    EXPECT_EQ(Pair(original(), other).document(0)["same"], true);
    const auto texts = Pair(original(), other).differences({"--reads"});
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_THAT(texts[0], testing::StartsWith("read "));
}

TEST(Compare, CountsTheReadsThatAreTheSame) {
    EXPECT_THAT(Pair(original(), original()).run({"--reads"}).out,
                HasSubstr("2 tracks, 5 packets, 2 reads, "));
}

TEST(Compare, FindsASeekThatLandsElsewhere) {
    json a = original();
    json b = original();
    a["landing"] = 0;
    b["landing"] = 1;
    EXPECT_EQ(Pair(original(), original()).document(0, {"--seeks", "3"})["same"], true);
    const json all = Pair(a, b).document(5, {"--seeks", "3"});
    ASSERT_EQ(all["differences"].size(), 1U);
    EXPECT_EQ(all["differences"][0]["kind"], "seek");
}

TEST(Compare, ReportsAShiftAsOneDifference) {
    json later = original();
    for (json& buffer : later["tracks"][1]["buffers"]) {
        buffer["time_us"] = buffer["time_us"].get<int64_t>() + 26122;
    }
    const json all = Pair(original(), later).document(5);
    ASSERT_EQ(all["differences"].size(), 1U);
    EXPECT_EQ(all["differences"][0]["text"],
              "track 1: B is 0.026122 s later than A from packet 0 on, and otherwise the same");
    EXPECT_EQ(all["differences"][0]["shift_us"], 26122);
}

}  // namespace
}  // namespace ogmprobe::test
