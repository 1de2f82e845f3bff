// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

/** Of the texts of the AMEDIAFORMAT_KEY_ variables. The linker names its ends. */
#define OGM_FORMAT_KEYS_SECTION "ogm_format_keys"

extern "C" {
extern const char __start_ogm_format_keys[];
extern const char __stop_ogm_format_keys[];
}

namespace android::mediandk {

/**
 * True if `name` is the text of an AMEDIAFORMAT_KEY_ variable itself, not one that reads the same.
 * Two such names are the same only if their addresses are.
 */
inline bool isFormatKey(const char* name) {
    const std::less<> before;
    return !before(name, __start_ogm_format_keys) && before(name, __stop_ogm_format_keys) &&
           (name == __start_ogm_format_keys || name[-1] == '\0');
}

}  // namespace android::mediandk
