// SPDX-License-Identifier: Apache-2.0
#pragma once

// The library's own assertions. Their texts are observable and name a file and line of their own,
// whatever line of these sources they stand on, so they do not go through the CHECK macros:
//
//     if (offset > mCapacity) {
//         comparisonFailed({nullptr, "ABuffer.cpp:69", "CHECK_LE( offset,mCapacity)"}, offset,
//                          mCapacity);
//     }

#include <media/stagefright/foundation/AString.h>

namespace android {

struct AssertionSite {
    /** The log tag; null stands for the program's name. */
    const char* tag;
    /** File and line as the text shows them. */
    const char* place;
    /** The assertion with its operands as the text shows it. */
    const char* check;
};

/** Writes the text of the failed condition to stderr and the log and ends the process. */
[[noreturn]] void checkFailed(const AssertionSite& site);

/** As checkFailed(), for a comparison whose two values are given already formatted. */
[[noreturn]] void comparisonTextFailed(const AssertionSite& site, const AString& values);

/** As checkFailed(), followed by the two compared values. */
template <typename X, typename Y>
[[noreturn]] void comparisonFailed(const AssertionSite& site, const X& x, const Y& y) {
    AString values;
    values.append(x);
    values.append(" vs. ");
    values.append(y);
    comparisonTextFailed(site, values);
}

}  // namespace android
