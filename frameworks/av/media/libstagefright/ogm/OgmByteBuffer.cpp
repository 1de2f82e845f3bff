// SPDX-License-Identifier: Apache-2.0
#include "OgmByteBuffer.h"

#include <algorithm>
#include <cstring>

namespace android::ogm {

namespace {

constexpr size_t kStep = 65536;

/** As memcpy, which does not take the null that an empty view may hold. */
void copyBytes(uint8_t* destination, ByteView bytes) {
    if (!bytes.empty()) {
        std::memcpy(destination, bytes.data(), bytes.size());
    }
}

}  // namespace

std::shared_ptr<uint8_t> makeBytes(size_t size) {
    return {new uint8_t[size], std::default_delete<uint8_t[]>()};
}

void ByteBuffer::reset(size_t size) {
    if (mBytes == nullptr || mCapacity < size || mCapacity / 2 > size) {
        mBytes = makeBytes(size);
        mCapacity = size;
    }
    mOffset = 0;
    mSize = size;
}

void ByteBuffer::append(ByteView bytes) {
    const size_t needed = mSize + bytes.size();
    if (mOffset + needed > mCapacity) {
        makeRoom(needed);
    }
    copyBytes(data() + mSize, bytes);
    mSize = needed;
}

void ByteBuffer::makeRoom(size_t needed) {
    // Bytes are moved down only where that gains at least as much room as there are bytes, and new
    // storage has room for as many again.
    if (needed <= mCapacity / 2) {
        std::memmove(mBytes.get(), data(), mSize);
    } else {
        const size_t capacity = mSize == 0 ? needed : 2 * needed;
        std::shared_ptr<uint8_t> larger = makeBytes(capacity);
        copyBytes(larger.get(), view());
        mBytes = std::move(larger);
        mCapacity = capacity;
    }
    mOffset = 0;
}

void ByteBuffer::dropFront(size_t size) {
    const size_t dropped = std::min(size, mSize);
    mSize -= dropped;
    mOffset = mSize == 0 ? 0 : mOffset + dropped;
}

void ByteBuffer::clear() {
    mOffset = 0;
    mSize = 0;
}

std::optional<size_t> SteppedCapacity::growTo(size_t needed) {
    if (mCapacity && needed <= *mCapacity) {
        return std::nullopt;
    }
    mCapacity = (needed + kStep - 1) / kStep * kStep;
    return mCapacity;
}

}  // namespace android::ogm
