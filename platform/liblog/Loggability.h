// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace android::log {

/** Returns true if a message of this priority and tag (null: the default tag) may pass. */
bool isLoggable(int priority, const char* tag, int defaultLevel);

}  // namespace android::log
