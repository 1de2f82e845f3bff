// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include <cstdlib>
#include <cstring>
#include <utility>

#include "Platform.h"
#include "Record.h"

namespace android::ogm::trace {

namespace {

std::map<std::string, std::string>& properties() {
    static std::map<std::string, std::string> all;
    return all;
}

/** Null for a property without a value. */
const char* valueOf(const char* key) {
    const auto found = properties().find(key);
    return found == properties().end() ? nullptr : found->second.c_str();
}

template <typename Number>
Number numberOf(const char* function, const char* key, Number defaultValue) {
    const char* const value = valueOf(key);
    record(Kind::kProperty, "%s %s default %lld -> %s", function, key,
           static_cast<long long>(defaultValue), value == nullptr ? "(none)" : value);
    return value == nullptr ? defaultValue : static_cast<Number>(strtoll(value, nullptr, 0));
}

}  // namespace

void setProperties(std::map<std::string, std::string> all) {
    properties() = std::move(all);
}

}  // namespace android::ogm::trace

using namespace android::ogm::trace;

int property_get(const char* key, char* value, const char* default_value) {
    const char* found = valueOf(key);
    record(Kind::kProperty, "property_get %s default %s -> %s", key,
           default_value == nullptr ? "(none)" : default_value,
           found == nullptr ? "(none)" : found);
    if (found == nullptr) {
        found = default_value == nullptr ? "" : default_value;
    }
    const size_t length = strnlen(found, PROPERTY_VALUE_MAX - 1);
    memcpy(value, found, length);
    value[length] = '\0';
    return static_cast<int>(length);
}

int8_t property_get_bool(const char* key, int8_t default_value) {
    return numberOf("property_get_bool", key, default_value);
}

int32_t property_get_int32(const char* key, int32_t default_value) {
    return numberOf("property_get_int32", key, default_value);
}

int64_t property_get_int64(const char* key, int64_t default_value) {
    return numberOf("property_get_int64", key, default_value);
}

int property_set(const char* key, const char* value) {
    record(Kind::kProperty, "property_set %s to %s", key, value == nullptr ? "(none)" : value);
    return 0;
}
