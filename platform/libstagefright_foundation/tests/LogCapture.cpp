// SPDX-License-Identifier: Apache-2.0
#include "LogCapture.h"

#include <android/log.h>

namespace {

std::vector<LogLine> gLines;

void collect(const __android_log_message* message) {
    gLines.push_back({message->priority, message->tag, message->message});
}

}  // namespace

LogCapture::LogCapture() {
    gLines.clear();
    __android_log_set_logger(collect);
}

LogCapture::~LogCapture() {
    __android_log_set_logger(__android_log_stderr_logger);
}

const std::vector<LogLine>& LogCapture::lines() const {
    return gLines;
}
