// SPDX-License-Identifier: Apache-2.0
// Runs the program like a user, with the real plug-in and with one that differs on demand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using ::testing::HasSubstr;

constexpr char kPlugin[] = OGM_PLUGIN_PATH;
constexpr char kAltered[] = OGM_ALTERED_PLUGIN_PATH;

struct Outcome {
    int status;
    std::string text;
};

Outcome runProgram(const std::string& arguments) {
    const std::string command = std::string(OGM_PLUGIN_TRACE) + " " + arguments + " 2>&1";
    FILE* const pipe = popen(command.c_str(), "r");
    std::string text;
    std::array<char, 4096> chunk;
    while (const size_t count = fread(chunk.data(), 1, chunk.size(), pipe)) {
        text.append(chunk.data(), count);
    }
    return {WEXITSTATUS(pclose(pipe)), text};
}

Outcome compare(const std::string& alteration, const std::string& options) {
    (void)setenv("OGM_ALTERATION", alteration.c_str(), 1);
    return runProgram("compare " + std::string(kPlugin) + " " + kAltered + " --jobs 1 " + options);
}

TEST(SameBehaviourTest, APluginDoesTheSameAsItself) {
    const Outcome outcome = runProgram("compare " + std::string(kPlugin) + " " + kPlugin +
                                       " --sessions 40 --seed 3 --max-events 5000");
    EXPECT_EQ(0, outcome.status) << outcome.text;
    EXPECT_THAT(outcome.text, HasSubstr("40 sessions with "));
    EXPECT_THAT(outcome.text, HasSubstr(": 0 differ\n"));
}

TEST(SameBehaviourTest, TheDigestsAreTheSameInEachRun) {
    const std::string arguments =
            "list " + std::string(kPlugin) + " --sessions 20 --seed 5 --max-events 5000 ";
    const Outcome first = runProgram(arguments + "--jobs 1");
    EXPECT_EQ(0, first.status);
    EXPECT_EQ(first.text, runProgram(arguments + "--jobs 2").text);
    EXPECT_NE(first.text,
              runProgram("list " + std::string(kPlugin) + " --sessions 20 --max-events 5000").text);
}

TEST(SameBehaviourTest, AWrapperThatChangesNothingDoesTheSame) {
    EXPECT_EQ(0, compare("nothing", "--sessions 10 --max-events 5000").status);
}

TEST(SameBehaviourTest, APluginThatCannotBeLoadedIsNoDifference) {
    const Outcome outcome = runProgram("compare " + std::string(kPlugin) + " /nowhere.so");
    EXPECT_EQ(2, outcome.status);
    EXPECT_THAT(outcome.text, HasSubstr("/nowhere.so"));
}

TEST(SameBehaviourTest, AKindThatIsLeftOutMakesNoDifference) {
    EXPECT_EQ(1, compare("log", "--sessions 10 --max-events 5000").status);
    EXPECT_EQ(0, compare("log", "--sessions 10 --max-events 5000 --leave-out log").status);
}

struct Alteration {
    const char* name;
    /** A text in the first event that differs. */
    const char* event;
    /** Kinds of events to leave out, because the change itself makes such calls. */
    const char* leftOut = "property";
};

class AlterationTest : public ::testing::TestWithParam<Alteration> {};

TEST_P(AlterationTest, IsFoundAndShown) {
    const Outcome outcome = compare(
            GetParam().name, std::string("--sessions 20 --max-events 3000 --show 1 --leave-out ") +
                                     GetParam().leftOut);
    EXPECT_EQ(1, outcome.status) << outcome.text;
    const size_t begin = outcome.text.find("\n  + ");
    ASSERT_NE(std::string::npos, begin) << outcome.text;
    const std::string line =
            outcome.text.substr(begin + 1, outcome.text.find('\n', begin + 1) - begin - 1);
    EXPECT_THAT(line, HasSubstr(GetParam().event));
}

constexpr Alteration kAlterations[] = {
        {"log", "I OgmExtractor: \"one line more\""},
        {"property", "property_get_int32 one.more", "dump"},
        {"source", "read 1 at 0 -> 1"},
        {"confidence", "confidence 0.6"},
        {"status", "-10007 no buffer"},
        {"byte", "digest", "buffer"},
        {"time", "timeUs=int64 1", "buffer format"},
        {"buffer", "range length"},
        {"dump", "open /data/dump.bin with mode ab"},
        {"assertion", "F OgmExtractor: \"must not happen\""},
        {"crash", "signal 11", "call"},
        {"chatter", "\"again\""},
        {"loop", "does nothing more that could be seen", "call"},
        {"wait", "does nothing more that could be seen", "call"},
};

INSTANTIATE_TEST_SUITE_P(All, AlterationTest, ::testing::ValuesIn(kAlterations),
                         [](const auto& parameter) { return std::string(parameter.param.name); });

}  // namespace
