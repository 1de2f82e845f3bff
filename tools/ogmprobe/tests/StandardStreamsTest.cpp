// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* kBold = "\033[1m";
constexpr const char* kRed = "\033[31m";

class StandardStreamsTest : public testing::Test {
  protected:
    ProcessResult info(const ProcessSetup& setup, std::vector<std::string> options = {}) {
        std::vector<std::string> arguments = {"info", mPlugin.file(fakeFile({fakeVideo()}))};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return FakePlugin::run(arguments, setup);
    }

    FakePlugin mPlugin;
};

TEST_F(StandardStreamsTest, EndQuietlyWhenNobodyReadsTheOutput) {
    ProcessSetup setup;
    setup.out = StandardStream::kClosedPipe;
    for (const ProcessResult& result : {info(setup), runProbe({"--help"}, setup)}) {
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.err, "");
    }
}

TEST_F(StandardStreamsTest, EndAnEndlessListWhenNobodyReads) {
    auto video = fakeVideo();
    video["repeat"] = true;
    ProcessSetup setup;
    setup.out = StandardStream::kClosedPipe;
    const ProcessResult result =
            FakePlugin::run({"packets", mPlugin.file(fakeFile({video}))}, setup);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
}

TEST_F(StandardStreamsTest, FailWithTwoWhenTheOutputCannotBeWritten) {
    ProcessSetup setup;
    setup.out = StandardStream::kFullDevice;
    const ProcessResult result = info(setup);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("cannot write the output: No space left on device"));
}

TEST_F(StandardStreamsTest, KeepTheExitCodeWhenNobodyReadsTheMessages) {
    ProcessSetup setup;
    setup.err = StandardStream::kClosedPipe;
    EXPECT_EQ(FakePlugin::run({"info", mPlugin.folder().path("missing")}, setup).exitCode, 2);
}

TEST_F(StandardStreamsTest, KeepLogLinesAfterEarlierOutput) {
    auto video = fakeVideo();
    ProcessSetup setup;
    setup.joined = true;
    const ProcessResult result =
            FakePlugin::run({"--log", "info", "packets", mPlugin.file(fakeFile({video}))}, setup);
    const size_t heading = result.out.find("until next");
    const size_t start = result.out.find("start track 0");
    const size_t packet = result.out.find("0.000000");
    const size_t stop = result.out.find("stop track 0");
    EXPECT_NE(stop, std::string::npos);
    EXPECT_LT(heading, start);
    EXPECT_LT(start, packet);
    EXPECT_LT(packet, stop);
}

TEST_F(StandardStreamsTest, AreColouredOnATerminalOnly) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    ProcessSetup terminal;
    terminal.out = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", ""}};
    EXPECT_THAT(info(terminal).out, HasSubstr(kBold));
    EXPECT_THAT(info({}).out, Not(HasSubstr(kBold)));
}

TEST_F(StandardStreamsTest, ArePlainOnATerminalWithNoColor) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    ProcessSetup terminal;
    terminal.out = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", "1"}};
    EXPECT_THAT(info(terminal).out, Not(HasSubstr(kBold)));
}

TEST_F(StandardStreamsTest, FollowTheOptionBeforeNoColorAndTheTerminal) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    ProcessSetup pipe;
    pipe.environment = {{"NO_COLOR", "1"}};
    EXPECT_THAT(info(pipe, {"--color", "always"}).out, HasSubstr(kBold));
    ProcessSetup terminal;
    terminal.out = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", ""}};
    EXPECT_THAT(info(terminal, {"--color", "never"}).out, Not(HasSubstr(kBold)));
}

TEST_F(StandardStreamsTest, HaveColouredMessagesOnATerminal) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    ProcessSetup terminal;
    terminal.err = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", ""}};
    const ProcessResult result =
            FakePlugin::run({"info", mPlugin.folder().path("missing")}, terminal);
    EXPECT_THAT(result.err, HasSubstr(kRed));
}

class ProgressTest : public testing::Test {
  protected:
    /** With a plug-in that takes longer than the progress line waits. */
    ProcessResult run(const std::vector<std::string>& command, StandardStream err) {
        auto video = fakeVideo();
        video["end"] = "nap";
        auto script = fakeFile({video});
        script["create"] = command.front() == "info" ? "nap" : "";
        std::vector<std::string> arguments = command;
        arguments.push_back(mPlugin.file(script));
        ProcessSetup setup;
        setup.err = err;
        return FakePlugin::run(arguments, setup);
    }

    FakePlugin mPlugin;
};

TEST_F(ProgressTest, IsShownOnATerminalByEachCommand) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    for (const std::vector<std::string>& command :
         {std::vector<std::string>{"info"},
          {"packets"},
          {"seektest", "--steps", "1"},
          {"explain"},
          {"compare", mPlugin.file(fakeFile({fakeVideo()}), "b.fake")},
          {"extract", "--force", "-o", mPlugin.folder().path().string()},
          {"timeline", "--force", "-o", mPlugin.folder().path("out.svg")}}) {
        const ProcessResult result = run(command, StandardStream::kTerminal);
        const char* doing = command.front() == "info" ? "opening" : "reading";
        EXPECT_THAT(result.err, HasSubstr(std::string(" %  ") + doing + " a.fake: "))
                << command.front();
        EXPECT_THAT(result.err, testing::EndsWith("\r\033[K")) << command.front();
    }
}

TEST_F(ProgressTest, IsNotShownWhereThereIsNoTerminal) {
    EXPECT_EQ(run({"packets"}, StandardStream::kCaptured).err, "");
}

TEST_F(ProgressTest, IsNotShownToThoseWhoWantQuiet) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    EXPECT_EQ(run({"--quiet", "packets"}, StandardStream::kTerminal).err, "");
}

TEST_F(ProgressTest, IsNotShownForLessThanHalfASecond) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "no pseudo-terminal here";
    }
    ProcessSetup terminal;
    terminal.err = StandardStream::kTerminal;
    EXPECT_EQ(FakePlugin::run({"info", mPlugin.file(fakeFile({fakeVideo()}))}, terminal).err, "");
}

}  // namespace
}  // namespace ogmprobe::test
