// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android::ogm::bench {

/** Blocks of memory that this process has asked for so far, by malloc, new and their kin. */
uint64_t allocationCount();

}  // namespace android::ogm::bench
