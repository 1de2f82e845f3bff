// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>
#include <stdint.h>

namespace android {

/** The four characters as one number, the first in the top byte. */
constexpr int FOURCC(unsigned char c1, unsigned char c2, unsigned char c3, unsigned char c4) {
    return static_cast<int>(static_cast<uint32_t>(c1) << 24 | static_cast<uint32_t>(c2) << 16 |
                            static_cast<uint32_t>(c3) << 8 | static_cast<uint32_t>(c4));
}

template <size_t N>
constexpr int32_t FOURCC(const char (&s)[N]) {
    static_assert(N == 5, "a four-character code has four characters");
    return FOURCC(static_cast<unsigned char>(s[0]), static_cast<unsigned char>(s[1]),
                  static_cast<unsigned char>(s[2]), static_cast<unsigned char>(s[3]));
}

/** Writes the characters of the code and a 0 byte, 5 bytes in all. */
void MakeFourCCString(uint32_t x, char* s);

// Numbers at an address of any alignment: big-endian, and little-endian where the name says LE.
uint16_t U16_AT(const uint8_t* ptr);
uint32_t U32_AT(const uint8_t* ptr);
uint64_t U64_AT(const uint8_t* ptr);

uint16_t U16LE_AT(const uint8_t* ptr);
uint32_t U32LE_AT(const uint8_t* ptr);
uint64_t U64LE_AT(const uint8_t* ptr);

/** Conversions between big-endian ("network") and the machine's byte order. */
uint64_t ntoh64(uint64_t x);
uint64_t hton64(uint64_t x);

}  // namespace android
