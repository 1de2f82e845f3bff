// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <sstream>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using nlohmann::json;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

json videoThatEndsWith(const std::string& mischief) {
    auto video = fakeVideo();
    video["end"] = mischief;
    return fakeFile({video});
}

ProcessResult packetsOf(const json& script, const std::vector<std::string>& options = {}) {
    const FakePlugin plugin;
    std::vector<std::string> arguments = {"packets", plugin.file(script)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return FakePlugin::run(arguments);
}

ProcessResult packetsEndingWith(const std::string& mischief) {
    return packetsOf(videoThatEndsWith(mischief));
}

void expectDeath(const ProcessResult& result, const std::string& message) {
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("a.fake: the extractor " + message + "\n"));
}

TEST(Death, OfACrashIsReportedWithTheSignalAndTheCall) {
    expectDeath(packetsEndingWith("crash"), "died in read: Segmentation fault (SIGSEGV)");
    expectDeath(packetsEndingWith("overflow"), "died in read: Segmentation fault (SIGSEGV)");
    expectDeath(packetsEndingWith("abort"), "died in read: Aborted (SIGABRT)");
}

TEST(Death, OfAnAssertionIsReportedWithItsTextOnly) {
    const ProcessResult result = packetsEndingWith("assert");
    expectDeath(result, "died in read: CHECK(fake) failed.");
    if (!testedBuild().isSanitized()) {
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
}

TEST(Death, ByASanitizerKeepsItsReport) {
    if (testedBuild().sanitizer != "address-undefined") {
        GTEST_SKIP() << "there is no address sanitizer in this build";
    }
    const ProcessResult result = packetsEndingWith("overrun");
    expectDeath(result, "died in read: it ended the process with exit code 1");
    EXPECT_THAT(result.err, HasSubstr("AddressSanitizer: heap-buffer-overflow"));
}

TEST(Death, OfAnExceptionThatLeavesThePluginIsReportedWithItsText) {
    expectDeath(packetsEndingWith("throw"), "died in read: a fake exception");
}

TEST(Death, ByASignalThatCannotBeCaughtIsReported) {
    expectDeath(packetsEndingWith("kill"), "died in read: Killed (SIGKILL)");
}

TEST(Death, ByAnExitIsReportedWithItsCode) {
    if (testedBuild().isSanitized()) {
        GTEST_SKIP() << "the search for leaks at the exit makes forbidden system calls";
    }
    expectDeath(packetsEndingWith("exit"), "died in read: it ended the process with exit code 7");
}

TEST(Death, OfTakingAllMemoryIsReportedWithTheLimit) {
    if (testedBuild().isSanitized()) {
        GTEST_SKIP() << "there is no limit beside a sanitizer's shadow memory";
    }
    if (testedBuild().isEmulated()) {
        GTEST_SKIP() << "an emulator takes no limit for what it runs";
    }
    expectDeath(packetsEndingWith("allocate"),
                "died in read: out of memory (the limit is 1024 MiB)");
}

TEST(Death, OfWritingAllOverMemoryIsNoticed) {
    for (const char* mischief : {"scribble", "scribble noise", "scribble and hang"}) {
        // With the log there is something left to read when the damage is done.
        const ProcessResult result = packetsOf(videoThatEndsWith(mischief), {"--log", "info"});
        EXPECT_EQ(result.exitCode, 4) << mischief;
        // The extractor continues until the damage is noticed, so any call may be reported.
        EXPECT_THAT(result.err, ContainsRegex("a\\.fake: the extractor died( in [A-Za-z' ]+)?: it "
                                              "overwrote memory that is not its own"))
                << mischief;
    }
}

TEST(Death, LeavesWhatWasReadOnStandardOutput) {
    const ProcessResult result = packetsEndingWith("crash");
    // The third buffer waits for its successor, during the read of which the extractor dies.
    EXPECT_THAT(result.out, HasSubstr("08395507b4f137f2\n")) << "the second buffer's digest";
    EXPECT_THAT(result.out, Not(HasSubstr("af63b94c8601b113")));
}

TEST(Death, LeavesJsonLinesWhole) {
    std::istringstream lines(packetsOf(videoThatEndsWith("crash"), {"--json"}).out);
    std::vector<json> documents;
    for (std::string line; std::getline(lines, line);) {
        documents.push_back(json::parse(line));
    }
    ASSERT_EQ(documents.size(), 4U);
    EXPECT_EQ(documents[2]["type"], "buffer");
    EXPECT_EQ(documents[3]["type"], "end");
    EXPECT_EQ(documents[3]["exit_code"], 4);
    EXPECT_THAT(documents[3]["errors"][0]["message"].get<std::string>(), HasSubstr("died in read"));
}

TEST(Death, WhileCreatingNamesThatCall) {
    auto script = fakeFile({});
    script["create"] = "crash";
    expectDeath(packetsOf(script), "died in create: Segmentation fault (SIGSEGV)");
}

TEST(Death, WhileSniffingNamesThatCall) {
    auto script = fakeFile({});
    script["sniff"] = "assert";
    expectDeath(packetsOf(script), "died in sniff: CHECK(fake) failed.");
}

TEST(Death, OfAKeptBufferIsFoundWhenTheTrackGoes) {
    auto video = fakeVideo();
    video["keep"] = true;
    const ProcessResult result = packetsOf(fakeFile({video}));
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("died in the release of its buffers"));
}

