// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <cstdarg>
#include <cstdio>

#include "Record.h"

using android::ogm::trace::Kind;
using android::ogm::trace::record;
using android::ogm::trace::recordEnd;

namespace {

constexpr size_t kTextBufferSize = 1024;
constexpr int kLogged = 1;

int log(int priority, const char* tag, const char* text) {
    constexpr char kLetters[] = "??VDIWEF";
    record(Kind::kLog, "%c %s: \"%s\"", kLetters[priority & 7], tag == nullptr ? "(null)" : tag,
           text);
    return kLogged;
}

__attribute__((format(printf, 3, 0))) int logFormatted(int priority, const char* tag,
                                                       const char* format, va_list arguments) {
    char text[kTextBufferSize];
    (void)vsnprintf(text, sizeof(text), format, arguments);
    return log(priority, tag, text);
}

}  // namespace

int __android_log_write(int priority, const char* tag, const char* text) {
    return log(priority, tag, text);
}

int __android_log_buf_write(int /*buffer*/, int priority, const char* tag, const char* text) {
    return log(priority, tag, text);
}

int __android_log_vprint(int priority, const char* tag, const char* format, va_list arguments) {
    return logFormatted(priority, tag, format, arguments);
}

int __android_log_print(int priority, const char* tag, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = logFormatted(priority, tag, format, arguments);
    va_end(arguments);
    return result;
}

int __android_log_buf_print(int /*buffer*/, int priority, const char* tag, const char* format,
                            ...) {
    va_list arguments;
    va_start(arguments, format);
    const int result = logFormatted(priority, tag, format, arguments);
    va_end(arguments);
    return result;
}

int __android_log_is_loggable(int /*priority*/, const char* /*tag*/, int /*defaultPriority*/) {
    return 1;
}

void __android_log_assert(const char* condition, const char* tag, const char* format, ...) {
    if (format != nullptr) {
        va_list arguments;
        va_start(arguments, format);
        (void)logFormatted(ANDROID_LOG_FATAL, tag, format, arguments);
        va_end(arguments);
    } else {
        (void)log(ANDROID_LOG_FATAL, tag, condition == nullptr ? "(no condition)" : condition);
    }
    recordEnd("an assertion ends the process");
}
