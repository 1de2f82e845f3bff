// SPDX-License-Identifier: Apache-2.0
#include "sync/GranuleClock.h"

#include <algorithm>
#include <limits>

#include "text/TimeUnits.h"

namespace ogmprobe {

GranuleClock::GranuleClock(const StreamHeader& header) {
    if (header.kind == StreamKind::kVideo) {
        mUnits = header.timeUnit;
        mGranules = 1;
    } else if (header.kind == StreamKind::kAudio) {
        mUnits = header.timeUnit;
        mGranules = header.samplesPerUnit;
    } else if (header.kind == StreamKind::kText) {
        mUnits = header.timeUnit;
        // Writers of text streams leave it 0.
        mGranules = std::max<uint64_t>(header.samplesPerUnit, 1);
    }
}

std::optional<int64_t> GranuleClock::timeUs(int64_t granule) const {
    uint64_t divisor = 0;
    if (mUnits == 0 || mGranules == 0 || __builtin_mul_overflow(mGranules, kUnitsPerUs, &divisor)) {
        return std::nullopt;
    }
    const auto bits = static_cast<uint64_t>(granule);
    const uint64_t magnitude = granule < 0 ? ~bits + 1 : bits;
    uint64_t whole = 0;
    uint64_t rest = 0;
    uint64_t timeUs = 0;
    if (__builtin_mul_overflow(magnitude / divisor, mUnits, &whole) ||
        __builtin_mul_overflow(magnitude % divisor, mUnits, &rest) ||
        __builtin_add_overflow(whole, rest / divisor, &timeUs) ||
        timeUs > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) {
        return std::nullopt;
    }
    return granule < 0 ? -static_cast<int64_t>(timeUs) : static_cast<int64_t>(timeUs);
}

}  // namespace ogmprobe
