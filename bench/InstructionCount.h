// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>

namespace android::ogm::bench {

/**
 * Instructions that this thread has executed in user space so far; nothing where the machine has no
 * counter for them or keeps it to itself.
 */
std::optional<uint64_t> instructionCount();

}  // namespace android::ogm::bench
