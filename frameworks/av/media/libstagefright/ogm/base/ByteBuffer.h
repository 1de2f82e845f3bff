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
 * Bytes that are appended at the end, dropped from the front, and passed on by moving. Several
 * objects may share a storage, but none grows into the bytes of another. New bytes are not
 * initialised.
 *
 * Why not std::vector: it clears new bytes, and it cannot pass on a part of itself without a copy.
 * Each copy of the payload takes about 400 instructions per buffer.
 */
class ByteBuffer {
  public:
    ByteBuffer() = default;
    explicit ByteBuffer(size_t size) : ByteBuffer(SharedBytes(size), 0, size) {}
    explicit ByteBuffer(ByteView bytes) { append(bytes); }
    /** `size` bytes at `offset` of storage that others may share. */
    ByteBuffer(SharedBytes storage, size_t offset, size_t size)
        : mStorage(std::move(storage)),
          mBegin(mStorage.data() + offset),
          mSize(size),
          mCapacity(size) {}
    ByteBuffer(ByteBuffer&& other) noexcept
        : mStorage(std::move(other.mStorage)),
          mBegin(std::exchange(other.mBegin, nullptr)),
          mSize(std::exchange(other.mSize, 0)),
          mCapacity(std::exchange(other.mCapacity, 0)) {}
    ByteBuffer& operator=(ByteBuffer&& other) noexcept {
        mStorage = std::move(other.mStorage);
        mBegin = std::exchange(other.mBegin, nullptr);
        mSize = std::exchange(other.mSize, 0);
        mCapacity = std::exchange(other.mCapacity, 0);
        return *this;
    }

    uint8_t* data() { return mBegin; }
    size_t size() const { return mSize; }
    bool empty() const { return mSize == 0; }
    ByteView view() const { return {mBegin, mSize}; }

    /** Becomes `size` uninitialised bytes; keeps its storage if that is large enough. */
    void reset(size_t size);

    /** Takes constant time per appended byte on average. */
    void append(ByteView bytes);

    /** Drops at most `size` bytes from the front. */
    void dropFront(size_t size);

    /** Whether appending one more byte would have to move or allocate. */
    bool isFull() const { return mSize == mCapacity; }

    /**
     * At most `size` bytes from `offset` on, in the same storage. While that part exists, this
     * object does not move its bytes within the storage but allocates new storage when it grows.
     */
    ByteBuffer part(size_t offset, size_t size) const;

    /** Where the bytes begin in `storage`; nothing if they are not in it. */
    std::optional<size_t> offsetIn(const SharedBytes& storage) const;

    /** Drops the bytes; keeps the storage unless it is shared. */
    void clear();

  private:
    void makeRoom(size_t needed);
    void useWholeStorage();

    SharedBytes mStorage;
    uint8_t* mBegin = nullptr;
    size_t mSize = 0;
    /** Usable bytes from mBegin on. */
    size_t mCapacity = 0;
};

/**
 * The capacity that a reused buffer would have if it grew in steps of 64 KiB. Only the log shows
 * it; the bytes are stored in another way.
 */
class SteppedCapacity {
  public:
    /** Returns the new capacity if the old one was too small for `needed` bytes. */
    std::optional<size_t> growTo(size_t needed);

  private:
    /** Unset until the first call, which always grows it, even to 0. */
    std::optional<size_t> mCapacity;
};

}  // namespace android::ogm
