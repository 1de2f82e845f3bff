// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "process/DeathNote.h"

/** The end of the process that runs the plug-in: a note that tells why, and exit code 4. */
namespace ogmprobe::death {

/**
 * Leaves a note there, which must stay, on assertions of the plug-in and of the platform libraries,
 * on fatal signals, forbidden system calls, and when memory runs out.
 */
void catchAll(DeathNote& note);

/** Ends the process because the plug-in will never come to an end. */
[[noreturn]] void ofEndlessReading(const char* text);

/** Ends the process because of an exception that nobody has caught. */
[[noreturn]] void ofException(const char* text);

}  // namespace ogmprobe::death
