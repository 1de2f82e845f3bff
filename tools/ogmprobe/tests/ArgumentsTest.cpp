// SPDX-License-Identifier: Apache-2.0
#include "options/Arguments.h"

#include <android/log.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace ogmprobe {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ArgumentsTest : public testing::Test {
  protected:
    std::variant<Options, ExitCode> parse(std::vector<const char*> arguments) {
        arguments.insert(arguments.begin(), "ogmprobe");
        mOut.str("");
        mErr.str("");
        return parseArguments(static_cast<int>(arguments.size()), arguments.data(), mOut, mErr);
    }

    template <typename Command>
    Command command(const std::vector<const char*>& arguments) {
        const auto parsed = parse(arguments);
        const Options* options = std::get_if<Options>(&parsed);
        EXPECT_NE(options, nullptr) << mErr.str();
        return options != nullptr ? std::get<Command>(options->command) : Command();
    }

    GlobalOptions global(const std::vector<const char*>& arguments) {
        const auto parsed = parse(arguments);
        const Options* options = std::get_if<Options>(&parsed);
        EXPECT_NE(options, nullptr) << mErr.str();
        return options != nullptr ? options->global : GlobalOptions();
    }

    void expectUsageError(const std::vector<const char*>& arguments) {
        const auto parsed = parse(arguments);
        const ExitCode* code = std::get_if<ExitCode>(&parsed);
        ASSERT_NE(code, nullptr);
        EXPECT_EQ(*code, ExitCode::kUsage);
        EXPECT_THAT(mOut.str(), IsEmpty());
        EXPECT_FALSE(mErr.str().empty());
    }

    std::ostringstream mOut;
    std::ostringstream mErr;
};

TEST_F(ArgumentsTest, HasDefaultsForAllOptions) {
    const GlobalOptions options = global({"info", "a"});
    EXPECT_EQ(options.pluginPath, "");
    EXPECT_EQ(options.logPriority, std::nullopt);
    EXPECT_EQ(options.color, ColorMode::kAuto);
    EXPECT_EQ(options.timeoutSeconds, 10);
}

TEST_F(ArgumentsTest, TakesGlobalOptionsBeforeAndAfterTheCommand) {
    for (const auto& arguments : std::vector<std::vector<const char*>>{
                 {"--log", "debug", "--plugin", "p", "--color", "never", "info", "a"},
                 {"info", "a", "--log", "debug", "--plugin", "p", "--color", "never"}}) {
        const GlobalOptions options = global(arguments);
        EXPECT_EQ(options.logPriority, ANDROID_LOG_DEBUG);
        EXPECT_EQ(options.pluginPath, "p");
        EXPECT_EQ(options.color, ColorMode::kNever);
    }
}

TEST_F(ArgumentsTest, TakesSeveralFilesForInfo) {
    const auto options = command<InfoOptions>({"info", "--json", "a", "b"});
    EXPECT_THAT(options.files, ElementsAre("a", "b"));
    EXPECT_TRUE(options.json);
}

TEST_F(ArgumentsTest, TakesOneValueForEachTrackAndSeekOption) {
    const auto options = command<PacketsOptions>({"packets", "--track", "0", "--seek", "1.5", "a",
                                                  "--track", "2", "--seek=-3", "--count", "4"});
    EXPECT_THAT(options.files, ElementsAre("a"));
    EXPECT_THAT(options.tracks.shown, ElementsAre(0, 2));
    EXPECT_THAT(options.seeksUs, ElementsAre(1500000, -3000000));
    EXPECT_EQ(options.count, 4U);
}

TEST_F(ArgumentsTest, TakesTheGridOfASeekTest) {
    EXPECT_EQ(command<SeekTestOptions>({"seektest", "a"}).steps, 20U);
    EXPECT_EQ(command<SeekTestOptions>({"seektest", "a", "--steps", "7"}).steps, 7U);
}

TEST_F(ArgumentsTest, TakesTheFolderOfAnExtraction) {
    const auto options =
            command<ExtractOptions>({"extract", "a", "-o", "dir", "--track", "1", "--force"});
    EXPECT_EQ(options.files, std::vector<std::string>{"a"});
    EXPECT_EQ(options.folder, "dir");
    EXPECT_THAT(options.tracks.shown, ElementsAre(1));
    EXPECT_TRUE(options.force);
}

TEST_F(ArgumentsTest, TakesWhatAnExplanationShows) {
    const auto options = command<ExplainOptions>({"explain", "a", "--pages", "--verbose"});
    EXPECT_THAT(options.files, ElementsAre("a"));
    EXPECT_TRUE(options.pages);
    EXPECT_TRUE(options.verbose);
    EXPECT_FALSE(options.json);
}

