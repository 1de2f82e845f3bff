// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fmt/core.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace ogmprobe {

inline std::string withoutLineEnd(const std::string& text) {
    return text.substr(0, text.find_last_not_of(" \n") + 1);
}

/** A log line in the usual form: "D Tag: text". */
inline std::string logText(int32_t priority, const std::string& tag, const std::string& text) {
    constexpr std::string_view kLevels = "??VDIWEF";
    const auto level = static_cast<size_t>(priority);
    return fmt::format("{} {}: {}", level < kLevels.size() ? kLevels[level] : '?', tag,
                       withoutLineEnd(text));
}

}  // namespace ogmprobe
