// SPDX-License-Identifier: Apache-2.0
#include "Print.h"

#include <errno.h>
#include <stdarg.h>
#include <stdio.h>

#include <android/log.h>

#include "ErrnoRestorer.h"
#include "Loggability.h"
#include "Logger.h"

namespace android::log {

namespace {

constexpr int kLogged = 1;

bool mayPass(int priority, const char* tag) {
    return isLoggable(priority, tag, ANDROID_LOG_VERBOSE);
}

void deliverText(int bufferId, int priority, const char* tag, const char* text) {
    deliver({sizeof(__android_log_message), bufferId, priority, tag, nullptr, 0, text});
}

__attribute__((__format__(printf, 4, 0))) int deliverFormatted(int bufferId, int priority,
                                                               const char* tag, const char* format,
                                                               va_list arguments) {
    const ErrnoRestorer restorer;
    char text[kTextBufferSize];
    text[0] = '\0';
    vsnprintf(text, sizeof text, format, arguments);
    deliverText(bufferId, priority, tag, text);
    return kLogged;
}

}  // namespace

int write(int bufferId, int priority, const char* tag, const char* text) {
    if (!mayPass(priority, tag)) {
        return -EPERM;
    }
    deliverText(bufferId, priority, tag, text);
    return kLogged;
}

}  // namespace android::log

int __android_log_write(int prio, const char* tag, const char* text) {
    return android::log::write(LOG_ID_MAIN, prio, tag, text);
}

int __android_log_buf_write(int bufID, int prio, const char* tag, const char* text) {
    return android::log::write(bufID, prio, tag, text);
}

int __android_log_vprint(int prio, const char* tag, const char* fmt, va_list ap) {
    return android::log::mayPass(prio, tag)
                   ? android::log::deliverFormatted(LOG_ID_MAIN, prio, tag, fmt, ap)
                   : -EPERM;
}

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
    if (!android::log::mayPass(prio, tag)) {
        return -EPERM;
    }
    va_list arguments;
    va_start(arguments, fmt);
    const int result = android::log::deliverFormatted(LOG_ID_MAIN, prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}

int __android_log_buf_print(int bufID, int prio, const char* tag, const char* fmt, ...) {
    if (!android::log::mayPass(prio, tag)) {
        return -EPERM;
    }
    va_list arguments;
    va_start(arguments, fmt);
    const int result = android::log::deliverFormatted(bufID, prio, tag, fmt, arguments);
    va_end(arguments);
    return result;
}
