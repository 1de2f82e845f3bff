// SPDX-License-Identifier: Apache-2.0
#include "Logger.h"

#include <atomic>

#include "DefaultTag.h"
#include "ErrnoRestorer.h"

namespace android::log {

namespace {

std::atomic<__android_logger_function> gLogger{__android_log_logd_logger};

// The other buffers hold binary records or belong to the log service itself.
bool takesTexts(int32_t bufferId) {
    switch (bufferId) {
        case LOG_ID_MAIN:
        case LOG_ID_RADIO:
        case LOG_ID_SYSTEM:
        case LOG_ID_CRASH:
        case LOG_ID_DEFAULT:
            return true;
        default:
            return false;
    }
}

}  // namespace

void deliver(const __android_log_message& message) {
    const ErrnoRestorer restorer;
    if (!takesTexts(message.buffer_id)) {
        return;
    }
    if (message.tag != nullptr) {
        gLogger.load()(&message);
        return;
    }
    const auto tag = defaultTag();
    __android_log_message tagged = message;
    tagged.tag = tag->c_str();
    gLogger.load()(&tagged);
}

}  // namespace android::log

void __android_log_set_logger(__android_logger_function logger) {
    android::log::gLogger.store(logger);
}

void __android_log_write_log_message(struct __android_log_message* log_message) {
    android::log::deliver(*log_message);
}
