// SPDX-License-Identifier: Apache-2.0
#include "ExpectAssertion.h"

#include <android/log.h>
#include <errno.h>
#include <stdio.h>

void printPlainLog() {
    __android_log_set_logger([](const __android_log_message* message) {
        fputs(plainLogLine(message->priority, message->tag, message->message).c_str(), stderr);
    });
}

std::string plainLogLine(int priority, const char* tag, const std::string& text) {
    return std::to_string(priority) + " " + tag + ": " + text + "\n";
}

std::string assertionOutput(const char* tag, const std::string& text) {
    const char* shownTag = tag != nullptr ? tag : program_invocation_short_name;
    return text + "\n" + plainLogLine(ANDROID_LOG_FATAL, shownTag, text);
}
