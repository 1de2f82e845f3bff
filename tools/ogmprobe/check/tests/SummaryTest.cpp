// SPDX-License-Identifier: Apache-2.0
#include "check/Summary.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "CheckedFiles.h"

namespace ogmprobe::check {
namespace {

Reason lost(const std::string& subject) {
    Reason reason = reasonOf("frames-lost", "");
    reason.subject = subject;
    return reason;
}

Summary example() {
    Summary summary;
    summary.add(checkedFile("a"));
    summary.add(checkedFile("b", {lost("AC-3 at 44100 Hz"), lost("AC-3 at 44100 Hz")}));
    summary.add(checkedFile("c", {lost("AC-3 at 44100 Hz"), lost("H.264")}));
    summary.add(checkedFile("d", {}, {reasonOf("extractor-ended", "")}));
    return summary;
}

TEST(SummaryTest, FilesAreCountedByVerdictAndEachOnceByReason) {
    EXPECT_EQ(summaryText(example(), false),
              "4 files: 1 play, 2 play with faults, 1 do not play\n"
              "  Files  Verdict            Reason\n"
              "      1  does not play      ends the extractor, or never lets it end\n"
              "      2  plays with faults  frames lost: AC-3 at 44100 Hz\n"
              "      1  plays with faults  frames lost: H.264\n");
}

TEST(SummaryTest, WithoutReasonsThereIsNoTable) {
    Summary summary;
    summary.add(checkedFile("a", {reasonOf("end-withheld", "")}));
    EXPECT_EQ(summaryText(summary, false), "1 file: 1 play, 0 play with faults, 0 do not play\n");
}

TEST(SummaryTest, WhatCouldNotBeCheckedIsCountedForItself) {
    Summary summary;
    summary.add(checkedFile("a", {}, {reasonOf("cannot-read", "")}));
    EXPECT_EQ(countsText(summary),
              "1 file: 0 play, 0 play with faults, 0 do not play, 1 could not be checked");
    EXPECT_EQ(toJson(summary)["unknown"], 1);
}

}  // namespace
}  // namespace ogmprobe::check
