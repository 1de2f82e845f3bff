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

/** A size_t, told from the other types of that width. */
struct Size {
    size_t value;
};

using FormatValue = std::variant<int32_t, int64_t, float, double, Size, Rect, std::string,
                                 std::vector<uint8_t>>;

/** A format of the framework's own, whose name tells it from others in the record. */
AMediaFormat* newFormat(std::string name);

/** All entries, in the order in which they were first set. */
std::string formatText(const AMediaFormat* format);

/** Without a trace in the record. */
const FormatValue* findValue(const AMediaFormat* format, const std::string& key);
void clearEntries(AMediaFormat* format);

}  // namespace android::ogm::trace
