// SPDX-License-Identifier: Apache-2.0
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "FakeFile.h"
#include "UnpackedPage.h"

namespace ogmprobe::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/** Draws timelines of scripts for the fake plug-in, in the scripts' folder. */
class TimelineCommand : public testing::Test {
  protected:
    ProcessResult run(const json& script, const std::string& output,
                      const std::vector<std::string>& options = {}) const {
        return runOn(mPlugin.file(script), output, options);
    }
    ProcessResult runOn(const std::string& file, const std::string& output,
                        const std::vector<std::string>& options = {}) const {
        std::vector<std::string> arguments = {"timeline", file, "-o", path(output)};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return FakePlugin::run(arguments);
    }

    const TemporaryFolder& folder() const { return mPlugin.folder(); }
    std::string path(const std::string& name) const { return folder().path(name); }
    size_t fileCount() const {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder().path()), {}));
    }
    /** The data for the page's script. */
    timeline::test::UnpackedPage dataOf(const std::string& name) const {
        return timeline::test::UnpackedPage(folder().read(name));
    }

    const json mScript = fakeFile({fakeVideo(), fakeAudio()});

  private:
    FakePlugin mPlugin;
};

TEST_F(TimelineCommand, WritesAPageWithThePacketsOfAllTracks) {
    const ProcessResult result = run(mScript, "a.html");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "timeline of 2 tracks, 5 packets: " + path("a.html") + "\n");
    EXPECT_THAT(result.err, IsEmpty());
    EXPECT_THAT(folder().read("a.html"), StartsWith("<!doctype html>"));
    const auto page = dataOf("a.html");
    ASSERT_EQ(page.outline()["lanes"].size(), 2U);
    EXPECT_THAT(page.times(0), ElementsAre(0, 80000, 40000));
    EXPECT_THAT(page.sizes(0), ElementsAre(2, 2, 1));
    EXPECT_THAT(page.kinds(0), ElementsAre(7, 3, 3));
    EXPECT_THAT(page.times(1), ElementsAre(0, 60000));
    EXPECT_THAT(page.kinds(1), ElementsAre(7, 7));
}

TEST_F(TimelineCommand, WritesADrawing) {
    EXPECT_EQ(run(mScript, "a.svg").exitCode, 0);
    EXPECT_THAT(folder().read("a.svg"), StartsWith("<svg xmlns"));
    EXPECT_THAT(folder().read("a.svg"), HasSubstr("<title>Timeline of a.fake</title>"));
}

TEST_F(TimelineCommand, DrawsOnlyTheTimesAskedFor) {
    EXPECT_EQ(run(mScript, "a.html", {"--from", "0.03", "--to", "0.08"}).exitCode, 0);
    EXPECT_THAT(dataOf("a.html").times(0), ElementsAre(40000));
    EXPECT_THAT(dataOf("a.html").times(1), ElementsAre(60000));
}

TEST_F(TimelineCommand, IsTheSameEachTimeUnlessADateIsAskedFor) {
    run(mScript, "a.html");
    run(mScript, "b.html");
    EXPECT_EQ(folder().read("a.html"), folder().read("b.html"));
    EXPECT_THAT(folder().read("a.html"), HasSubstr("Made by ogmprobe "));
    run(mScript, "c.html", {"--date"});
    EXPECT_THAT(folder().read("c.html"), HasSubstr(" UTC by ogmprobe "));
}

TEST_F(TimelineCommand, DrawsTheTypesOfPictures) {
    auto video = fakeVideo();
    video["format"]["mime"] = "video/mp4v-es";
    video["buffers"] = {{{"time_us", 0}, {"sync", 1}, {"hex", "000001b610"}},
                        {{"time_us", 80000}, {"hex", "000001b650"}},
                        {{"time_us", 40000}, {"hex", "000001b690"}}};
    EXPECT_EQ(run(fakeFile({video}), "a.html").exitCode, 0);
    EXPECT_THAT(dataOf("a.html").kinds(0), ElementsAre(4, 1, 2));
}

TEST_F(TimelineCommand, SeeksToEvenlySpacedTimes) {
    EXPECT_EQ(run(mScript, "a.html", {"--seek-steps", "2"}).exitCode, 0);
    const json seeks = dataOf("a.html").outline()["seeks"];
    ASSERT_EQ(seeks.size(), 3U);
    EXPECT_EQ(seeks[1]["targetUs"], 60000);
    EXPECT_EQ(seeks[1]["landedUs"], 80000);
    EXPECT_EQ(seeks[2]["landedUs"], nullptr);
}

TEST_F(TimelineCommand, LeavesSeeksOutWhereNoneAreWanted) {
    EXPECT_EQ(run(mScript, "a.html", {"--seek-steps", "0"}).exitCode, 0);
    EXPECT_THAT(dataOf("a.html").outline()["seeks"], IsEmpty());
}

