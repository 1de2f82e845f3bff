// SPDX-License-Identifier: Apache-2.0
#include "plugin/FormatEntries.h"

#include <algorithm>
#include <array>

namespace ogmprobe {
namespace {

constexpr std::string_view kBetween = ", ";
constexpr std::string_view kNameSeparator = ": ";

constexpr std::array<std::string_view, 8> kTypes = {"int32", "int64", "float",  "double",
                                                    "size",  "Rect",  "string", "data"};

/** Returns whether a name and a typed value begin there. Needed because texts may have anything. */
bool beginsEntry(std::string_view text) {
    const size_t colon = text.find(kNameSeparator);
    if (colon == std::string_view::npos) {
        return false;
    }
    const std::string_view value = text.substr(colon + kNameSeparator.size());
    return text.substr(0, colon).find(kBetween) == std::string_view::npos &&
           std::any_of(kTypes.begin(), kTypes.end(),
                       [value](std::string_view type) { return value.starts_with(type); });
}

size_t endOfEntry(std::string_view text) {
    size_t end = text.find(kBetween);
    while (end != std::string_view::npos && !beginsEntry(text.substr(end + kBetween.size()))) {
        end = text.find(kBetween, end + 1);
    }
    return std::min(end, text.size());
}

}  // namespace

std::vector<FormatEntry> formatEntries(std::string_view text) {
    if (text.ends_with('}')) {
        text.remove_suffix(1);
    }
    std::vector<FormatEntry> entries;
    while (!text.empty()) {
        const size_t end = endOfEntry(text);
        const std::string_view entry = text.substr(0, end);
        const size_t colon = std::min(entry.find(kNameSeparator), entry.size());
        entries.push_back(
                {std::string(entry.substr(0, colon)),
                 std::string(entry.substr(std::min(colon + kNameSeparator.size(), entry.size())))});
        text.remove_prefix(std::min(end + kBetween.size(), text.size()));
    }
    return entries;
}

}  // namespace ogmprobe
