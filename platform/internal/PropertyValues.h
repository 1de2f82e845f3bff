// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace android::properties {

/** Returns the values of all properties whose names begin with `prefix`. */
__attribute__((visibility("default"))) std::vector<std::string> valuesWithPrefix(
        std::string_view prefix);

}  // namespace android::properties