TEST_F(TimelineCommand, OverwritesAFileOnlyByForce) {
    folder().write("a.html", "kept");
    const ProcessResult refused = run(mScript, "a.html");
    EXPECT_EQ(refused.exitCode, 2);
    EXPECT_THAT(refused.err, HasSubstr("a.html"));
    EXPECT_EQ(folder().read("a.html"), "kept");
    EXPECT_EQ(run(mScript, "a.html", {"--force"}).exitCode, 0);
    EXPECT_THAT(folder().read("a.html"), StartsWith("<!doctype html>"));
}

TEST_F(TimelineCommand, NeverTakesThePlaceOfItsFile) {
    const std::string file = folder().write("film.html", mScript.dump());
    const ProcessResult result = runOn(file, "film.html", {"--force"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(folder().read("film.html"), mScript.dump());
}

TEST_F(TimelineCommand, WantsToKnowWhetherPageOrDrawing) {
    const ProcessResult result = run(mScript, "a.png");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("ends neither in .html nor in .svg"));
}

TEST_F(TimelineCommand, WritesThoseOfSeveralFilesIntoAFolder) {
    const std::string first = folder().write("a.fake", mScript.dump());
    const std::string second = folder().write("b.fake", mScript.dump());
    const ProcessResult result = FakePlugin::run({"timeline", first, second, "-o", path("out")});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(folder().read("out/a.html"), StartsWith("<!doctype html>"));
    EXPECT_THAT(folder().read("out/b.html"), StartsWith("<!doctype html>"));
    EXPECT_THAT(result.out, HasSubstr(path("out/b.html") + "\n"));
}

TEST_F(TimelineCommand, WritesDrawingsIntoAFolderWhereAsked) {
    EXPECT_EQ(run(mScript, "out/", {"--svg"}).exitCode, 0);
    EXPECT_THAT(folder().read("out/a.svg"), StartsWith("<svg xmlns"));
}

TEST_F(TimelineCommand, RefusesOnePageForSeveralFiles) {
    const std::string file = folder().write("a.fake", mScript.dump());
    const ProcessResult result = FakePlugin::run({"timeline", file, file, "-o", path("a.html")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_THAT(result.err, HasSubstr("takes the timeline of one file: name a folder"));
    EXPECT_EQ(result.err.find("error"), result.err.rfind("error")) << "once for all files";
}

TEST_F(TimelineCommand, ShowsNamesInOneLine) {
    const ProcessResult result = run(mScript, "a\nb\u202e.html");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("a\\nb\\u{202e}.html\n"));
}

TEST_F(TimelineCommand, LeavesNoFileWhereThereIsNothingToDraw) {
    EXPECT_EQ(runOn(path("missing.ogm"), "a.html").exitCode, 2);
    EXPECT_EQ(fileCount(), 0U);
    EXPECT_EQ(runOn(folder().write("a.txt", "no media file"), "a.html").exitCode, 3);
    EXPECT_EQ(fileCount(), 1U);
}

TEST_F(TimelineCommand, DrawsWhatWasReadBeforeADeath) {
    auto video = fakeVideo();
    video["end"] = "assert";
    const ProcessResult result = run(fakeFile({video}), "a.html");
    EXPECT_EQ(result.exitCode, 4);
    const std::string page = folder().read("a.html");
    EXPECT_THAT(page, HasSubstr("the extractor died in read: CHECK(fake) failed."));
    EXPECT_THAT(page, HasSubstr("What could be read is drawn."));
    EXPECT_THAT(dataOf("a.html").times(0), Not(IsEmpty()));
}

TEST_F(TimelineCommand, DrawsTheOtherTracksWhenOneCannotBeRead) {
    auto video = fakeVideo();
    video["end"] = -10007;
    const ProcessResult result = run(fakeFile({video, fakeAudio()}), "a.html");
    EXPECT_EQ(result.exitCode, 2);
    // Seeks fail too, but the same failure is not reported twice.
    EXPECT_EQ(result.err.find("reading track 0 failed"),
              result.err.rfind("reading track 0 failed"));
    EXPECT_THAT(folder().read("a.html"), HasSubstr("reading track 0 failed: AMEDIA_ERROR_IO"));
    EXPECT_THAT(dataOf("a.html").times(1), ElementsAre(0, 60000));
}

TEST_F(TimelineCommand, DrawsAFileWithoutTracks) {
    const ProcessResult result = run(fakeFile({}), "a.html");
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(folder().read("a.html"), HasSubstr("no packets"));
}

}  // namespace
}  // namespace ogmprobe::test
