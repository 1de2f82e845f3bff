// SPDX-License-Identifier: Apache-2.0
// Compares the output of every command under different conditions (files that cannot be read,
// output that cannot be written, colours) with stored texts in data/answers/, one for each
// condition. AnswersTest.cpp says how to update them.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>
#include <vector>

#include "Asking.h"

namespace ogmprobe::test::answer_tables_test {
namespace {

using Words = std::vector<std::string>;

/** A command, the options for its output formats, and other options that it needs. */
struct Command {
    const char* name;
    std::vector<Words> forms;
    Words needs = {};
    bool takesTwoFiles = false;
};

const std::vector<Command>& commands() {
    static const std::vector<Command> all = {
            {"info", {{}, {"--json"}}},
            {"packets", {{}, {"--json"}, {"--csv"}}},
            {"seektest", {{}, {"--json"}, {"--csv"}}, {"--steps", "2"}},
            {"explain", {{}, {"--json"}, {"--csv"}}},
            {"sync", {{}, {"--json"}, {"--csv"}}},
            {"check", {{}, {"--json"}, {"--csv"}}},
            {"compare", {{}, {"--json"}}, {}, true},
            {"extract", {{}}, {"-o", "out/"}},
            {"timeline", {{}}, {"-o", "out/page.svg"}},
    };
    return all;
}

Words joined(Words first, const Words& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/** Each command in each output format, with global options and files. */
std::vector<Words> commandLines(const Words& options, const Words& names) {
    std::vector<Words> lines;
    for (const Command& command : commands()) {
        const Words files = command.takesTwoFiles ? Words{names.front(), "mjpeg.ogm"} : names;
        for (const Words& form : command.forms) {
            lines.push_back(joined(joined(joined(joined(options, {command.name}), form), files),
                                   command.needs));
        }
    }
    return lines;
}

/** The command lines that print help or the version. */
std::vector<Words> helpLines() {
    std::vector<Words> lines = {{"--help"}, {"--version"}};
    for (const Command& command : commands()) {
        lines.push_back({command.name, "--help"});
    }
    return lines;
}

/** Each option that takes a number or a time, with odd values. Most are refused. */
std::vector<Words> oddValues() {
    // The words before the value, those after it, and the values.
    const std::vector<std::tuple<Words, Words, Words>> options = {
            {{"--timeout"}, {"info", "mjpeg.ogm"}, {"0", "-1", "x", "", "1e400", "nan"}},
            {{"packets", "mjpeg.ogm", "--count"},
             {},
             {"-1", "x", "1.5", "", "99999999999999999999"}},
            {{"packets", "mjpeg.ogm", "--track"}, {}, {"-1", "x", "1", "99999999999999999999"}},
            {{"packets", "mjpeg.ogm", "--only-track"}, {}, {"-1", "x", "1"}},
            {{"packets", "mjpeg.ogm", "--seek"},
             {},
             {"-1", "x", "1:60", "1:2:3:4", "99999999999999", ""}},
            {{"packets", "mjpeg.ogm", "--from"}, {}, {"-1", "x", "1:60:00"}},
            {{"packets", "mjpeg.ogm", "--to"}, {}, {"0", "-1", "x"}},
            {{"seektest", "mjpeg.ogm", "--steps"},
             {},
             {"0", "-1", "x", "1.5", "99999999999999999999"}},
            {{"compare", "mjpeg.ogm", "mjpeg.ogm", "--seeks"}, {}, {"0", "-1", "x"}},
            {{"check", "mjpeg.ogm", "--jobs"}, {}, {"0", "-1", "x", "100000"}},
            {{"timeline", "mjpeg.ogm", "-o", "out/", "--seek-steps"},
             {},
             {"-1", "x", "99999999999999999999"}},
    };
    std::vector<Words> lines;
    for (const auto& [before, after, values] : options) {
        for (const std::string& value : values) {
            lines.push_back(joined(joined(before, {value}), after));
        }
    }
    return lines;
}

/** All command lines under one condition. */
struct Table {
    const char* name;
    std::vector<Words> lines;
    StandardStream out = StandardStream::kCaptured;
    StandardStream err = StandardStream::kCaptured;
};

std::ostream& operator<<(std::ostream& out, const Table& table) {
    return out << table.name;
}

const std::vector<Table>& tables() {
    static const std::vector<Table> all = {
            {"all_of_a_missing_file", commandLines({}, {"no_such_file.ogm"})},
            {"all_of_an_empty_file", commandLines({}, {"empty.ogm"})},
            {"all_of_no_media", commandLines({}, {"text.ogm"})},
            {"all_of_a_folder", commandLines({}, {"folder.ogm"})},
            {"all_below_a_file", commandLines({}, {"text.ogm/below.ogm"})},
            {"all_of_standard_input", commandLines({}, {"-"})},
            {"all_without_a_plugin", commandLines({"--plugin", "text.ogm"}, {"mjpeg.ogm"})},
            {"all_of_several_files",
             commandLines({}, {"mjpeg.ogm", "text.ogm", "version.ogm", "no_such_file.ogm"})},
            {"all_of_the_same_name_twice",
             {{"extract", "mjpeg.ogm", "mjpeg.ogm", "-o", "out/"},
              {"timeline", "mjpeg.ogm", "mjpeg.ogm", "--svg", "-o", "out/"}}},
            {"all_help", helpLines()},
            {"all_odd_values", oddValues()},
            {"all_in_colour", commandLines({"--color", "always"}, {"marker.ogm"})},
            {"all_quietly", commandLines({"--quiet"}, {"marker.ogm"})},
            {"all_in_this_process", commandLines({"--in-process"}, {"mjpeg.ogm"})},
            {"all_to_a_full_device", commandLines({}, {"mjpeg.ogm"}), StandardStream::kFullDevice},
            {"all_to_a_closed_pipe", commandLines({}, {"mjpeg.ogm"}), StandardStream::kClosedPipe},
            {"all_with_nobody_to_complain_to", commandLines({}, {"no_such_file.ogm"}),
             StandardStream::kCaptured, StandardStream::kClosedPipe},
    };
    return all;
}

class AnswerTables : public testing::TestWithParam<Table> {};

TEST_P(AnswerTables, AreTheKeptOnes) {
    if (!canFilterSystemCalls()) {
        GTEST_SKIP() << "each answer has a warning more where system calls are not filtered";
    }
    const answers::Asking asking;
    ProcessSetup setup;
    setup.out = GetParam().out;
    setup.err = GetParam().err;
    std::string all;
    for (const Words& line : GetParam().lines) {
        all += asking.answerTo(line, setup) + "\n";
        asking.clearOutput();
    }
    answers::expectKept(GetParam().name, all);
}

INSTANTIATE_TEST_SUITE_P(OnSamples, AnswerTables, testing::ValuesIn(tables()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(AnswersFolder, HoldsNoTableThatNobodyAsksFor) {
    std::set<std::string> asked;
    for (const Table& table : tables()) {
        asked.insert(table.name);
    }
    EXPECT_EQ(answers::keptNames("all_", true), asked);
}

}  // namespace
}  // namespace ogmprobe::test::answer_tables_test
