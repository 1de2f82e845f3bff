// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "base/Wrap.h"

/**
 * Granule positions as times. The numbers come from a file: products wrap, quotients are truncated,
 * and a negative unit or rate counts as the large unsigned number that it is in 64 bits.
 */
namespace android::ogm {

/** Microseconds that `units` of `unit100ns` x 100 ns take. */
constexpr uint64_t unitsToUs(uint64_t units, int64_t unit100ns) {
    constexpr uint64_t kUnitsPerUs = 10;
    return wrapMul(units, static_cast<uint64_t>(unit100ns)) / kUnitsPerUs;
}

/** Microseconds that `samples` take at `sampleRate` Hz; 0 at 0 Hz. */
constexpr uint64_t samplesToUs(uint64_t samples, int64_t sampleRate) {
    constexpr uint64_t kUsPerSecond = 1'000'000;
    return wrapDiv(wrapMul(samples, kUsPerSecond), static_cast<uint64_t>(sampleRate));
}

}  // namespace android::ogm
