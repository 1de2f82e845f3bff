// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

namespace android::ogm {

/**
 * Bytes that somebody else owns. All parsers read the bytes of a file through this class. Positions
 * are relative to its start, and bytes past its end are read as 0, so a damaged header never makes
 * a parser read other memory.
 */
class ByteView {
  public:
    constexpr ByteView() = default;
    constexpr ByteView(const uint8_t* data, size_t size) : mData(data), mSize(size) {}

    constexpr const uint8_t* data() const { return mData; }
    constexpr size_t size() const { return mSize; }
    constexpr bool empty() const { return mSize == 0; }

    constexpr uint8_t operator[](size_t position) const {
        return position < mSize ? mData[position] : uint8_t{0};
    }

    /** The bytes from `position` on; empty if that is past the end. */
    constexpr ByteView from(size_t position) const {
        const size_t skipped = std::min(position, mSize);
        return {mData + skipped, mSize - skipped};
    }

    /** At most the first `count` bytes. */
    constexpr ByteView first(size_t count) const { return {mData, std::min(count, mSize)}; }

    /** Whether the bytes at `position` are those of `text`. */
    constexpr bool holds(std::string_view text, size_t position) const {
        const ByteView rest = from(position);
        if (rest.mSize < text.size()) {
            return false;
        }
        for (size_t i = 0; i < text.size(); ++i) {
            if (rest.mData[i] != static_cast<uint8_t>(text[i])) {
                return false;
            }
        }
        return true;
    }

    /** Returns the first position of `text`, which is not empty, at or after `from`. */
    std::optional<size_t> find(std::string_view text, size_t from) const {
        const ByteView rest = this->from(from);
        if (rest.mSize < text.size()) {
            return std::nullopt;
        }
        return placeOf(memmem(rest.mData, rest.mSize, text.data(), text.size()));
    }

    /** Returns the first position of `byte` at or after `from`. */
    std::optional<size_t> find(uint8_t byte, size_t from) const {
        const ByteView rest = this->from(from);
        return rest.empty() ? std::nullopt : placeOf(memchr(rest.mData, byte, rest.mSize));
    }

    constexpr uint16_t u16le(size_t position) const {
        return static_cast<uint16_t>(littleEndian(position, 2));
    }
    constexpr uint32_t u32le(size_t position) const {
        return static_cast<uint32_t>(littleEndian(position, 4));
    }
    constexpr uint64_t u64le(size_t position) const { return littleEndian(position, 8); }

    constexpr uint32_t u32be(size_t position) const {
        const ByteView rest = from(position);
        if (rest.mSize >= 4) {
            // The usual case, which compiles to one load.
            return bigEndian(rest.mData[0], rest.mData[1], rest.mData[2], rest.mData[3]);
        }
        return bigEndian(rest[0], rest[1], rest[2], rest[3]);
    }

  private:
    std::optional<size_t> placeOf(const void* found) const {
        if (found == nullptr) {
            return std::nullopt;
        }
        return static_cast<size_t>(static_cast<const uint8_t*>(found) - mData);
    }

    static constexpr uint32_t bigEndian(uint8_t first, uint8_t second, uint8_t third,
                                        uint8_t fourth) {
        return uint32_t{first} << 24 | uint32_t{second} << 16 | uint32_t{third} << 8 | fourth;
    }

    constexpr uint64_t littleEndian(size_t position, size_t width) const {
        const ByteView rest = from(position);
        uint64_t value = 0;
        if (rest.mSize >= width) {
            // The usual case, which compiles to one load.
            for (size_t i = 0; i < width; ++i) {
                value |= uint64_t{rest.mData[i]} << (8 * i);
            }
            return value;
        }
        for (size_t i = 0; i < width; ++i) {
            value |= uint64_t{rest[i]} << (8 * i);
        }
        return value;
    }

    const uint8_t* mData = nullptr;
    size_t mSize = 0;
};

}  // namespace android::ogm