TEST_F(ArgumentsTest, TakesBothSidesOfAComparison) {
    const auto files = command<CompareOptions>({"compare", "a", "b"});
    EXPECT_EQ(files.a, "a");
    EXPECT_EQ(files.b, "b");
    EXPECT_EQ(files.logs, std::nullopt);
    const auto plugins = command<CompareOptions>({"compare", "a", "--plugin-b", "p", "--logs"});
    EXPECT_EQ(plugins.b, "");
    EXPECT_EQ(plugins.pluginB, "p");
    EXPECT_EQ(plugins.logs, true);
    EXPECT_EQ(command<CompareOptions>({"compare", "a", "b", "--no-logs"}).logs, false);
}

TEST_F(ArgumentsTest, TakesNamesOfCommandsAfterTheFirstAsFiles) {
    EXPECT_THAT(command<InfoOptions>({"info", "info"}).files, ElementsAre("info"));
    EXPECT_THAT(command<SyncOptions>({"sync", "a", "packets", "--csv"}).files,
                ElementsAre("a", "packets"));
    expectUsageError({"sync", "packets", "--sync-only"});
}

TEST_F(ArgumentsTest, RefusesWhatItDoesNotKnowOrMisses) {
    expectUsageError({});
    expectUsageError({"frobnicate"});
    expectUsageError({"info"});
    expectUsageError({"info", "--frobnicate", "a"});
    expectUsageError({"extract", "a"});
    expectUsageError({"compare", "a"});
}

TEST_F(ArgumentsTest, RefusesValuesThatMakeNoSense) {
    expectUsageError({"info", "a", "--log", "loud"});
    expectUsageError({"info", "a", "--color", "green"});
    expectUsageError({"info", "a", "--timeout", "-1"});
    expectUsageError({"packets", "a", "--track", "-1"});
    expectUsageError({"packets", "a", "--track", "x"});
    expectUsageError({"packets", "a", "--seek", "soon"});
    expectUsageError({"packets", "a", "--count", "0"});
    expectUsageError({"seektest", "a", "--steps", "0"});
}

TEST_F(ArgumentsTest, TakesTimesAsSecondsAndAsHoursMinutesAndSeconds) {
    const auto options = command<PacketsOptions>({"packets", "a", "--seek", "00:00:03", "--seek",
                                                  "1:02.5", "--from", "2", "--to", "0:00:04.5"});
    EXPECT_THAT(options.seeksUs, ElementsAre(3000000, 62500000));
    EXPECT_EQ(options.fromUs, 2000000);
    EXPECT_EQ(options.untilUs, 4500000);
}

TEST_F(ArgumentsTest, SaysInOneLineWhichValuesMakeSense) {
    for (const auto& [arguments, line] :
         std::vector<std::pair<std::vector<const char*>, const char*>>{
                 {{},
                  "name a file, or a command and its files; ogmprobe --help lists the commands"},
                 {{"packets"}, "FILE is required"},
                 {{"packets", "a", "--from", "5", "--to", "1"},
                  "--to: the time is not after that of --from"},
                 {{"extract", "a", "-o", ""}, "--output: an empty name"},
                 {{"packets", "a", "--count", "-1"}, "--count: -1 is not a whole number from 1 on"},
                 {{"packets", "a", "--track", "abc"},
                  "--track: abc is not a whole number from 0 to 100000"},
                 {{"info", "a", "--timeout", "abc"},
                  "--timeout: abc is not a number of seconds from 0 on"},
                 {{"seektest", "a", "--steps", "0"},
                  "--steps: 0 is not a whole number from 1 to 1000000"},
                 {{"packets", "a", "--seek", "soon"},
                  "--seek: soon is not a time: seconds, m:ss or h:mm:ss, as 12.5 or 0:01:02.5"},
                 {{"inof", "a"}, "inof is neither a command nor a file; did you mean info?"},
                 {{"frobnicate"}, "frobnicate is neither a command nor a file"}}) {
        mErr.str("");
        expectUsageError(arguments);
        EXPECT_EQ(mErr.str(), std::string("ogmprobe: error: ") + line + "\n");
    }
}

TEST_F(ArgumentsTest, TreatsAFileWithoutACommandAsInfo) {
    EXPECT_THAT(command<InfoOptions>({"film.ogm"}).files, ElementsAre("film.ogm"));
    EXPECT_TRUE(command<InfoOptions>({"--json", "film.ogm"}).json);
}

TEST_F(ArgumentsTest, ShowsHelpAndVersionOnTheOutput) {
    for (const char* option : {"--help", "--version"}) {
        const auto parsed = parse({option});
        EXPECT_EQ(std::get<ExitCode>(parsed), ExitCode::kDone);
        EXPECT_THAT(mOut.str(), HasSubstr("ogmprobe"));
        EXPECT_THAT(mErr.str(), IsEmpty());
    }
}

TEST_F(ArgumentsTest, HasExamplesInTheHelpOfEachCommand) {
    for (const char* name : {"info", "packets", "seektest", "extract", "explain", "compare"}) {
        EXPECT_EQ(std::get<ExitCode>(parse({name, "--help"})), ExitCode::kDone);
        EXPECT_THAT(mOut.str(), HasSubstr("Examples:\n  ogmprobe " + std::string(name)));
    }
}

}  // namespace
}  // namespace ogmprobe
