// SPDX-License-Identifier: Apache-2.0
#include "Markup.h"

#include <array>
#include <nlohmann/json.hpp>

namespace ogmprobe::timeline {
namespace {

constexpr std::string_view kReplacement = "\xef\xbf\xbd";
// U+FFFE and U+FFFF, which XML does not allow.
constexpr std::array<std::string_view, 2> kNonCharacters = {"\xef\xbf\xbe", "\xef\xbf\xbf"};

std::string validUtf8(std::string_view text) {
    // Writing JSON replaces invalid UTF-8; reading it returns the rest unchanged.
    using nlohmann::json;
    return json::parse(json(text).dump(-1, ' ', false, json::error_handler_t::replace))
            .get<std::string>();
}

bool beginsNonCharacter(std::string_view text) {
    return text.starts_with(kNonCharacters[0]) || text.starts_with(kNonCharacters[1]);
}

std::string escapedCharacter(char character) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return "&gt;";
        case '"':
            return "&quot;";
        case '\'':
            return "&#39;";
        default:
            break;
    }
    const bool isControl = static_cast<unsigned char>(character) < 0x20;
    return isControl ? std::string(kReplacement) : std::string(1, character);
}

}  // namespace

std::string escaped(std::string_view text) {
    const std::string valid = validUtf8(text);
    std::string result;
    for (size_t i = 0; i < valid.size(); ++i) {
        if (beginsNonCharacter(std::string_view(valid).substr(i))) {
            result += kReplacement;
            i += kReplacement.size() - 1;
        } else {
            result += escapedCharacter(valid[i]);
        }
    }
    return result;
}

std::string filledIn(std::string_view page, const std::map<std::string_view, std::string>& values) {
    constexpr std::string_view kOpening = "{{";
    constexpr std::string_view kClosing = "}}";
    std::string result;
    while (true) {
        const size_t opening = page.find(kOpening);
        const size_t closing = page.find(kClosing, opening);
        if (closing == std::string_view::npos) {
            return result.append(page);
        }
        const size_t name = opening + kOpening.size();
        result.append(page.substr(0, opening));
        result.append(values.at(page.substr(name, closing - name)));
        page.remove_prefix(closing + kClosing.size());
    }
}

}  // namespace ogmprobe::timeline
