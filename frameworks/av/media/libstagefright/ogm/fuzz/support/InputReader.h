// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "Views.h"
#include "base/ByteView.h"

namespace android::ogm::fuzz {

using test::Bytes;
using test::bytesOf;

/** Bytes in a heap block of exactly their size, so that a sanitizer sees a read past the end. */
class ExactBlock {
  public:
    ExactBlock(const uint8_t* bytes, size_t size) : mBytes(new uint8_t[size]), mSize(size) {
        std::copy_n(bytes, size, mBytes.get());
    }
    explicit ExactBlock(ByteView bytes) : ExactBlock(bytes.data(), bytes.size()) {}
    explicit ExactBlock(const Bytes& bytes) : ExactBlock(bytes.data(), bytes.size()) {}

    uint8_t* data() { return mBytes.get(); }
    size_t size() const { return mSize; }
    ByteView view() const { return {mBytes.get(), mSize}; }

  private:
    std::unique_ptr<uint8_t[]> mBytes;
    size_t mSize;
};

/** Takes values from the front of an input; missing bytes are 0. */
class InputReader {
  public:
    InputReader(const uint8_t* data, size_t size) : mRest(data, size) {}

    uint8_t u8() {
        const uint8_t value = mRest[0];
        mRest = mRest.from(1);
        return value;
    }
    uint16_t u16() {
        const uint16_t value = mRest.u16le(0);
        mRest = mRest.from(2);
        return value;
    }
    uint64_t u64() {
        const uint64_t value = mRest.u64le(0);
        mRest = mRest.from(8);
        return value;
    }
    /** At most `count` bytes. */
    ByteView bytes(size_t count) {
        const ByteView taken = mRest.first(count);
        mRest = mRest.from(count);
        return taken;
    }
    ByteView rest() const { return mRest; }
    bool empty() const { return mRest.empty(); }

  private:
    ByteView mRest;
};

}  // namespace android::ogm::fuzz
