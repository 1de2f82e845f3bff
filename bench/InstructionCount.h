// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

namespace android::ogm::bench {

/**
 * Returns the instructions that this thread has executed in user space so far; nothing if the
 * machine has no counter for them or does not allow its use.
 */
std::optional<uint64_t> instructionCount();

}  // namespace android::ogm::bench
