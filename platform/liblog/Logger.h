// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <android/log.h>

namespace android::log {

/** Hands the message to the logger of the process, if its buffer is one that takes texts. */
void deliver(const __android_log_message& message);

}  // namespace android::log
