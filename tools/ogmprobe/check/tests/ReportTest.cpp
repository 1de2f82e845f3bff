// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "ManyFiles.h"

/** The page about many files, and the timelines that it links to. */
namespace ogmprobe::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

using ReportTest = ManyFiles;

TEST_F(ReportTest, ThePageLinksToTimelinesThatWereDrawn) {
    add("good.ogm");
    json video = fakeVideo();
    video["buffers"][0]["time_us"] = -1;
    mPlugin.file(fakeFile({video}), "odd <b>.ogm");
    const auto result = check({"--html", path("page.html"), "--timelines", path("drawings")});
    EXPECT_EQ(result.exitCode, 6) << result.err;
    const std::string page = mPlugin.folder().read("page.html");
    EXPECT_THAT(page, HasSubstr("<a href=\"drawings/00001-odd__b_.html\">"));
    EXPECT_THAT(page, Not(HasSubstr("odd <b>")));
    EXPECT_TRUE(fs::exists(path("drawings/00001-odd__b_.html")));
    EXPECT_FALSE(fs::exists(path("drawings/00002-good.html")));
}

TEST_F(ReportTest, AnOldTimelineIsNotLinkedWhereTheNewOneCannotBeDrawn) {
    json video = fakeVideo();
    video["buffers"][0]["time_us"] = -1;
    mPlugin.file(fakeFile({video}), "odd.ogm");
    fs::create_directories(path("drawings/00001-odd.html.part/in the way"));
    mPlugin.folder().write("drawings/00001-odd.html", "old");
    for (const char* force : {"", "--force"}) {
        std::vector<std::string> options = {"--html", path("page.html"), "--timelines",
                                            path("drawings"), "--json"};
        if (*force != '\0') {
            options.emplace_back(force);
        }
        const auto result = check(options);
        const std::string failure =
                "00001-odd.html" + std::string(*force == '\0' ? " exists; --force overwrites it"
                                                              : ".part: File exists");
        EXPECT_EQ(result.exitCode, 6);
        EXPECT_THAT(result.err, HasSubstr("no timeline of " + path("odd.ogm") + ": "));
        EXPECT_THAT(result.err, EndsWith(failure + "\n"));
        const json document = json::parse(result.out);
        ASSERT_EQ(document["errors"].size(), 1U);
        EXPECT_THAT(document["errors"][0]["message"].get<std::string>(), EndsWith(failure));
        const std::string page = mPlugin.folder().read("page.html");
        EXPECT_THAT(page, Not(HasSubstr("<a href")));
        EXPECT_THAT(page, HasSubstr("not drawn: "));
        EXPECT_EQ(mPlugin.folder().read("drawings/00001-odd.html"), "old");
    }
}

TEST_F(ReportTest, AFolderForTimelinesThatCannotBeMadeIsReportedBeforeAnythingIsPlayed) {
    add("a.ogm");
    mPlugin.folder().write("taken", "");
    const auto result = check({"--timelines", path("taken")});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("a file has that name"));
}

TEST_F(ReportTest, ARunThatIsEndedWhileItDrawsLeavesNoPartsOfTimelines) {
    json video = fakeVideo();
    video["buffers"][0]["time_us"] = -1;
    video["end"] = "nap";
    for (const char* name : {"1.ogm", "2.ogm", "3.ogm", "4.ogm"}) {
        mPlugin.file(fakeFile({video}), name);
    }
    bool wasDrawing = false;
    ProcessSetup setup;
    setup.meanwhile = [&](pid_t process) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!wasDrawing && std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
            wasDrawing = fs::exists(path("drawings/00001-1.html.part"));
        }
        kill(process, SIGINT);
    };
    const auto result = FakePlugin::run(
            {"check", folder(), "--timeout", "5", "--jobs", "2", "--timelines", path("drawings")},
            setup);
    EXPECT_TRUE(wasDrawing);
    EXPECT_EQ(result.exitCode, -SIGINT);
    // The drawing processes end after the program.
    for (int i = 0; i < 1000 && !fs::is_empty(path("drawings")); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_TRUE(fs::is_empty(path("drawings")));
}

TEST_F(ReportTest, APageThatExistsIsOverwrittenByForceAlone) {
    add("a.ogm");
    mPlugin.folder().write("page.html", "mine");
    const auto refused = check({"--html", path("page.html")});
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(mPlugin.folder().read("page.html"), "mine");
    EXPECT_EQ(check({"--html", path("page.html"), "--force"}).exitCode, 0);
    EXPECT_THAT(mPlugin.folder().read("page.html"), HasSubstr("Will it play?"));
}

TEST_F(ReportTest, APageMustBeAPage) {
    const auto result = check({"--html", "page.txt"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("page.txt does not end in .html"));
}

TEST_F(ReportTest, APageThatCannotBeWrittenCostsNoSummary) {
    add("a.ogm");
    add("b.ogm");
    ProcessSetup setup;
    setup.fileSizeLimit = 100;
    const auto result = check({"--html", path("page.html")}, setup);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_THAT(result.out, HasSubstr("2 files: 2 play"));
    EXPECT_THAT(result.err, HasSubstr("page.html.part: "));
    EXPECT_FALSE(fs::exists(path("page.html")));
    EXPECT_FALSE(fs::exists(path("page.html.part")));
}

}  // namespace
}  // namespace ogmprobe::test
