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

TEST(Usage, ExitsWithTwoForAFolderWithoutFiles) {
    const FakePlugin plugin;
    const std::string folder = plugin.folder().path().string();
    for (const auto& [command, message] :
         {std::pair{"compare", "Is a directory"},
          std::pair{"packets", "the folder has no file whose name ends in .ogm"},
          std::pair{"info", "the folder has no file whose name ends in .ogm"}}) {
        const ProcessResult result = FakePlugin::run({command, folder, folder});
        EXPECT_EQ(result.exitCode, 2) << command;
        EXPECT_THAT(result.err, HasSubstr(message));
    }
}

TEST(Usage, ExitsWithTwoForAPluginThatCannotBeLoaded) {
    const FakePlugin plugin;
    const std::string text = plugin.folder().write("no_library", "text");
    const ProcessResult result = runProbe({"--plugin", text, "info", text});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("cannot load the plug-in"));
}

TEST(Usage, ExitsWithTwoForAPluginThatTheFrameworkWouldRefuse) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo()}));
    for (const auto& [lacking, reason] :
         {std::pair{"version", "definition version 4"}, std::pair{"uuid", "no UUID"},
          std::pair{"name", "no name"}, std::pair{"letters", "no name"},
          std::pair{"types", "no list of types"}}) {
        ProcessSetup setup;
        setup.environment = {{"FAKE_EXTRACTOR_LACKS", lacking}};
        const ProcessResult result = FakePlugin::run({"info", file}, setup);
        EXPECT_EQ(result.exitCode, 2) << lacking;
        EXPECT_EQ(result.err, "ogmprobe: error: the loader refuses " + testedBuild().fakePlugin +
                                      ": " + reason + "\n");
    }
}

TEST(Usage, ExitsWithTwoForALibraryThatIsNoPlugin) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo()}));
    const std::string& path = testedBuild().otherLibrary;
    const ProcessResult result = runProbe({"--plugin", path, "info", file});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err,
              "ogmprobe: error: " + path + " is no plug-in: it lacks GETEXTRACTORDEF\n");
}

TEST(Usage, ExitsWithTwoWithoutAPluginBesideTheProgram) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo()}));
    const std::string program = plugin.folder().path("ogmprobe");
    std::filesystem::copy_file(testedBuild().program, program);
    const ProcessResult result = runProgram(program, {"info", file});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.err,
              "ogmprobe: error: there is no plug-in beside this program; name one with --plugin\n");
}

TEST(Usage, WarnsOfFormatsThatMakeClientsFail) {
    const FakePlugin plugin;
    const std::string videoLost =
            "track 0 has no picture size: clients lose the rest of its format";
    const std::string audioLost =
            "track 0 has no sample rate or channel count: clients lose the rest of its format";
    struct Case {
        nlohmann::json track;
        const char* key;
        nlohmann::json value;
        std::string warning;
    };
    for (const Case& expected : {
                 Case{fakeVideo(), "mime", nullptr, "track 0 has no MIME type: clients abort"},
                 Case{fakeVideo(), "width", nullptr, videoLost},
                 Case{fakeVideo(), "height", nullptr, videoLost},
                 Case{fakeVideo(), "width", 0, videoLost},
                 Case{fakeVideo(), "height", -1, videoLost},
                 Case{fakeVideo(), "height", 1, ""},
                 Case{fakeAudio(), "sample-rate", nullptr, audioLost},
                 Case{fakeAudio(), "sample-rate", 0, audioLost},
                 Case{fakeAudio(), "channel-count", nullptr, audioLost},
                 Case{fakeAudio(), "channel-count", -1, audioLost},
                 Case{fakeAudio(), "channel-count", 0, ""},
         }) {
        nlohmann::json track = expected.track;
        track["format"].erase(expected.key);
        if (!expected.value.is_null()) {
            track["format"][expected.key] = expected.value;
        }
        const std::string file = plugin.file(fakeFile({track}));
        EXPECT_EQ(FakePlugin::run({"info", file}).err,
                  expected.warning.empty()
                          ? ""
                          : "ogmprobe: warning: " + file + ": " + expected.warning + "\n")
                << expected.key << " " << expected.value;
    }
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
    EXPECT_THAT(result.err, HasSubstr("recognised, but refused by the Fake Extractor"));
}

TEST(Usage, ContinuesAfterABadFileAndExitsWithTheLargestCode) {
    const FakePlugin plugin;
    const ProcessResult result = FakePlugin::run(
            {"info", plugin.folder().write("a.txt", "no media"), plugin.folder().path("missing"),
             plugin.file(fakeFile({fakeVideo()}))});
    EXPECT_EQ(result.exitCode, 3);
    EXPECT_THAT(result.out, HasSubstr("a.fake: video/fake"));
}

TEST(Usage, TreatsAFileWithoutACommandAsInfo) {
    const FakePlugin plugin;
    const std::string file = plugin.file(fakeFile({fakeVideo()}));
    EXPECT_EQ(FakePlugin::run({file}).out, FakePlugin::run({"info", file}).out);
}

TEST(Usage, NamesTheNearestCommand) {
    const ProcessResult result = runProbe({"pakets", "film.ogm"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "ogmprobe: error: pakets is neither a command nor a file; did you mean packets?\n");
}

TEST(Usage, ShowsNamesInOneLineWhateverTheyHold) {
    const FakePlugin plugin;
    const std::string name = "a\n\033[31m\u202eb.fake";
    const std::string shown = "a\\n\\x1b[31m\\u{202e}b.fake";
    const std::string good = plugin.file(fakeFile({fakeVideo()}), name);
    EXPECT_THAT(FakePlugin::run({"info", good}).out, HasSubstr(shown + ": video/fake"));
    EXPECT_THAT(FakePlugin::run({"compare", good, good}).out, HasSubstr(shown));
    EXPECT_THAT(FakePlugin::run({"packets", good, good}).out, HasSubstr(shown));
    const std::string folder = plugin.folder().path("out");
    EXPECT_THAT(FakePlugin::run({"extract", good, "-o", folder}).out,
                HasSubstr("a\\n\\x1b[31m\\u{202e}b.track0.h264"));
    EXPECT_THAT(FakePlugin::run({"info", plugin.folder().path("no" + name)}).err,
                HasSubstr("no" + shown + ": cannot open"));
}

}  // namespace
}  // namespace ogmprobe::test
