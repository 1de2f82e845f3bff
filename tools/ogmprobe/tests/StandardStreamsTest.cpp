// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
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

TEST_F(StandardStreamsTest, EndInSilenceWhenNobodyReadsTheOutput) {
    ProcessSetup setup;
    setup.out = StandardStream::kClosedPipe;
    const ProcessResult result = info(setup);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, IsEmpty());
}

TEST_F(StandardStreamsTest, EndInSilenceWhenNobodyReadsTheHelp) {
    ProcessSetup setup;
    setup.out = StandardStream::kClosedPipe;
    const ProcessResult result = runProbe({"--help"}, setup);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.err, IsEmpty());
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

TEST_F(StandardStreamsTest, AreColouredOnATerminalOnly) {
    ProcessSetup terminal;
    terminal.out = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", ""}};
    EXPECT_THAT(info(terminal).out, HasSubstr(kBold));
    EXPECT_THAT(info({}).out, Not(HasSubstr(kBold)));
}

TEST_F(StandardStreamsTest, ArePlainOnATerminalWithNoColor) {
    ProcessSetup terminal;
    terminal.out = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", "1"}};
    EXPECT_THAT(info(terminal).out, Not(HasSubstr(kBold)));
}

TEST_F(StandardStreamsTest, FollowTheOptionBeforeNoColorAndTheTerminal) {
    ProcessSetup pipe;
    pipe.environment = {{"NO_COLOR", "1"}};
    EXPECT_THAT(info(pipe, {"--color", "always"}).out, HasSubstr(kBold));
    ProcessSetup terminal;
    terminal.out = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", ""}};
    EXPECT_THAT(info(terminal, {"--color", "never"}).out, Not(HasSubstr(kBold)));
}

TEST_F(StandardStreamsTest, HaveColouredMessagesOnATerminal) {
    ProcessSetup terminal;
    terminal.err = StandardStream::kTerminal;
    terminal.environment = {{"NO_COLOR", ""}};
    const ProcessResult result =
            FakePlugin::run({"info", mPlugin.folder().path("missing")}, terminal);
    EXPECT_THAT(result.err, HasSubstr(kRed));
}

}  // namespace
}  // namespace ogmprobe::test
