// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FakeFile.h"

namespace ogmprobe::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

TEST(Usage, ExitsWithOneOnAWrongCommandLine) {
    const ProcessResult result = runProbe({"frobnicate"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.out, IsEmpty());
    EXPECT_FALSE(result.err.empty());
}

TEST(Usage, ExitsWithZeroAfterHelpOnStandardOutput) {
    const ProcessResult result = runProbe({"packets", "--help"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("FNV-1a"));
    EXPECT_THAT(result.err, IsEmpty());
}

TEST(Usage, DocumentsEachExitCode) {
    const ProcessResult result = runProbe({"--help"});
    for (const char* code :
         {"0 done", "1 wrong usage", "2 a file", "3 the plug-in", "4 the ext", "5 what was"}) {
        EXPECT_THAT(result.out, HasSubstr(code));
    }
}

TEST(Usage, ExitsWithOneForATrackThatTheFileDoesNotHave) {
    const FakePlugin plugin;
    const ProcessResult result =
            FakePlugin::run({"packets", plugin.file(fakeFile({fakeVideo()})), "--track", "1"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("there is no track 1: the file has 1"));
}

TEST(Usage, ExitsWithTwoForAMissingFile) {
    const FakePlugin plugin;
    for (const char* command : {"info", "packets", "seektest"}) {
        const ProcessResult result = FakePlugin::run({command, plugin.folder().path("missing")});
        EXPECT_EQ(result.exitCode, 2) << command;
        EXPECT_THAT(result.err, HasSubstr("missing: cannot open: No such file or directory"));
    }
}

TEST(Usage, ExitsWithTwoForAPluginThatCannotBeLoaded) {
    const FakePlugin plugin;
    const std::string text = plugin.folder().write("no_library", "text");
    const ProcessResult result = runProbe({"--plugin", text, "info", text});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("cannot load the plug-in"));
}

TEST(Usage, ExitsWithThreeForAFileThatThePluginDoesNotClaim) {
    const FakePlugin plugin;
    const ProcessResult result =
            FakePlugin::run({"info", plugin.folder().write("a.txt", "no media")});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, HasSubstr("not recognised by the Fake Extractor"));
}

TEST(Usage, ExitsWithThreeForAFileThatThePluginClaimsButRefuses) {
    const FakePlugin plugin;
    auto script = fakeFile({});
    script["create"] = "null";
    const ProcessResult result = FakePlugin::run({"info", plugin.file(script)});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.err, HasSubstr("refused"));
}

TEST(Usage, GoesOnAfterABadFileAndExitsWithTheLargestCode) {
    const FakePlugin plugin;
    const ProcessResult result = FakePlugin::run(
            {"info", plugin.folder().write("a.txt", "no media"), plugin.folder().path("missing"),
             plugin.file(fakeFile({fakeVideo()}))});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.out, HasSubstr("a.fake: video/fake"));
}

}  // namespace
}  // namespace ogmprobe::test
