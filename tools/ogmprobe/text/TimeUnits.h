// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace ogmprobe {

inline constexpr int64_t kUsPerSecond = 1'000'000;
inline constexpr int64_t kUsPerMillisecond = 1'000;

}  // namespace ogmprobe
