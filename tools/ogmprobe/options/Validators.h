// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fmt/core.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdint>
#include <string>

#include "text/TimeText.h"

/** Checks of option values; each describes itself in one line. */
namespace ogmprobe {

/** Not shown in the help, because the option's text says enough. */
inline CLI::Validator wholeNumber(uint64_t least, uint64_t most) {
    return {[least, most](const std::string& text) -> std::string {
                uint64_t value = 0;
                const char* end = text.data() + text.size();
                const auto [stop, error] = std::from_chars(text.data(), end, value);
                if (error == std::errc() && stop == end && value >= least && value <= most) {
                    return "";
                }
                return most == UINT64_MAX
                               ? fmt::format("{} is not a whole number from {} on", text, least)
                               : fmt::format("{} is not a whole number from {} to {}", text, least,
                                             most);
            },
            ""};
}

inline CLI::Validator secondsFromZero() {
    return {[](const std::string& text) -> std::string {
                const auto timeUs = parseSeconds(text);
                return timeUs && *timeUs >= 0 ? "" : text + " is not a number of seconds from 0 on";
            },
            ""};
}

inline CLI::Validator anyName() {
    return {[](const std::string& text) -> std::string {
                return text.empty() ? "an empty name" : "";
            },
            ""};
}

inline CLI::Validator time() {
    return {[](const std::string& text) -> std::string {
                return parseTime(text)
                               ? ""
                               : text + " is not a time: seconds, m:ss or h:mm:ss, as 12.5 or "
                                        "0:01:02.5";
            },
            ""};
}

}  // namespace ogmprobe
