// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdint.h>

#include <algorithm>
#include <atomic>
#include <limits>

#include <android/log.h>
#include <sys/system_properties.h>

// Most messages are filtered out and cost little else, so what decides on them is all inline.
namespace android::log {

/** Above every level: what no property speaks of. */
constexpr int kNotConfigured = std::numeric_limits<int>::max();

/**
 * The lowest level that a property gives to any tag, good as long as no property changes. Aligned
 * so that it is read and written at once.
 */
struct alignas(uint64_t) LowestLevel {
    uint32_t serial;
    int level;
};

extern std::atomic<LowestLevel> gLowestLevel;
extern std::atomic<int32_t> gMinimumPriority;

/** Asks the properties, and remembers what they say. */
int findLowestLevel(uint32_t serial);

inline int lowestLevel() {
    // Before the properties are read, so that a change meanwhile is seen the next time.
    const uint32_t serial = __system_property_area_serial();
    const LowestLevel known = gLowestLevel.load();
    return known.serial == serial ? known.level : findLowestLevel(serial);
}

/** As isLoggable(), whatever the other tags' levels. */
bool isLoggableByTag(int priority, const char* tag, int defaultLevel);

/** True if a message of this priority and tag (null for the default tag) may pass. */
inline bool isLoggable(int priority, const char* tag, int defaultLevel) {
    const int lowest = lowestLevel();
    const int minimum = gMinimumPriority.load();
    const int unconfigured = minimum == ANDROID_LOG_DEFAULT ? defaultLevel : minimum;
    if (priority < std::min(lowest, unconfigured)) {
        return false;
    }
    return lowest == kNotConfigured || isLoggableByTag(priority, tag, defaultLevel);
}

}  // namespace android::log
