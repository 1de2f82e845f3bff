// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace android::log {

/** True if a message of this priority and tag (null for the default tag) may pass. */
bool isLoggable(int priority, const char* tag, int defaultLevel);

}  // namespace android::log
