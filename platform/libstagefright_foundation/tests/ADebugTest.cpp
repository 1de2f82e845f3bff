// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ADebug.h>

#include <gtest/gtest.h>

#include "ADebugSubjects.h"
#include "ExpectAssertion.h"

namespace {

TEST(ADebug, AssertionsThatHoldDoNothing) {
    checkNotEmpty({1});
    checkPercent(200);
    checkNamed(42);
    checkEq(0x0B77);
    checkNe(0x20);
    checkLe(9);
    checkLt(9);
    checkGe(0);
    checkGt('B');
    checkMacroOperand(42);
    EXPECT_EQ(checkedAsExpression(5), 5);
}

TEST(ADebug, OperandsAreEvaluatedOnce) {
    int counter = 0;
    checkOnce(&counter);
    EXPECT_EQ(counter, 1);
}

TEST(ADebugDeathTest, CheckPrintsItsPlaceAndCondition) {
    EXPECT_ASSERTION(checkNotEmpty({}), "Subjects", "a/b.cpp:12 CHECK(!list.empty()) failed.");
}

TEST(ADebugDeathTest, CheckPrintsAPercentSignAsItIs) {
    EXPECT_ASSERTION(checkPercent(5), "Subjects", "a/b.cpp:12 CHECK(percent % 100 == 0) failed.");
}

TEST(ADebugDeathTest, CheckShowsMacrosUnexpanded) {
    EXPECT_ASSERTION(checkNamed(1), "Subjects", "a/b.cpp:12 CHECK(value == LIMIT) failed.");
}

TEST(ADebugDeathTest, CheckEqPrintsBothValuesInDecimal) {
    EXPECT_ASSERTION(checkEq(1), "Subjects",
                     "a/b.cpp:12 CHECK_EQ( bits,0x0B77) failed: 1 vs. 2935");
}

TEST(ADebugDeathTest, CheckNePrintsBothValues) {
    EXPECT_ASSERTION(checkNe(33), "Subjects",
                     "a/b.cpp:12 CHECK_NE( value,0x21u) failed: 33 vs. 33");
}

TEST(ADebugDeathTest, CheckLePrintsBytesAsNumbers) {
    EXPECT_ASSERTION(checkLe(65), "Subjects", "a/b.cpp:12 CHECK_LE( value,9) failed: 65 vs. 9");
}

TEST(ADebugDeathTest, CheckLtFailsOnEqualValues) {
    EXPECT_ASSERTION(checkLt(10), "Subjects", "a/b.cpp:12 CHECK_LT( value,10) failed: 10 vs. 10");
}

TEST(ADebugDeathTest, CheckGePrintsNegativeValues) {
    EXPECT_ASSERTION(checkGe(-1), "Subjects", "a/b.cpp:12 CHECK_GE( timeUs,0ll) failed: -1 vs. 0");
}

TEST(ADebugDeathTest, CheckGtPrintsACharAsACharacter) {
    EXPECT_ASSERTION(checkGt('A'), "Subjects", "a/b.cpp:12 CHECK_GT( value,'A') failed: A vs. A");
}

TEST(ADebugDeathTest, ComparisonsShowMacrosInOperandsExpanded) {
    EXPECT_ASSERTION(checkMacroOperand(1), "Subjects",
                     "a/b.cpp:12 CHECK_EQ( value,40 + 2) failed: 1 vs. 42");
}

TEST(ADebugDeathTest, ComparisonsDropOuterBlanksAndJoinInnerOnes) {
    EXPECT_ASSERTION(checkSpacing(7), "Subjects",
                     "a/b.cpp:12 CHECK_EQ( value + 1-1,0) failed: 7 vs. 0");
}

TEST(ADebugDeathTest, TrespassWithoutArgumentsEndsInABlank) {
    EXPECT_ASSERTION(trespass(), "Subjects", "a/b.cpp:12 Should not be here. ");
}

TEST(ADebugDeathTest, TrespassFormatsItsArguments) {
    EXPECT_ASSERTION(trespassWith(8), "Subjects", "a/b.cpp:12 Should not be here. type 8");
}

}  // namespace