TEST(Death, OfOneFileIsNoHindranceToTheNext) {
    const FakePlugin plugin;
    auto bad = fakeFile({});
    bad["create"] = "crash";
    const ProcessResult result =
            FakePlugin::run({"info", plugin.file(fakeFile({fakeVideo()}), "good.fake"),
                             plugin.file(bad, "bad.fake"), plugin.folder().path("missing"),
                             plugin.file(fakeFile({fakeVideo()}), "last.fake")});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.out, HasSubstr("good.fake: video/fake"));
    EXPECT_THAT(result.err, HasSubstr("bad.fake: the extractor died"));
    EXPECT_THAT(result.out, HasSubstr("last.fake: video/fake"));
}

TEST(Death, KeepsWhatInfoFoundInTheFile) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["getFormat"] = "crash";
    const ProcessResult result = FakePlugin::run(
            {"info", "--json", plugin.file(fakeFile({fakeAudio(), video, fakeVideo()}))});
    EXPECT_EQ(result.exitCode, 4);
    const json document = json::parse(result.out);
    EXPECT_EQ(document["errors"], json::array());
    const json& file = document["files"][0];
    EXPECT_EQ(file["exit_code"], 4);
    EXPECT_EQ(file["container"]["mime"], "video/fake");
    ASSERT_EQ(file["tracks"].size(), 1U);
    EXPECT_EQ(file["tracks"][0]["mime"], "audio/raw");
    EXPECT_THAT(file["errors"][0]["message"].get<std::string>(),
                HasSubstr("died in getTrackMetaData"));
}

TEST(Death, KeepsTheSeeksOfASeekTest) {
    const FakePlugin plugin;
    auto video = fakeVideo();
    video["end"] = "crash";
    const ProcessResult result =
            FakePlugin::run({"seektest", "--json", "--steps", "3", plugin.file(fakeFile({video}))});
    EXPECT_EQ(result.exitCode, 4);
    const json document = json::parse(result.out);
    EXPECT_EQ(document["seeks"].size(), 3U) << "the last one finds no buffer, and death";
    EXPECT_EQ(document["errors"][0]["exit_code"], 4);
}

// Short, but far longer than a healthy call takes under a sanitizer.
constexpr const char* kShort = "0.5";

TEST(Standstill, IsReportedAsStuck) {
    for (const char* mischief : {"hang", "compute", "close"}) {
        expectDeath(packetsOf(videoThatEndsWith(mischief), {"--timeout", kShort}),
                    "is stuck in read: no read of the file and no buffer was finished in 0.5 s; "
                    "--timeout allows more");
    }
}

TEST(Standstill, WhileCreatingIsReportedAsStuck) {
    auto script = fakeFile({});
    script["create"] = "hang";
    expectDeath(packetsOf(script, {"--timeout", kShort}),
                "is stuck in create: no read of the file and no buffer was finished in 0.5 s; "
                "--timeout allows more");
}

TEST(ReadingWithoutEnd, IsReportedAsStuckWhenTheSameReadsAreRepeated) {
    const ProcessResult result = packetsOf(videoThatEndsWith("spin"), {"--timeout", "0.5"});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err,
                ContainsRegex("a\\.fake: the extractor is stuck in read: it repeats one "
                              "read of the file without end, [0-9]+ times so far, at "
                              "offset 0"));
}

TEST(ReadingWithoutEnd, IsNotCalledStuckWhereItMayEnd) {
    const ProcessResult result = packetsOf(videoThatEndsWith("wander"), {"--timeout", "0.1"});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, ContainsRegex("a\\.fake: the extractor has not finished in read: "
                                          "still searching at [0-9]+ B of [0-9]+ B after [0-9]+ s; "
                                          "--timeout allows more"));
    EXPECT_THAT(result.err, Not(HasSubstr("stuck")));
}

std::string debugLog() {
    const FakePlugin plugin;
    return FakePlugin::run({"--log", "debug", "info", plugin.file(fakeFile({}))}).err;
}

TEST(MissingConfinement, IsReported) {
    if (canFilterSystemCalls()) {
        GTEST_SKIP() << "system calls can be filtered here";
    }
    EXPECT_THAT(debugLog(), HasSubstr("system calls are not filtered: "));
}

class Confinement : public testing::Test {
  protected:
    void SetUp() override {
        if (!canFilterSystemCalls()) {
            GTEST_SKIP() << "system calls cannot be filtered here";
        }
    }
};

TEST_F(Confinement, IsThere) {
    EXPECT_THAT(debugLog(), Not(HasSubstr("system calls are not filtered")));
}

TEST_F(Confinement, ForbidsTheNetwork) {
    expectDeath(packetsEndingWith("socket"), "made a forbidden system call in read: socket");
}

TEST_F(Confinement, ForbidsWritingFiles) {
    expectDeath(packetsEndingWith("write"), "made a forbidden system call in read: openat");
}

TEST_F(Confinement, ForbidsOtherPrograms) {
    expectDeath(packetsEndingWith("execute"), "made a forbidden system call in read: execve");
}

TEST_F(Confinement, IsLiftedInProcess) {
    EXPECT_EQ(packetsOf(videoThatEndsWith("write"), {"--in-process"}).exitCode, 0);
}

}  // namespace
}  // namespace ogmprobe::test
