// SPDX-License-Identifier: Apache-2.0
#include "check/Reason.h"

#include <gtest/gtest.h>

namespace ogmprobe::check {
namespace {

TEST(ReasonTest, AReasonHasTheVerdictOfItsKind) {
    EXPECT_EQ(reasonOf("no-decoder", "none").verdict, Verdict::kDoesNotPlay);
    EXPECT_EQ(reasonOf("frames-lost", "3", 3, 2).verdict, Verdict::kPlaysWithFaults);
    EXPECT_EQ(reasonOf("end-withheld", "2").verdict, Verdict::kPlays);
    EXPECT_EQ(reasonOf("cannot-read", "gone").verdict, Verdict::kUnknown);
}

TEST(ReasonTest, AnUnknownNameHasNoKind) {
    EXPECT_EQ(reasonKind("nonsense"), nullptr);
}

TEST(ReasonTest, TheWorstOfNoReasonsIsThatItPlays) {
    EXPECT_EQ(worstOf({}), Verdict::kPlays);
    EXPECT_EQ(worstOf({reasonOf("frames-lost", ""), reasonOf("no-decoder", ""),
                       reasonOf("end-withheld", "")}),
              Verdict::kDoesNotPlay);
}

TEST(ReasonTest, VerdictsHaveNames) {
    EXPECT_EQ(nameOf(Verdict::kPlays), "plays");
    EXPECT_EQ(nameOf(Verdict::kPlaysWithFaults), "plays with faults");
    EXPECT_EQ(nameOf(Verdict::kDoesNotPlay), "does not play");
    EXPECT_EQ(nameOf(Verdict::kUnknown), "unknown");
}

}  // namespace
}  // namespace ogmprobe::check
