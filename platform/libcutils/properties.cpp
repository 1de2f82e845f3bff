// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include <string.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "ErrnoRestorer.h"

using android::ErrnoRestorer;

namespace {

constexpr std::string_view kTrueValues[] = {"1", "y", "yes", "true", "on"};
constexpr std::string_view kFalseValues[] = {"0", "n", "no", "false", "off"};

template <size_t N>
bool contains(const std::string_view (&values)[N], std::string_view value) {
    return std::find(std::begin(values), std::end(values), value) != std::end(values);
}

}  // namespace

int property_get(const char* key, char* value, const char* default_value) {
    const ErrnoRestorer restorer;
    auto length = static_cast<size_t>(__system_property_get(key, value));
    if (length == 0 && default_value != nullptr) {
        length = strnlen(default_value, PROPERTY_VALUE_MAX - 1);
        memmove(value, default_value, length);
        value[length] = '\0';
    }
    return static_cast<int>(length);
}

int8_t property_get_bool(const char* key, int8_t default_value) {
    if (key == nullptr) {
        return default_value;
    }
    const ErrnoRestorer restorer;
    char value[PROPERTY_VALUE_MAX];
    __system_property_get(key, value);
    if (contains(kTrueValues, value)) {
        return 1;
    }
    if (contains(kFalseValues, value)) {
        return 0;
    }
    return default_value;
}
