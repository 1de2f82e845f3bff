// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ogmprobe {

/** A row of a standard's table: a code and its meaning. */
struct NamedCode {
    uint32_t code;
    std::string_view name;
};

/** Empty for a code that is not in the table. */
template <size_t Size>
std::string nameOf(const std::array<NamedCode, Size>& table, uint32_t code) {
    const auto* found = std::find_if(table.begin(), table.end(),
                                     [code](const NamedCode& row) { return row.code == code; });
    return found == table.end() ? "" : std::string(found->name);
}

}  // namespace ogmprobe
