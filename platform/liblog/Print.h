// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>

namespace android::log {

/** Size of a formatted text with its final zero; longer texts are cut. */
constexpr size_t kTextBufferSize = 1024;

/** Logs a text. Returns 1, or -EPERM if it is filtered out. */
int write(int bufferId, int priority, const char* tag, const char* text);

}  // namespace android::log
