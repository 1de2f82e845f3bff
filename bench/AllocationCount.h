// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android::ogm::bench {

/**
 * Returns how many blocks of memory this process has requested so far, by malloc, new and the like.
 */
uint64_t allocationCount();

}  // namespace android::ogm::bench
