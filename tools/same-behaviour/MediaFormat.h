// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace android::ogm::trace {

using Rect = std::array<int32_t, 4>;

/** A size_t, distinct from the other types of that width. */
struct Size {
    size_t value;
};

using FormatValue = std::variant<int32_t, int64_t, float, double, Size, Rect, std::string,
                                 std::vector<uint8_t>>;

/** Returns a format of the framework's. The record shows its name. */
AMediaFormat* newFormat(std::string name);

/** Returns all entries as text, in the order in which they were first set. */
std::string formatText(const AMediaFormat* format);

/** Finds a value without recording the access. */
const FormatValue* findValue(const AMediaFormat* format, const std::string& key);
void clearEntries(AMediaFormat* format);

}  // namespace android::ogm::trace
