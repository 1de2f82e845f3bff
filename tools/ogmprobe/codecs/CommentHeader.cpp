// SPDX-License-Identifier: Apache-2.0
#include "codecs/CommentHeader.h"

#include <optional>
#include <string_view>

#include "codecs/Fields.h"

namespace ogmprobe {
namespace {

using Bytes = std::span<const uint8_t>;

constexpr std::string_view kSignature = "vorbis";
constexpr size_t kLengthSize = 4;

/** Removes a little-endian 32-bit number from the beginning. */
std::optional<uint32_t> takeNumber(Bytes& rest) {
    if (rest.size() < kLengthSize) {
        return std::nullopt;
    }
    const auto number = static_cast<uint32_t>(numberAt(rest, 0, kLengthSize));
    rest = rest.subspan(kLengthSize);
    return number;
}

/** Removes a text and its length, which comes first. */
bool takeText(Bytes& rest) {
    const auto length = takeNumber(rest);
    if (!length || *length > rest.size()) {
        return false;
    }
    rest = rest.subspan(*length);
    return true;
}

}  // namespace

bool isCommentHeader(Bytes buffer) {
    if (!holdsAt(buffer, 0, kSignature)) {
        return false;
    }
    Bytes rest = buffer.subspan(kSignature.size());
    if (!takeText(rest)) {
        return false;
    }
    const auto comments = takeNumber(rest);
    if (!comments) {
        return false;
    }
    for (uint32_t i = 0; i < *comments; ++i) {
        if (!takeText(rest)) {
            return false;
        }
    }
    return rest.size() == 1 && (rest[0] & 1) != 0;
}

}  // namespace ogmprobe
