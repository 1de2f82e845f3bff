// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <android/log.h>

namespace android::log {

/** Passes the message to the process's logger if its buffer is one for texts. */
void deliver(const __android_log_message& message);

}  // namespace android::log
