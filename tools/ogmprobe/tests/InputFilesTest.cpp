// SPDX-License-Identifier: Apache-2.0
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>
#include <fstream>

#include "FakeFile.h"
#include "Process.h"

namespace ogmprobe::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;

ProcessSetup fed(const json& script, const TemporaryFolder& spool) {
    ProcessSetup setup;
    setup.in = script.dump();
    setup.environment = {{"TMPDIR", spool.path().string()}};
    return setup;
}

TEST(StandardInput, IsAFileNamedByADash) {
    const TemporaryFolder spool;
    const ProcessResult result =
            FakePlugin::run({"info", "-"}, fed(fakeFile({fakeVideo()}), spool));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out,
                MatchesRegex("-: video/fake, [0-9]+ B, duration 0:00:00.120, 1 track\n.*"));
}

TEST(StandardInput, LeavesNoTemporaryFile) {
    const TemporaryFolder spool;
    FakePlugin::run({"info", "-"}, fed(fakeFile({}), spool));
    EXPECT_TRUE(fs::is_empty(spool.path()));
}

TEST(StandardInput, CanBeNamedTwice) {
    const TemporaryFolder spool;
    const ProcessResult result =
            FakePlugin::run({"info", "--json", "-", "-"}, fed(fakeFile({fakeVideo()}), spool));
    const json files = json::parse(result.out)["files"];
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0], files[1]);
    EXPECT_EQ(files[0]["tracks"].size(), 1U);
}

TEST(StandardInput, GivesItsNameToWhatIsExtracted) {
    const TemporaryFolder spool;
    const TemporaryFolder streams;
    const ProcessResult result = FakePlugin::run({"extract", "-", "-o", streams.path().string()},
                                                 fed(fakeFile({fakeVideo()}), spool));
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_TRUE(fs::exists(streams.path("stdin.track0.h264")));
}

TEST(StandardInput, NeedsRoomForATemporaryFile) {
    const TemporaryFolder spool;
    ProcessSetup setup = fed(fakeFile({}), spool);
    setup.in.resize(1 << 20, ' ');
    setup.fileSizeLimit = 65536;
    const ProcessResult result = FakePlugin::run({"info", "-"}, setup);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("-: cannot keep standard input in " + spool.path().string() +
                                      ": File too large"));
    EXPECT_TRUE(fs::is_empty(spool.path()));
}

TEST(Folder, MeansTheOgmFilesBelowItInTheOrderOfTheirNames) {
    const TemporaryFolder folder;
    fs::create_directory(folder.path() / "b");
    const std::string script = fakeFile({}).dump();
    folder.write("c.OGM", script);
    folder.write("b/x.ogm", script);
    folder.write("a.ogm", script);
    folder.write("readme.txt", script);
    const ProcessResult result = FakePlugin::run({"info", "--json", folder.path().string()});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    const json files = json::parse(result.out)["files"];
    ASSERT_EQ(files.size(), 3U);
    EXPECT_EQ(files[0]["path"], folder.path("a.ogm"));
    EXPECT_EQ(files[1]["path"], folder.path("b/x.ogm"));
    EXPECT_EQ(files[2]["path"], folder.path("c.OGM"));
}

TEST(Folder, WithoutOgmFilesIsAnErrorAndTheOthersContinue) {
    const TemporaryFolder folder;
    const FakePlugin plugin;
    const ProcessResult result = FakePlugin::run(
            {"info", "--json", folder.path().string(), plugin.file(fakeFile({fakeVideo()}))});
    EXPECT_EQ(result.exitCode, 2);
    const json files = json::parse(result.out)["files"];
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0]["errors"][0]["message"], "the folder has no file whose name ends in .ogm");
    EXPECT_THAT(files[1]["errors"], IsEmpty());
}

/** A folder so deep that no path reaches it: even root cannot read it. */
void makeUnreachable(const fs::path& folder) {
    const std::string name(250, 'd');
    int parent = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < PATH_MAX / 250 + 1; ++i) {
        ASSERT_EQ(mkdirat(parent, name.c_str(), 0700), 0);
        const int child = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(parent);
        parent = child;
    }
    close(parent);
}

TEST(Folder, ThatCannotBeListedIsAnErrorAndTheFilesBesideItContinue) {
    const TemporaryFolder folder;
    folder.write("a.ogm", fakeFile({fakeVideo()}).dump());
    makeUnreachable(folder.path());
    for (const char* command : {"info", "check"}) {
        const ProcessResult result = FakePlugin::run({command, "--json", folder.path().string()});
        EXPECT_EQ(result.exitCode, 2) << command;
        EXPECT_THAT(result.err, HasSubstr("cannot list " + folder.path("ddd"))) << command;
        EXPECT_THAT(result.err, HasSubstr(": File name too long\n")) << command;
        EXPECT_EQ(json::parse(result.out)["files"].size(), 2U) << command;
    }
    const ProcessResult result = FakePlugin::run({"packets", folder.path().string()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr(": File name too long\n"));
    EXPECT_THAT(result.out, HasSubstr("track "));
}

TEST(Folder, CannotBePlayed) {
    const TemporaryFolder folder;
    const ProcessResult result = FakePlugin::run({"packets", folder.path().string()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("the folder has no file whose name ends in .ogm"));
}

TEST(NamedPipe, IsReadIntoATemporaryFile) {
    const TemporaryFolder spool;
    const TemporaryFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    ProcessSetup setup;
    setup.environment = {{"TMPDIR", spool.path().string()}};
    setup.meanwhile = [&path](pid_t) { std::ofstream(path) << fakeFile({fakeVideo()}).dump(); };
    const ProcessResult result = FakePlugin::run({"info", path}, setup);
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("1 track\n"));
    EXPECT_TRUE(fs::is_empty(spool.path()));
}

}  // namespace
}  // namespace ogmprobe::test
