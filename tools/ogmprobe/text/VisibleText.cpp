// SPDX-License-Identifier: Apache-2.0
#include "text/VisibleText.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace ogmprobe {
namespace {

/** A character, or a byte that is not part of one. */
struct Character {
    uint32_t code = 0;
    size_t size = 1;
    bool valid = false;
};

struct Range {
    uint32_t first;
    uint32_t last;
};

/** Characters that a terminal acts on instead of showing them. */
constexpr std::array<Range, 9> kUnseen = {{
        {0x00, 0x1f},
        {0x7f, 0x9f},
        {0x061c, 0x061c},  // Arabic letter mark
        {0x200b, 0x200f},  // zero width, marks of direction
        {0x2028, 0x202e},  // separators of lines and paragraphs, embeddings
        {0x2060, 0x2069},  // zero width, isolates
        {0xfeff, 0xfeff},
        {0xfff9, 0xfffb},
        {0xe0000, 0xe007f},  // tags
}};

constexpr bool isContinuation(char byte) {
    return (static_cast<uint8_t>(byte) & 0xc0U) == 0x80;
}

/** Returns the bytes of a character by its first one; 0 if none begins so. */
constexpr size_t sizeByFirst(uint8_t first) {
    if (first < 0x80) {
        return 1;
    }
    if (first < 0xc2) {
        return 0;
    }
    return first < 0xe0 ? 2 : first < 0xf0 ? 3 : first < 0xf5 ? 4 : 0;
}

/** The text is not empty. */
Character firstOf(std::string_view text) {
    constexpr std::array<uint32_t, 5> kLeast = {0, 0, 0x80, 0x800, 0x10000};
    const auto first = static_cast<uint8_t>(text.front());
    const size_t size = sizeByFirst(first);
    if (size == 0 || size > text.size()) {
        return {first};
    }
    uint32_t code = size == 1 ? first : first & (0x7fU >> size);
    for (size_t i = 1; i < size; ++i) {
        if (!isContinuation(text[i])) {
            return {first};
        }
        code = code << 6 | (static_cast<uint8_t>(text[i]) & 0x3fU);
    }
    const bool isSurrogate = code >= 0xd800 && code <= 0xdfff;
    if (code < kLeast[size] || isSurrogate || code > 0x10ffff) {
        return {first};
    }
    return {code, size, true};
}

bool isSeen(uint32_t code) {
    return std::none_of(kUnseen.begin(), kUnseen.end(), [code](const Range& range) {
        return code >= range.first && code <= range.last;
    });
}

std::string escaped(const Character& character) {
    if (character.code == '\n') {
        return "\\n";
    }
    if (character.code == '\t') {
        return "\\t";
    }
    return character.code < 0x80 || !character.valid ? fmt::format("\\x{:02x}", character.code)
                                                     : fmt::format("\\u{{{:x}}}", character.code);
}

}  // namespace

std::string visible(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const Character character = firstOf(text);
        shown += character.valid && isSeen(character.code)
                         ? std::string(text.substr(0, character.size))
                         : escaped(character);
        text.remove_prefix(character.size);
    }
    return shown;
}

size_t columnsOf(std::string_view text) {
    return text.size() -
           static_cast<size_t>(std::count_if(text.begin(), text.end(), isContinuation));
}

std::string shortened(std::string_view text, size_t columns) {
    if (columnsOf(text) <= columns) {
        return std::string(text);
    }
    std::string cut;
    for (size_t column = 1; column < columns; ++column) {
        const size_t size = firstOf(text).size;
        cut += text.substr(0, size);
        text.remove_prefix(size);
    }
    return cut + "…";
}

}  // namespace ogmprobe
