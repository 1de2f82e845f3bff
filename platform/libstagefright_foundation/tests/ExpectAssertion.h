// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <string>

/** From here on the log goes to stderr as lines of priority, tag and message. */
void printPlainLog();

/** What an assertion writes to stderr while printPlainLog() holds; a null tag is the program's. */
std::string assertionOutput(const char* tag, const std::string& text);

/** The plain line of any other log message. */
std::string plainLogLine(int priority, const char* tag, const std::string& text);

/** What user-mode emulation of another machine adds when a program aborts under it. */
inline constexpr char kEmulatorNote[] = "qemu: uncaught target signal 6 (Aborted) - core dumped\n";

/** The statement aborts and has written exactly `output` to stderr. */
#define EXPECT_ABORT_WITH_OUTPUT(statement, output) \
    EXPECT_EXIT(                                    \
            {                                       \
                printPlainLog();                    \
                statement;                          \
            },                                      \
            testing::KilledBySignal(SIGABRT),       \
            testing::AnyOf(testing::Eq(output), testing::Eq((output) + kEmulatorNote)))

/** The statement aborts by an assertion of this tag and this whole text, and writes no more. */
#define EXPECT_ASSERTION(statement, tag, text) \
    EXPECT_ABORT_WITH_OUTPUT(statement, assertionOutput(tag, text))
