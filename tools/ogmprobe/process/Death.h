// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "process/DeathNote.h"

/** The end of the process that runs the plug-in: a note with the reason, and exit code 4. */
namespace ogmprobe::death {

/**
 * From now on, writes the note at assertions of the plug-in and of the platform libraries, fatal
 * signals and forbidden system calls, and when memory runs out. The note must outlive the process's
 * work.
 */
void catchAll(DeathNote& note);

/** Ends the process because the plug-in will never finish. */
[[noreturn]] void ofEndlessReading(const char* text);

/** Ends the process because of an uncaught exception. */
[[noreturn]] void ofException(const char* text);

}  // namespace ogmprobe::death
