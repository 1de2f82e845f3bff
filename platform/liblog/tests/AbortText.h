// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <android/log.h>

#include "CapturedStderr.h"

/** What ThrowingAborter throws instead of ending the process. */
struct Aborted {
    std::string text;
};

/** During its lifetime the aborter throws Aborted. */
class ThrowingAborter {
  public:
    ThrowingAborter() { __android_log_set_aborter(abort); }
    ~ThrowingAborter() { __android_log_set_aborter(__android_log_default_aborter); }

    [[noreturn]] static void abort(const char* text) { throw Aborted{text}; }
};

struct AbortRecord {
    /** The aborter's text. */
    std::string text;
    /** What went to file descriptor 2. */
    std::string written;
};

/** Calls `failing` with a throwing aborter. */
template <typename Failing>
AbortRecord recordAbort(Failing failing) {
    const CapturedStderr captured;
    try {
        failing();
    } catch (const Aborted& aborted) {
        return {aborted.text, captured.text()};
    }
    return {"(no abort)", captured.text()};
}

template <typename Failing>
std::string abortText(Failing failing) {
    return recordAbort(failing).text;
}
