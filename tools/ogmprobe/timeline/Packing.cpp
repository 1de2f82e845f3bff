// SPDX-License-Identifier: Apache-2.0
#include "Packing.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace ogmprobe::timeline {
namespace {

std::vector<uint8_t> compressed(const std::vector<uint8_t>& bytes) {
    uLongf size = compressBound(bytes.size());
    std::vector<uint8_t> result(size);
    // With a buffer of that size it fails only without memory.
    if (compress2(result.data(), &size, bytes.data(), bytes.size(), Z_BEST_COMPRESSION) != Z_OK) {
        throw std::bad_alloc();
    }
    result.resize(size);
    return result;
}

std::string base64(const std::vector<uint8_t>& bytes) {
    constexpr std::string_view kLetters =
            "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr size_t kGroup = 3;
    std::string text;
    text.reserve((bytes.size() + kGroup - 1) / kGroup * 4);
    for (size_t i = 0; i < bytes.size(); i += kGroup) {
        const size_t count = std::min(kGroup, bytes.size() - i);
        uint32_t bits = 0;
        for (size_t k = 0; k < kGroup; ++k) {
            bits = bits << 8 | (k < count ? bytes[i + k] : 0U);
        }
        for (size_t k = 0; k <= kGroup; ++k) {
            text += k <= count ? kLetters[bits >> (18 - 6 * k) & 63] : '=';
        }
    }
    return text;
}

}  // namespace

void Column::add(uint64_t number) {
    for (; number > 0x7f; number >>= 7) {
        addByte(static_cast<uint8_t>(number | 0x80));
    }
    addByte(static_cast<uint8_t>(number));
}

void Column::addSigned(int64_t number) {
    const auto bits = static_cast<uint64_t>(number);
    add(number < 0 ? ~(bits << 1) : bits << 1);
}

void SteadyColumn::add(int64_t number) {
    const int64_t near = std::clamp(number, -kFarthestUs, kFarthestUs);
    const int64_t distance = near - mLast;
    mColumn.addSigned(distance - mDistance);
    mDistance = distance;
    mLast = near;
}

size_t PackedColumns::add(const Column& column) {
    mBytes.insert(mBytes.end(), column.bytes().begin(), column.bytes().end());
    return column.bytes().size();
}

std::string PackedColumns::text() const {
    return base64(compressed(mBytes));
}

}  // namespace ogmprobe::timeline
