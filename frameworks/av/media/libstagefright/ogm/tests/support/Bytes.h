// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace android::ogm::test {

using Bytes = std::vector<uint8_t>;

/** The characters of `text`, without a final zero. */
Bytes bytesOf(std::string_view text);

/** The four bytes of `word`. */
Bytes bigEndian(uint32_t word);

/** `count` times `value`. */
Bytes filled(size_t count, uint8_t value);

/**
 * `count` bytes that depend only on `seed`. All are from 1 to 0x4E, so they contain no start code,
 * no sync word and no capture pattern.
 */
Bytes pattern(size_t count, uint32_t seed);

Bytes joined(std::initializer_list<Bytes> parts);

void append(Bytes& to, const Bytes& part);
void appendLittleEndian(Bytes& to, uint64_t value, size_t width);
void appendBigEndian(Bytes& to, uint64_t value, size_t width);

/** The first `count` bytes, or all if there are fewer. */
Bytes head(const Bytes& bytes, size_t count);
/** The bytes from `start` on; may be empty. */
Bytes tail(const Bytes& bytes, size_t start);

/** 64-bit FNV-1a digest as 16 hexadecimal digits. */
std::string digestOf(const Bytes& bytes);

}  // namespace android::ogm::test
