// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>

#include "OgmByteView.h"

namespace android::ogm {

/** Fresh bytes on the heap. The type is not that of an array, which older libraries cannot share.
 */
std::shared_ptr<uint8_t> makeBytes(size_t size);

/**
 * Bytes with one owner: filled at the end, emptied from the front, and handed on by moving. Fresh
 * bytes are not cleared.
 */
class ByteBuffer {
  public:
    ByteBuffer() = default;
    explicit ByteBuffer(size_t size) { reset(size); }
    explicit ByteBuffer(ByteView bytes) { append(bytes); }
    /** Fresh bytes in storage of that size, which others may share but not use. */
    ByteBuffer(std::shared_ptr<uint8_t> storage, size_t size)
        : mBytes(std::move(storage)), mCapacity(size), mSize(size) {}
    ByteBuffer(ByteBuffer&& other) noexcept { *this = std::move(other); }
    ByteBuffer& operator=(ByteBuffer&& other) noexcept {
        mBytes = std::move(other.mBytes);
        mCapacity = std::exchange(other.mCapacity, 0);
        mOffset = std::exchange(other.mOffset, 0);
        mSize = std::exchange(other.mSize, 0);
        return *this;
    }

    uint8_t* data() { return mBytes.get() + mOffset; }
    size_t size() const { return mSize; }
    bool empty() const { return mSize == 0; }
    ByteView view() const { return {mBytes.get() + mOffset, mSize}; }

    /**
     * Makes it `size` fresh bytes, with an address also if there are none. Storage is kept if it is
     * large enough but not more than twice that, so that a small packet does not end up in the
     * storage of a large one.
     */
    void reset(size_t size);

    /** Costs a time in proportion to the bytes appended, over many calls. */
    void append(ByteView bytes);

    /** Takes at most `size` bytes off the front. */
    void dropFront(size_t size);

    /** Drops the bytes and keeps the storage. */
    void clear();

  private:
    void makeRoom(size_t needed);

    std::shared_ptr<uint8_t> mBytes;
    size_t mCapacity = 0;
    size_t mOffset = 0;
    size_t mSize = 0;
};

/**
 * A capacity that grows in steps of 64 KiB. The log shows the steps, so they are counted as for a
 * buffer that grows that way and is used again and again, however the bytes are kept.
 */
class SteppedCapacity {
  public:
    /** The new capacity if the old one was too small for `needed` bytes. */
    std::optional<size_t> growTo(size_t needed);

  private:
    /** Nothing before the first growth, which even a need of no bytes brings about. */
    std::optional<size_t> mCapacity;
};

}  // namespace android::ogm
