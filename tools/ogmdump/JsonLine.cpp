// SPDX-License-Identifier: Apache-2.0
#include "JsonLine.h"

#include <cstdio>

namespace ogmdump {
namespace {

std::string escaped(char letter) {
    const auto code = static_cast<unsigned char>(letter);
    constexpr unsigned char kFirstPrintable = 0x20;
    constexpr unsigned char kLastAscii = 0x7e;
    if (letter == '"' || letter == '\\') {
        return {'\\', letter};
    }
    if (code >= kFirstPrintable && code <= kLastAscii) {
        return {letter};
    }
    char text[sizeof("\\u0000")];
    std::snprintf(text, sizeof(text), "\\u%04x", code);
    return text;
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char letter : text) {
        result += escaped(letter);
    }
    return result + "\"";
}

}  // namespace

JsonLine& JsonLine::member(const char* name, const std::string& value) {
    mMembers += (mMembers.size() > 1 ? "," : "") + quoted(name) + ":" + value;
    return *this;
}

JsonLine& JsonLine::text(const char* name, const std::string& value) {
    return member(name, quoted(value));
}

JsonLine& JsonLine::number(const char* name, int64_t value) {
    return member(name, std::to_string(value));
}

JsonLine& JsonLine::flag(const char* name, bool value) {
    return member(name, value ? "true" : "false");
}

JsonLine& JsonLine::null(const char* name) {
    return member(name, "null");
}

JsonLine& JsonLine::text(const char* name, const std::optional<std::string>& value) {
    return value ? text(name, *value) : null(name);
}

JsonLine& JsonLine::number(const char* name, const std::optional<int64_t>& value) {
    return value ? number(name, *value) : null(name);
}

JsonLine& JsonLine::array(const char* name, const std::optional<JsonLine>& only) {
    return member(name, "[" + (only ? only->line() : "") + "]");
}

}  // namespace ogmdump
