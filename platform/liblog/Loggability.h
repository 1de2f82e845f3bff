// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

#include <algorithm>
#include <atomic>
#include <limits>

#include <android/log.h>
#include <sys/system_properties.h>

// Most messages are filtered out and cost little else, so what decides on them is all inline.
namespace android::log {

/** Above every level: what a tag has that no property speaks of. */
constexpr int kNotConfigured = std::numeric_limits<int>::max();

/** The level of the tag that a thread logged with last, good until any property changes. */
struct CachedLevel {
    static constexpr size_t kMaxTagLength = 64;

    bool isOf(const char* otherTag, uint32_t otherSerial) const {
        return valid && serial == otherSerial && strcmp(tag, otherTag) == 0;
    }

    bool valid;
    uint32_t serial;
    int level;
    char tag[kMaxTagLength + 1];
};

// Needs no destructor: messages may still be logged while the thread ends. Found without a call,
// which "thread_local" cannot promise where only the declaration is seen.
extern __attribute__((__tls_model__("initial-exec"))) __thread CachedLevel tCachedLevel;

extern std::atomic<int32_t> gMinimumPriority;

/** The level that the properties give the tag; remembers it for the thread. */
int readLevel(const char* tag, uint32_t serial);

inline int levelOfTag(const char* tag, int defaultLevel) {
    // Before the properties are read, so that a change meanwhile is seen the next time.
    const uint32_t serial = __system_property_area_serial();
    const int configured =
            tCachedLevel.isOf(tag, serial) ? tCachedLevel.level : readLevel(tag, serial);
    const int minimum = gMinimumPriority.load();
    if (minimum == ANDROID_LOG_DEFAULT) {
        return configured == kNotConfigured ? defaultLevel : configured;
    }
    return std::min(configured, minimum);
}

/** As isLoggable() for the default tag. */
bool isLoggableWithDefaultTag(int priority, int defaultLevel);

/** True if a message of this priority and tag (null for the default tag) may pass. */
inline bool isLoggable(int priority, const char* tag, int defaultLevel) {
    if (tag == nullptr) {
        return isLoggableWithDefaultTag(priority, defaultLevel);
    }
    return priority >= levelOfTag(tag, defaultLevel);
}

}  // namespace android::log
