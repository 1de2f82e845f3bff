// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace ogmprobe {

/** Returns a value for a line of comma-separated values (RFC 4180), quoted if needed. */
inline std::string csvText(const std::string& value) {
    if (value.find_first_of(",\"\r\n") == std::string::npos) {
        return value;
    }
    std::string quoted = "\"";
    for (const char letter : value) {
        quoted += letter;
        quoted += letter == '"' ? "\"" : "";
    }
    return quoted + "\"";
}

inline std::string csvLine(const std::vector<std::string>& values) {
    std::string line;
    const char* separator = "";
    for (const std::string& value : values) {
        line += separator + csvText(value);
        separator = ",";
    }
    return line + "\n";
}

}  // namespace ogmprobe
