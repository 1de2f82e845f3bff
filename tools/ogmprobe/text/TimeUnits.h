// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace ogmprobe {

inline constexpr int64_t kUsPerSecond = 1'000'000;
inline constexpr int64_t kUsPerMillisecond = 1'000;

/** Stream headers have times in units of 100 ns. */
inline constexpr uint64_t kUnitsPerUs = 10;
inline constexpr uint64_t kUnitsPerSecond = 10'000'000;

}  // namespace ogmprobe
