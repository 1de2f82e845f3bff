// SPDX-License-Identifier: Apache-2.0
#include <cutils/properties.h>

#include <errno.h>
#include <inttypes.h>

#include <limits>

#include "ErrnoRestorer.h"

namespace {

template <typename Integer>
Integer readInteger(const char* key, Integer defaultValue) {
    if (key == nullptr) {
        return defaultValue;
    }
    const android::ErrnoRestorer restorer;
    char text[PROPERTY_VALUE_MAX];
    __system_property_get(key, text);

    constexpr int kBaseFromPrefix = 0;
    char* end = nullptr;
    errno = 0;
    const intmax_t number = strtoimax(text, &end, kBaseFromPrefix);
    const bool isNumber = end != text && errno != ERANGE;
    const bool fits = number >= std::numeric_limits<Integer>::min() &&
                      number <= std::numeric_limits<Integer>::max();
    return isNumber && fits ? static_cast<Integer>(number) : defaultValue;
}

}  // namespace

int32_t property_get_int32(const char* key, int32_t default_value) {
    return readInteger<int32_t>(key, default_value);
}

int64_t property_get_int64(const char* key, int64_t default_value) {
    return readInteger<int64_t>(key, default_value);
}
