// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>

#include <stdio.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <string>

namespace {

constexpr char kPriorityLetters[] = "XXVDIWEF";

char letterOf(int32_t priority) {
    return kPriorityLetters[std::clamp<int32_t>(priority, ANDROID_LOG_UNKNOWN, ANDROID_LOG_FATAL)];
}

std::string localTime() {
    const time_t now = time(nullptr);
    struct tm local = {};
    localtime_r(&now, &local);
    char text[sizeof "MM-DD HH:MM:SS"];
    return std::string(text, strftime(text, sizeof text, "%m-%d %H:%M:%S", &local));
}

std::string processAndThread() {
    char text[sizeof "-2147483648 -2147483648"];
    snprintf(text, sizeof text, "%5d %5d", static_cast<int>(getpid()), static_cast<int>(gettid()));
    return text;
}

std::string formatLine(const __android_log_message& message) {
    std::string line = message.tag != nullptr ? message.tag : "nullptr";
    line.append(" ").append(1, letterOf(message.priority));
    line.append(" ").append(localTime()).append(" ").append(processAndThread());
    if (message.file != nullptr) {
        line.append(" ").append(message.file).append(":").append(std::to_string(message.line));
    }
    return line.append("] ").append(message.message).append("\n");
}

void writeToStderr(const __android_log_message& message) {
    // One call for the whole line, so that the lines of several threads do not mix.
    const std::string line = formatLine(message);
    fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void __android_log_stderr_logger(const struct __android_log_message* log_message) {
    writeToStderr(*log_message);
}

void __android_log_logd_logger(const struct __android_log_message* log_message) {
    writeToStderr(*log_message);
}
