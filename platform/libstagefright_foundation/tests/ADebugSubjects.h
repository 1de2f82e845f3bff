// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

// Functions with one assertion each, placed on line 12 of a file a/b.cpp under the tag "Subjects".
void checkNotEmpty(const std::vector<int>& list);
void checkPercent(int percent);
void checkNamed(int value);
void checkEq(unsigned bits);
void checkNe(int value);
void checkLe(uint8_t value);
void checkLt(int value);
void checkGe(int64_t timeUs);
void checkGt(char value);
void checkMacroOperand(int value);
void checkSpacing(int value);
void checkOnce(int* counter);
void trespass();
void trespassWith(int type);
int checkedAsExpression(int value);
