// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "base/Wrap.h"

/**
 * Converts granule positions to times. The numbers come from a file: products wrap, quotients are
 * truncated, and a negative unit or rate is converted to a large unsigned 64-bit number.
 */
namespace android::ogm {

/** The duration of `units`, of `unit100ns` x 100 ns each, in microseconds. */
constexpr uint64_t unitsToUs(uint64_t units, int64_t unit100ns) {
    constexpr uint64_t kUnitsPerUs = 10;
    return wrapMul(units, static_cast<uint64_t>(unit100ns)) / kUnitsPerUs;
}

/** The duration of `samples` at `sampleRate` Hz in microseconds; 0 at 0 Hz. */
constexpr uint64_t samplesToUs(uint64_t samples, int64_t sampleRate) {
    constexpr uint64_t kUsPerSecond = 1'000'000;
    return wrapDiv(wrapMul(samples, kUsPerSecond), static_cast<uint64_t>(sampleRate));
}

}  // namespace android::ogm
