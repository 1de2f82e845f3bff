// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace android::log {

/** Whether a message of this priority and tag (null: the default tag) is to be logged. */
bool isLoggable(int priority, const char* tag, int defaultLevel);

}  // namespace android::log
