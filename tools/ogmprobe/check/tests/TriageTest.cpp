// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "ManyFiles.h"

/** The command with many files. */
namespace ogmprobe::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

using TriageTest = ManyFiles;

TEST_F(TriageTest, EachFileHasALineInTheOrderOfPathsAndReasonsAreCounted) {
    add("b.ogm", "abort");
    add("a.ogm");
    add("c.ogm");
    const auto result = check({"--jobs", "3"});
    EXPECT_EQ(result.exitCode, 7);
    EXPECT_EQ(result.out, path("a.ogm") + ": plays\n" + path("b.ogm") +
                                  ": does not play: extractor-ended\n" + path("c.ogm") +
                                  ": plays\n\n"
                                  "3 files: 2 play, 0 play with faults, 1 do not play\n"
                                  "  Files  Verdict        Reason\n"
                                  "      1  does not play  ends the extractor, or never lets it "
                                  "end\n");
    EXPECT_EQ(result.err, "");
}

TEST_F(TriageTest, FilesThatStallCostTheirTimeLimitSideBySide) {
    for (int i = 0; i < 4; ++i) {
        add("hang" + std::to_string(i) + ".ogm", "hang");
        add("good" + std::to_string(i) + ".ogm");
    }
    const auto began = std::chrono::steady_clock::now();
    const auto result = check({"--jobs", "4"});
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(20));
    EXPECT_THAT(result.out, HasSubstr("8 files: 4 play, 0 play with faults, 4 do not play"));
}

TEST_F(TriageTest, NoMischiefOfOneFileTouchesAnother) {
    std::vector<std::string> mischiefs = {"crash",          "overflow", "overrun", "kill",
                                          "exit",           "throw",    "close",   "scribble",
                                          "scribble noise", "compute"};
    if (canFilterSystemCalls()) {
        mischiefs.insert(mischiefs.end(), {"execute", "write"});
    }
    for (const std::string& mischief : mischiefs) {
        add(mischief + ".ogm", mischief);
    }
    add("good.ogm");
    const auto result = check({"--json"});
    const json document = json::parse(result.out);
    EXPECT_EQ(document["files"].size(), mischiefs.size() + 1);
    for (const auto& file : document["files"]) {
        const auto name = file["path"].get<std::string>();
        if (name.ends_with("good.ogm")) {
            EXPECT_EQ(file["verdict"], "plays");
        } else if (!name.ends_with("overrun.ogm")) {
            // Only a sanitizer notices an access of one byte too far.
            EXPECT_EQ(file["verdict"], "does not play") << name;
        }
    }
}

TEST_F(TriageTest, AnEarlierRunIsContinued) {
    add("a.ogm");
    add("b.ogm");
    check({"--state", path("state")});
    EXPECT_EQ(linesOf("state"), 3U);
    add("b.ogm", "abort");
    add("c.ogm");
    const auto result = check({"--state", path("state")});
    EXPECT_EQ(linesOf("state"), 5U);
    EXPECT_THAT(result.out, HasSubstr("a.ogm: plays\n"));
    EXPECT_THAT(result.out, HasSubstr("b.ogm: does not play"));
    EXPECT_THAT(result.out, HasSubstr("3 files: 2 play"));
    EXPECT_EQ(result.out, check({"--state", path("state")}).out);
    EXPECT_EQ(linesOf("state"), 5U);
}

TEST_F(TriageTest, ARunThatIsKilledLosesOnlyTheFilesUnderWay) {
    constexpr int kFiles = 30;
    for (int i = 0; i < kFiles; ++i) {
        add(std::to_string(100 + i) + ".ogm", i % 3 == 0 ? "nap" : "");
    }
    ProcessSetup setup;
    setup.meanwhile = [&](pid_t process) {
        while (!fs::exists(path("state")) || linesOf("state") < 5) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        kill(process, SIGKILL);
    };
    const auto killed = FakePlugin::run(
            {"check", folder(), "--jobs", "2", "--timeout", "5", "--state", path("state")}, setup);
    EXPECT_EQ(killed.exitCode, -SIGKILL);
    const size_t known = linesOf("state") - 1;
    EXPECT_GE(known, 4U);
    EXPECT_LT(known, static_cast<size_t>(kFiles));
    const auto result =
            FakePlugin::run({"check", folder(), "--timeout", "5", "--state", path("state")});
    EXPECT_EQ(result.exitCode, 0) << result.out;
    EXPECT_THAT(result.out, HasSubstr("30 files: 30 play"));
    EXPECT_LE(linesOf("state"), static_cast<size_t>(kFiles) + 2);
}

TEST_F(TriageTest, AStateOfAnotherListOfCodecsIsRefused) {
    add("a.ogm");
    check({"--state", path("state")});
    const std::string list = mPlugin.folder().write(
            "x.xml",
            "<MediaCodecs><Decoders><MediaCodec name=\"a\" type=\"b\"/></Decoders>"
            "</MediaCodecs>");
    const auto result = check({"--state", path("state"), "--codecs", list});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.err, HasSubstr("is of another list of codecs"));
}

TEST_F(TriageTest, ProgressShowsWhatIsDoneAndWhatIsLeft) {
    if (!canOpenTerminal()) {
        GTEST_SKIP() << "there are no terminals here";
    }
    for (int i = 0; i < 4; ++i) {
        add(std::to_string(i) + ".ogm", "nap");
    }
    ProcessSetup setup;
    setup.err = StandardStream::kTerminal;
    const auto result = FakePlugin::run({"check", folder(), "--jobs", "1"}, setup);
    EXPECT_THAT(result.err, HasSubstr(" of 4 files, "));
    EXPECT_THAT(result.err, HasSubstr(" left"));
    EXPECT_THAT(FakePlugin::run({"check", folder(), "--jobs", "1", "--quiet"}, setup).err,
                Not(HasSubstr(" of 4 files, ")));
}

TEST_F(TriageTest, ASocketAmongFilesIsAnErrorAndTheOthersAreChecked) {
    const std::string good = add("a.ogm");
    const std::string socketPath = path("socket");
    const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address = {AF_UNIX, {}};
    ASSERT_LT(socketPath.size(), sizeof(address.sun_path));
    std::copy(socketPath.begin(), socketPath.end(), address.sun_path);
    ASSERT_EQ(bind(number, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    close(number);
    const auto result = FakePlugin::run({"check", socketPath, good});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.out, HasSubstr(socketPath + ": unknown: cannot-read\n"));
    EXPECT_THAT(result.out, HasSubstr("a.ogm: plays\n"));
    EXPECT_THAT(result.err, HasSubstr(socketPath + ": cannot open: "));
}

TEST_F(TriageTest, NamesThatCannotBeReadAreErrorsAndTheOthersAreChecked) {
    const std::string good = add("a.ogm");
    const auto result = FakePlugin::run({"check", good, "/nowhere/b.ogm", "/nowhere/c.ogm"});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.out, HasSubstr("a.ogm: plays\n"));
    EXPECT_THAT(result.out, HasSubstr("3 files: 1 play, 0 play with faults, 0 do not play, 2 could "
                                      "not be checked"));
    EXPECT_THAT(result.err, EndsWith("/nowhere/c.ogm: cannot open: No such file or directory\n"));
}

}  // namespace
}  // namespace ogmprobe::test
