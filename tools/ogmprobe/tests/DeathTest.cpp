// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using testing::HasSubstr;

// Short, but far longer than a healthy call takes under a sanitizer.
const std::vector<std::string> kImpatient = {"--timeout", "0.5"};

ProcessResult packetsOf(const nlohmann::json& script,
                        std::vector<std::string> arguments = kImpatient) {
    const FakePlugin plugin;
    arguments.insert(arguments.end(), {"packets", plugin.file(script)});
    return FakePlugin::run(arguments);
}

nlohmann::json videoThatEndsWith(const std::string& mischief) {
    auto video = fakeVideo();
    video["end"] = mischief;
    return fakeFile({video});
}

TEST(Death, OfACrashInReadIsToldWithTheCall) {
    const ProcessResult result = packetsOf(videoThatEndsWith("crash"));
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("a.fake: the extractor died in read: segmentation fault\n"));
}

TEST(Death, OfAnAbortIsTold) {
    const ProcessResult result = packetsOf(videoThatEndsWith("abort"));
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("the extractor died in read: abort\n"));
}

TEST(Death, OfAnAssertionIsToldWithItsText) {
    const ProcessResult result = packetsOf(videoThatEndsWith("assert"));
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("the extractor died in read: CHECK(fake) failed.\n"));
}

TEST(Death, LeavesWhatWasReadOnStandardOutput) {
    const ProcessResult result = packetsOf(videoThatEndsWith("crash"));
    // The third buffer waits for its successor, during the read of which the extractor dies.
    EXPECT_THAT(result.out, HasSubstr("08395507b4f137f2\n")) << "the second buffer's digest";
    EXPECT_THAT(result.out, testing::Not(HasSubstr("af63b94c8601b113")));
}

TEST(Death, WhileCreatingNamesThatCall) {
    auto script = fakeFile({});
    script["create"] = "crash";
    const ProcessResult result = packetsOf(script);
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("died in create"));
}

TEST(Death, WhileSniffingNamesThatCall) {
    auto script = fakeFile({});
    script["sniff"] = "assert";
    const ProcessResult result = packetsOf(script);
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("died in sniff"));
}

TEST(Death, OfAKeptBufferIsFoundWhenTheTrackGoes) {
    auto video = fakeVideo();
    video["keep"] = true;
    const ProcessResult result = packetsOf(fakeFile({video}));
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("died in the release of its buffers"));
}

TEST(Standstill, IsTakenForBeingStuck) {
    const ProcessResult result = packetsOf(videoThatEndsWith("hang"));
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("a.fake: the extractor is stuck in read: no read of the "
                                      "file and no buffer came to an end\n"));
}

TEST(Standstill, WhileCreatingIsTakenForBeingStuck) {
    auto script = fakeFile({});
    script["create"] = "hang";
    EXPECT_EQ(packetsOf(script).exitCode, 4);
}

TEST(ReadingWithoutEnd, IsTakenForBeingStuckAfterTenTimesTheLimit) {
    const ProcessResult result = packetsOf(videoThatEndsWith("spin"), {"--timeout", "0.1"});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.err, HasSubstr("stuck in read: it reads the file without end\n"));
}

TEST(Death, OfTheSecondFileKeepsTheFirst) {
    const FakePlugin plugin;
    auto script = fakeFile({});
    script["create"] = "crash";
    const ProcessResult result =
            FakePlugin::run({"info", plugin.file(fakeFile({fakeVideo()}), "good.fake"),
                             plugin.file(script, "bad.fake")});
    EXPECT_EQ(result.exitCode, 4);
    EXPECT_THAT(result.out, HasSubstr("good.fake: video/fake"));
    EXPECT_THAT(result.err, HasSubstr("bad.fake: the extractor died"));
}

}  // namespace
}  // namespace ogmprobe::test
