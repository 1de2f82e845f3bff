// SPDX-License-Identifier: Apache-2.0
#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <string_view>

#include <android/log.h>

#include "Print.h"

namespace {

std::atomic<__android_aborter_function> gAborter{__android_log_default_aborter};

// Straight to the descriptor: the stdio stream's state is no longer reliable.
void writeToDescriptor(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(STDERR_FILENO, bytes.data(), bytes.size());
        if (written > 0) {
            bytes.remove_prefix(static_cast<size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

__attribute__((__format__(printf, 4, 0))) void composeText(char* text, size_t size,
                                                           const char* condition,
                                                           const char* format, va_list arguments) {
    if (format != nullptr) {
        vsnprintf(text, size, format, arguments);
    } else if (condition != nullptr) {
        snprintf(text, size, "Assertion failed: %s", condition);
    } else {
        snprintf(text, size, "Unspecified assertion failed");
    }
}

}  // namespace

void __android_log_set_aborter(__android_aborter_function aborter) {
    gAborter.store(aborter);
}

void __android_log_call_aborter(const char* abort_message) {
    gAborter.load()(abort_message);
}

// The device keeps the message for its crash dump. Here there is no crash dump.
void __android_log_default_aborter(const char* /*abort_message*/) {
    abort();
}

void __android_log_assert(const char* cond, const char* tag, const char* fmt, ...) {
    char text[android::log::kTextBufferSize];
    text[0] = '\0';
    va_list arguments;
    va_start(arguments, fmt);
    composeText(text, sizeof text, cond, fmt, arguments);
    va_end(arguments);

    writeToDescriptor(std::string(text).append("\n"));
    android::log::write(LOG_ID_MAIN, ANDROID_LOG_FATAL, tag, text);
    gAborter.load()(text);
    abort();
}
