// SPDX-License-Identifier: Apache-2.0
#include "Loggability.h"

#include <ctype.h>
#include <stdint.h>

#include <algorithm>
#include <atomic>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <android/log.h>
#include <sys/system_properties.h>

#include "DefaultTag.h"
#include "ErrnoRestorer.h"
#include "PropertyValues.h"

namespace android::log {

namespace {

constexpr char kPersistentProperty[] = "persist.log.tag";
constexpr char kProperty[] = "log.tag";

/** Higher than all levels: no property sets one. */
constexpr int kNotConfigured = std::numeric_limits<int>::max();

/** A serial that no process reaches. */
constexpr uint32_t kNoSerial = std::numeric_limits<uint32_t>::max();

/**
 * The lowest level in any property, valid until a property changes. Aligned so that reads and
 * writes are atomic.
 */
struct alignas(uint64_t) LowestLevel {
    uint32_t serial;
    int level;
};

std::atomic<LowestLevel> gLowestLevel{LowestLevel{kNoSerial, kNotConfigured}};
std::atomic<int32_t> gMinimumPriority{ANDROID_LOG_DEFAULT};

std::optional<int> levelOfLetter(char letter) {
    switch (toupper(static_cast<unsigned char>(letter))) {
        case 'V':
            return ANDROID_LOG_VERBOSE;
        case 'D':
            return ANDROID_LOG_DEBUG;
        case 'I':
            return ANDROID_LOG_INFO;
        case 'W':
            return ANDROID_LOG_WARN;
        case 'E':
            return ANDROID_LOG_ERROR;
        case 'F':
        case 'A':
            return ANDROID_LOG_FATAL;
        case 'S':
            return ANDROID_LOG_SILENT;
        default:
            return std::nullopt;
    }
}

std::optional<int> levelInProperty(const char* name) {
    char value[PROP_VALUE_MAX];
    __system_property_get(name, value);
    return levelOfLetter(value[0]);
}

std::optional<int> levelInPropertyOfTag(const char* prefix, std::string_view tag) {
    return levelInProperty(std::string(prefix).append(".").append(tag).c_str());
}

int lowestLevelWithPrefix(const char* prefix) {
    int lowest = kNotConfigured;
    for (const std::string& value : properties::valuesWithPrefix(prefix)) {
        lowest = std::min(lowest, levelOfLetter(value[0]).value_or(kNotConfigured));
    }
    return lowest;
}

std::optional<int> levelInProperties(std::string_view tag) {
    std::optional<int> level = levelInPropertyOfTag(kPersistentProperty, tag);
    if (!level) {
        level = levelInPropertyOfTag(kProperty, tag);
    }
    if (!level) {
        level = levelInProperty(kPersistentProperty);
    }
    if (!level) {
        level = levelInProperty(kProperty);
    }
    return level;
}

/** Cached until a property changes: this alone filters out most messages. */
int lowestLevel() {
    // Read before the properties, so that a change in the meantime is noticed the next time.
    const uint32_t serial = __system_property_area_serial();
    const LowestLevel known = gLowestLevel.load();
    if (known.serial == serial) {
        return known.level;
    }
    const ErrnoRestorer restorer;
    const int level =
            std::min(lowestLevelWithPrefix(kPersistentProperty), lowestLevelWithPrefix(kProperty));
    gLowestLevel.store({serial, level});
    return level;
}

}  // namespace

bool isLoggable(int priority, const char* tag, int defaultLevel) {
    const int minimum = gMinimumPriority.load();
    const int unconfigured = minimum == ANDROID_LOG_DEFAULT ? defaultLevel : minimum;
    const int lowest = lowestLevel();
    if (lowest == kNotConfigured || priority < std::min(lowest, unconfigured)) {
        return priority >= unconfigured;
    }
    const ErrnoRestorer restorer;
    const std::optional<int> level =
            levelInProperties(tag != nullptr ? std::string(tag) : *defaultTag());
    if (!level) {
        return priority >= unconfigured;
    }
    return priority >= (minimum == ANDROID_LOG_DEFAULT ? *level : std::min(*level, minimum));
}

}  // namespace android::log

int __android_log_is_loggable(int prio, const char* tag, int default_prio) {
    return android::log::isLoggable(prio, tag, default_prio) ? 1 : 0;
}

int __android_log_is_loggable_len(int prio, const char* tag, size_t len, int default_prio) {
    if (tag == nullptr || len == 0) {
        return android::log::isLoggable(prio, nullptr, default_prio) ? 1 : 0;
    }
    const std::string text(tag, len);
    return android::log::isLoggable(prio, text.c_str(), default_prio) ? 1 : 0;
}

int32_t __android_log_set_minimum_priority(int32_t priority) {
    return android::log::gMinimumPriority.exchange(priority);
}

int32_t __android_log_get_minimum_priority(void) {
    return android::log::gMinimumPriority.load();
}
