// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <string>

/** From here on the log goes to stderr as lines of priority, tag and message. */
void printPlainLog();

/** What an assertion writes to stderr after printPlainLog(); a null tag is the program's name. */
std::string assertionOutput(const char* tag, const std::string& text);

/** The plain line of any other log message. */
std::string plainLogLine(int priority, const char* tag, const std::string& text);

/** What an emulator of another machine adds when its program aborts. */
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

/** The statement aborts with an assertion of this tag and exactly this text, and writes no more. */
#define EXPECT_ASSERTION(statement, tag, text) \
    EXPECT_ABORT_WITH_OUTPUT(statement, assertionOutput(tag, text))
