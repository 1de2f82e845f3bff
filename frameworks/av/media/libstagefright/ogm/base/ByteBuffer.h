// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "base/ByteView.h"
#include "base/SharedBytes.h"

namespace android::ogm {

/**
 * Bytes that are filled at the end, emptied from the front, and handed on by moving. Others may lie
 * in the same storage, but none of them grows into another. New bytes are not initialised.
 *
 * Why not std::vector: it clears new bytes, and it cannot hand on a packet or a part of one
 * without a copy; each copy of the payload takes some 400 instructions a buffer.
 */
class ByteBuffer {
  public:
    ByteBuffer() = default;
    explicit ByteBuffer(size_t size) : ByteBuffer(SharedBytes(size), 0, size) {}
    explicit ByteBuffer(ByteView bytes) { append(bytes); }
    /** New bytes at `offset` of storage that others may share. */
    ByteBuffer(SharedBytes storage, size_t offset, size_t size)
        : mStorage(std::move(storage)),
          mBegin(mStorage.data() + offset),
          mSize(size),
          mRoom(size) {}
    ByteBuffer(ByteBuffer&& other) noexcept
        : mStorage(std::move(other.mStorage)),
          mBegin(std::exchange(other.mBegin, nullptr)),
          mSize(std::exchange(other.mSize, 0)),
          mRoom(std::exchange(other.mRoom, 0)) {}
    ByteBuffer& operator=(ByteBuffer&& other) noexcept {
        mStorage = std::move(other.mStorage);
        mBegin = std::exchange(other.mBegin, nullptr);
        mSize = std::exchange(other.mSize, 0);
        mRoom = std::exchange(other.mRoom, 0);
        return *this;
    }

    uint8_t* data() { return mBegin; }
    size_t size() const { return mSize; }
    bool empty() const { return mSize == 0; }
    ByteView view() const { return {mBegin, mSize}; }

    /** Makes it `size` uninitialised bytes, in the storage it has if that is large enough. */
    void reset(size_t size);

    /** Costs a time in proportion to the bytes appended, over many calls. */
    void append(ByteView bytes);

    /** Takes at most `size` bytes off the front. */
    void dropFront(size_t size);

    /** Whether the next byte that is appended makes it look for room. */
    bool isFull() const { return mSize == mRoom; }

    /**
     * At most `size` bytes from `offset` on, in the same storage. As long as they are there, this
     * one does not move its bytes in the storage to make room but takes new storage.
     */
    ByteBuffer part(size_t offset, size_t size) const;

    /** Where the bytes begin in `storage`, if that is where they lie. */
    std::optional<size_t> offsetIn(const SharedBytes& storage) const;

    /** Drops the bytes, and keeps storage that nobody shares. */
    void clear();

  private:
    void makeRoom(size_t needed);
    void useWholeStorage();

    SharedBytes mStorage;
    uint8_t* mBegin = nullptr;
    size_t mSize = 0;
    /** From mBegin to the end of what may be used. */
    size_t mRoom = 0;
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
    /** Nothing at first; the first call grows it, even to 0. */
    std::optional<size_t> mCapacity;
};

}  // namespace android::ogm
