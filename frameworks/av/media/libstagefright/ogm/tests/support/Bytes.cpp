// SPDX-License-Identifier: Apache-2.0
#include "Bytes.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>

namespace android::ogm::test {

Bytes bytesOf(std::string_view text) {
    return Bytes(text.begin(), text.end());
}

Bytes bigEndian(uint32_t word) {
    Bytes bytes;
    appendBigEndian(bytes, word, 4);
    return bytes;
}

Bytes filled(size_t count, uint8_t value) {
    return Bytes(count, value);
}

Bytes pattern(size_t count, uint32_t seed) {
    Bytes bytes(count);
    uint64_t state = seed * 2654435761U + 1;
    for (uint8_t& byte : bytes) {
        state = (state * 1103515245U + 12345U) & 0x7FFFFFFFU;
        byte = static_cast<uint8_t>(1 + (state >> 16) % 0x4E);  // stays below the letter O
    }
    return bytes;
}

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        append(all, part);
    }
    return all;
}

void append(Bytes& to, const Bytes& part) {
    to.insert(to.end(), part.begin(), part.end());
}

void appendLittleEndian(Bytes& to, uint64_t value, size_t width) {
    for (size_t i = 0; i < width; ++i) {
        to.push_back(static_cast<uint8_t>((value >> (8 * i)) & 0xFF));
    }
}

void appendBigEndian(Bytes& to, uint64_t value, size_t width) {
    for (size_t i = width; i > 0; --i) {
        to.push_back(static_cast<uint8_t>((value >> (8 * (i - 1))) & 0xFF));
    }
}

Bytes head(const Bytes& bytes, size_t count) {
    return Bytes(bytes.data(), bytes.data() + std::min(count, bytes.size()));
}

Bytes tail(const Bytes& bytes, size_t start) {
    return Bytes(bytes.data() + std::min(start, bytes.size()), bytes.data() + bytes.size());
}

std::string digestOf(const Bytes& bytes) {
    unsigned __int128 hash = 0xCBF29CE484222325U;
    for (const uint8_t byte : bytes) {
        // Computed in 128 bits and truncated, so that no unsigned arithmetic wraps.
        hash = ((hash ^ byte) * 0x100000001B3U) & 0xFFFFFFFFFFFFFFFFU;
    }
    char text[17];
    snprintf(text, sizeof(text), "%016" PRIx64, static_cast<uint64_t>(hash));
    return text;
}

}  // namespace android::ogm::test
