// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ogmprobe {

/** An entry of a format, known to this program or not. */
struct FormatEntry {
    std::string name;
    /** With its type: "int32_t(176)". */
    std::string value;

    bool operator==(const FormatEntry&) const = default;
};

/** Returns the entries of a text of `AMediaFormat_toString`, in their order. */
std::vector<FormatEntry> formatEntries(std::string_view text);

}  // namespace ogmprobe
