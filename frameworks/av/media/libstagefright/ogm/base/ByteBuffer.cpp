// SPDX-License-Identifier: Apache-2.0
#include "base/ByteBuffer.h"

#include <algorithm>

namespace android::ogm {

namespace {

constexpr size_t kStep = 65536;

}  // namespace

void ByteBuffer::reset(size_t size) {
    clear();
    if (mBegin == nullptr || mCapacity < size) {
        *this = ByteBuffer(size);
    }
    mSize = size;
}

void ByteBuffer::append(ByteView bytes) {
    const size_t needed = mSize + bytes.size();
    if (mCapacity < needed) {
        makeRoom(needed);
    }
    std::copy_n(bytes.data(), bytes.size(), mBegin + mSize);
    mSize = needed;
}

void ByteBuffer::makeRoom(size_t needed) {
    // Bytes are moved to the front only if at least as many were dropped before them, and new
    // storage has twice the size needed, so appending takes constant time per byte on average.
    const auto dropped = static_cast<size_t>(mBegin - mStorage.data());
    if (!mStorage.isShared() && needed <= mStorage.size() && mSize <= dropped) {
        std::copy_n(mBegin, mSize, mStorage.data());
        useWholeStorage();
        return;
    }
    const size_t capacity = mSize == 0 ? needed : 2 * needed;
    SharedBytes larger(capacity);
    std::copy_n(mBegin, mSize, larger.data());
    mStorage = std::move(larger);
    useWholeStorage();
}

void ByteBuffer::useWholeStorage() {
    mBegin = mStorage.data();
    mCapacity = mStorage.size();
}

void ByteBuffer::dropFront(size_t size) {
    const size_t dropped = std::min(size, mSize);
    mBegin += dropped;
    mSize -= dropped;
    mCapacity -= dropped;
}

ByteBuffer ByteBuffer::part(size_t offset, size_t size) const {
    ByteBuffer bytes;
    bytes.mStorage = mStorage;
    bytes.mBegin = mBegin + std::min(offset, mSize);
    bytes.mSize = std::min(size, mSize - std::min(offset, mSize));
    bytes.mCapacity = bytes.mSize;
    return bytes;
}

std::optional<size_t> ByteBuffer::offsetIn(const SharedBytes& storage) const {
    if (mBegin == nullptr || !mStorage.isSame(storage)) {
        return std::nullopt;
    }
    return static_cast<size_t>(mBegin - mStorage.data());
}

void ByteBuffer::clear() {
    if (mStorage.isShared()) {
        mStorage = SharedBytes();
    }
    mSize = 0;
    useWholeStorage();
}

std::optional<size_t> SteppedCapacity::growTo(size_t needed) {
    if (mCapacity && needed <= *mCapacity) {
        return std::nullopt;
    }
    mCapacity = (needed + kStep - 1) / kStep * kStep;
    return mCapacity;
}

}  // namespace android::ogm
