// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android::ogm::test {

/** All times are in microseconds. */
inline constexpr int64_t kSecond = 1'000'000;

}  // namespace android::ogm::test
