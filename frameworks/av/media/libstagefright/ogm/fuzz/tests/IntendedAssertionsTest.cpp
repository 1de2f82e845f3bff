// SPDX-License-Identifier: Apache-2.0
#include "IntendedAssertions.h"

#include <android/log.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>
#include <vector>

#include "Ends.h"

namespace android::ogm::fuzz {
namespace {

struct Row {
    std::string tag;
    std::string text;
    bool byFile;

    bool operator==(const Row& other) const {
        return tag == other.tag && text == other.text && byFile == other.byFile;
    }
};

std::ostream& operator<<(std::ostream& stream, const Row& row) {
    return stream << row.tag << ": \"" << row.text << "\", by file: " << row.byFile;
}

/** The cells of a line of a Markdown table, without the blanks around them. */
std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    size_t begin = 1;
    for (size_t end; (end = line.find(" |", begin)) != std::string::npos; begin = end + 2) {
        cells.push_back(line.substr(begin + 1, end - begin - 1));
    }
    return cells;
}

/** The first text between backquotes. */
std::string quotedIn(const std::string& cell) {
    const size_t begin = cell.find('`') + 1;
    return cell.substr(begin, cell.find('`', begin) - begin);
}

std::vector<std::string> numbersIn(const std::string& text) {
    const std::regex number("[0-9]+");
    return {std::sregex_token_iterator(text.begin(), text.end(), number), {}};
}

/** Adds a row for each line number that the text allows, with '#' for the values. */
void addRows(const std::vector<std::string>& cells, std::vector<Row>& rows) {
    const std::string& text = cells[0];
    const std::string tag = cells[1] == "the program's name" ? "" : cells[1];
    const bool byFile = cells[2].compare(0, 6, "*file*") == 0;
    const std::string pattern =
            std::regex_replace(quotedIn(text), std::regex("\\b[NSTW]\\b(?!\\()"), "#");
    const size_t line = pattern.find(":L ");
    if (line == std::string::npos) {
        rows.push_back({tag, pattern, byFile});
        return;
    }
    for (const std::string& number : numbersIn(text.substr(text.find(", L of")))) {
        rows.push_back({tag, std::string(pattern).replace(line + 1, 1, number), byFile});
    }
}

std::vector<Row> documentedRows() {
    std::ifstream document(OGM_BEHAVIOUR_DOCUMENT);
    std::vector<Row> rows;
    bool isInSection = false;
    for (std::string line; std::getline(document, line);) {
        if (line.compare(0, 3, "## ") == 0) {
            isInSection = line == "## The process ends";
        }
        if (isInSection && line.compare(0, 2, "| ") == 0 && line.find('`') != line.npos &&
            line.find("| text (after") == line.npos) {
            addRows(cellsOf(line), rows);
        }
    }
    return rows;
}

std::vector<Row> tableRows() {
    std::vector<Row> rows;
    for (const IntendedAssertion& row : kIntendedAssertions) {
        rows.push_back({std::string(row.tag), std::string(row.text), row.byFile});
    }
    return rows;
}

std::string pluginText(const std::string& text) {
    return std::string(kPluginFolder) + text;
}

TEST(IntendedAssertionsTest, TheTableIsTheOneOfTheDocumentation) {
    const std::vector<Row> documented = documentedRows();
    ASSERT_FALSE(documented.empty());
    EXPECT_THAT(tableRows(), ::testing::UnorderedElementsAreArray(documented));
}

TEST(IntendedAssertionsTest, ValuesMayBeAnyNumber) {
    for (const char* value : {"-1", "0", "-9223372036854775808"}) {
        const std::string text = pluginText(
                std::string("OgmExtractor:717 CHECK_GE( timeUs,0ll) failed: ") + value + " vs. 0");
        EXPECT_NE(findIntendedAssertion("OgmExtractor", text), nullptr) << text;
    }
}

TEST(IntendedAssertionsTest, AnotherTextTagOrFolderIsNotIntended) {
    const std::string text = "Ogmavc_utils:560 CHECK(br.getBits(1)) failed.";
    EXPECT_NE(findIntendedAssertion("avc_utils", pluginText(text)), nullptr);
    EXPECT_EQ(findIntendedAssertion("OgmExtractor", pluginText(text)), nullptr);
    EXPECT_EQ(findIntendedAssertion(nullptr, pluginText(text)), nullptr);
    EXPECT_EQ(findIntendedAssertion("avc_utils", text), nullptr);
    EXPECT_EQ(findIntendedAssertion("avc_utils", pluginText(text + " ")), nullptr);
    EXPECT_EQ(findIntendedAssertion("avc_utils",
                                    pluginText("Ogmavc_utils:561 CHECK(br.getBits(1)) failed.")),
              nullptr);
    EXPECT_EQ(findIntendedAssertion(
                      "OgmExtractor",
                      pluginText("OgmExtractor:717 CHECK_GE( timeUs,0ll) failed: - vs. 0")),
              nullptr);
}

TEST(IntendedAssertionsTest, OneThatAFileCanCauseLeavesTheRun) {
    const auto assertion = [] {
        __android_log_assert(nullptr, "avc_utils", "%sOgmavc_utils:%d CHECK(br.getBits(1)) failed.",
                             kPluginFolder.data(), 605);
    };
    EXPECT_FALSE(endsByItself(assertion));
}

TEST(IntendedAssertionsTest, EveryOtherAssertionEndsTheProcess) {
    EXPECT_DEATH(__android_log_assert(nullptr, "OgmExtractor", "%sOgmExtractor:735 %s",
                                      kPluginFolder.data(), "Should not be here. "),
                 "finding: assertion under \"OgmExtractor\": .*735 Should not be here");
    EXPECT_DEATH(__android_log_assert("a < b", nullptr, nullptr), "finding: .* a < b");
}

}  // namespace
}  // namespace android::ogm::fuzz
