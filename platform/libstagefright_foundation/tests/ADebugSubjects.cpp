// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "Subjects"
#include "ADebugSubjects.h"

#include <media/stagefright/foundation/ADebug.h>

#define LIMIT 40 + 2

// The blanks inside the operands are part of what is tested.
// clang-format off

void checkNotEmpty(const std::vector<int>& list) {
#line 12 "a/b.cpp"
    CHECK(!list.empty());
}

void checkPercent(int percent) {
#line 12 "a/b.cpp"
    CHECK(percent % 100 == 0);
}

void checkNamed(int value) {
#line 12 "a/b.cpp"
    CHECK(value == LIMIT);
}

void checkEq(unsigned bits) {
#line 12 "a/b.cpp"
    CHECK_EQ(bits, 0x0B77);
}

void checkNe(int value) {
#line 12 "a/b.cpp"
    CHECK_NE(value, 0x21u);
}

void checkLe(uint8_t value) {
#line 12 "a/b.cpp"
    CHECK_LE(value, 9);
}

void checkLt(int value) {
#line 12 "a/b.cpp"
    CHECK_LT(value, 10);
}

void checkGe(int64_t timeUs) {
#line 12 "a/b.cpp"
    CHECK_GE(timeUs, 0ll);
}

void checkGt(char value) {
#line 12 "a/b.cpp"
    CHECK_GT(value, 'A');
}

void checkMacroOperand(int value) {
#line 12 "a/b.cpp"
    CHECK_EQ(value, LIMIT);
}

void checkSpacing(int value) {
#line 12 "a/b.cpp"
    CHECK_EQ(  value  +   1-1 ,  0  );
}

void checkOnce(int* counter) {
#line 12 "a/b.cpp"
    CHECK_GT(++*counter, 0);
}

void trespass() {
#line 12 "a/b.cpp"
    TRESPASS();
}

void trespassWith(int type) {
#line 12 "a/b.cpp"
    TRESPASS("type %d", type);
}

int checkedAsExpression(int value) {
#line 12 "a/b.cpp"
    return CHECK(value > 0), value;
}
