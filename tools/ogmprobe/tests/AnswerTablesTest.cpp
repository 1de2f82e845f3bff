// SPDX-License-Identifier: Apache-2.0
// What every command answers under one circumstance after the other: files that cannot be read,
// output that cannot be written, colours. The answers to a circumstance are one kept text in
// data/answers/, which is updated as AnswersTest.cpp says.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "Asking.h"

namespace ogmprobe::test::answer_tables_test {
namespace {

using Words = std::vector<std::string>;

/** A command, the forms of its answer, and what it needs besides a file. */
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

/** Each command in each form, with the options before it and the file after it. */
std::vector<Words> commandLines(const Words& options, const std::string& file) {
    std::vector<Words> lines;
    for (const Command& command : commands()) {
        const Words files = command.takesTwoFiles ? Words{file, "mjpeg.ogm"} : Words{file};
        for (const Words& form : command.forms) {
            lines.push_back(joined(joined(joined(joined(options, {command.name}), form), files),
                                   command.needs));
        }
    }
    return lines;
}

/** All command lines of one circumstance. */
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
            {"all_of_a_missing_file", commandLines({}, "no_such_file.ogm")},
            {"all_of_an_empty_file", commandLines({}, "empty.ogm")},
            {"all_of_no_media", commandLines({}, "text.ogm")},
            {"all_of_a_folder", commandLines({}, "folder.ogm")},
            {"all_below_a_file", commandLines({}, "text.ogm/below.ogm")},
            {"all_of_standard_input", commandLines({}, "-")},
            {"all_without_a_plugin", commandLines({"--plugin", "text.ogm"}, "mjpeg.ogm")},
            {"all_in_colour", commandLines({"--color", "always"}, "marker.ogm")},
            {"all_quietly", commandLines({"--quiet"}, "marker.ogm")},
            {"all_in_this_process", commandLines({"--in-process"}, "mjpeg.ogm")},
            {"all_to_a_full_device", commandLines({}, "mjpeg.ogm"), StandardStream::kFullDevice},
            {"all_to_a_closed_pipe", commandLines({}, "mjpeg.ogm"), StandardStream::kClosedPipe},
            {"all_with_nobody_to_complain_to", commandLines({}, "no_such_file.ogm"),
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
