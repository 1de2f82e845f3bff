// SPDX-License-Identifier: Apache-2.0
#pragma once

// The library's own assertions. Their texts are observable, so they name file and line of the
// device's library, not of these sources:
//
//     if (prevCount <= 0) {
//         checkFailed({"MediaBuffer", "MediaBuffer.cpp:122", "CHECK(prevCount > 0)"});
//     }

namespace android {

struct AssertionSite {
    /** The log tag; null means the program's name. */
    const char* tag;
    /** File and line as the text shows them. */
    const char* place;
    /** The assertion with its operands as the text shows it. */
    const char* check;
};

/** Writes the text of the failed condition to stderr and the log, then ends the process. */
[[noreturn]] void checkFailed(const AssertionSite& site);

/** Like checkFailed(); the two compared values follow the text. */
[[noreturn]] void comparisonFailed(const AssertionSite& site, int x, int y);

}  // namespace android
