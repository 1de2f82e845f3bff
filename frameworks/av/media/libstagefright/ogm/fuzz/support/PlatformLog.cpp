// SPDX-License-Identifier: Apache-2.0
#include "PlatformLog.h"

#include <android/log.h>

#include <cstdarg>
#include <cstdio>

#include "Ends.h"
#include "IntendedAssertions.h"

namespace android::ogm::fuzz {

namespace {

constexpr size_t kTextBufferSize = 1024;

LogObserver* gObserver = nullptr;
bool gComposed = false;

}  // namespace

void setLogObserver(LogObserver* observer) {
    gObserver = observer;
}

void setLogComposed(bool composed) {
    gComposed = composed;
}

}  // namespace android::ogm::fuzz

using namespace android::ogm::fuzz;

int __android_log_print(int /*priority*/, const char* /*tag*/, const char* format, ...) {
    if (gObserver != nullptr) {
        gObserver->onLogLine(format);
    }
    if (gComposed) {
        char text[kTextBufferSize];
        va_list arguments;
        va_start(arguments, format);
        (void)std::vsnprintf(text, sizeof(text), format, arguments);
        va_end(arguments);
    }
    return 1;
}

void __android_log_assert(const char* condition, const char* tag, const char* format, ...) {
    char text[kTextBufferSize] = {};
    if (format != nullptr) {
        va_list arguments;
        va_start(arguments, format);
        (void)std::vsnprintf(text, sizeof(text), format, arguments);
        va_end(arguments);
    }
    const IntendedAssertion* const intended = findIntendedAssertion(tag, text);
    if (intended == nullptr || !intended->byFile) {
        finding("assertion under \"%s\": %s %s", tag == nullptr ? "" : tag, text,
                condition == nullptr ? "" : condition);
    }
    throw IntendedEnd{};
}
