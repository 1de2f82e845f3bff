// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdint.h>
#include <sys/types.h>

#include <media/stagefright/foundation/ABase.h>
#include <utils/RefBase.h>

namespace android {

struct AMessage;

/**
 * A shared block of bytes of fixed capacity with a range that marks the bytes in use, and a message
 * that travels with it.
 *
 *     sp<ABuffer> buffer = new ABuffer(4096);
 *     if (buffer->base() == nullptr) ...              // out of memory
 *     buffer->setRange(0, bytesRead);
 *     buffer->meta()->setInt64("timeUs", timeUs);
 *
 * Fresh storage is not cleared. There is no way to grow: make a new buffer and copy.
 */
struct ABuffer : public RefBase {
    /** Owns `capacity` bytes; without memory the capacity is 0 and base() is null. */
    explicit ABuffer(size_t capacity);
    /** Refers to bytes that stay the caller's. */
    ABuffer(void* data, size_t capacity);

    /** A copy of the bytes, or null without memory. */
    static sp<ABuffer> CreateAsCopy(const void* data, size_t capacity);

    uint8_t* base() { return static_cast<uint8_t*>(mData); }
    /** The first byte of the range: it moves with the range. */
    uint8_t* data() { return base() + mRangeOffset; }

    size_t capacity() const { return mCapacity; }
    size_t size() const { return mRangeLength; }
    size_t offset() const { return mRangeOffset; }

    /** Moves no bytes. A range beyond the capacity aborts. */
    void setRange(size_t offset, size_t size);

    /** A number for the user's own purposes, 0 at first. */
    void setInt32Data(int32_t data) { mInt32Data = data; }
    int32_t int32Data() const { return mInt32Data; }

    /** The buffer's message, the same object each time; never null. */
    sp<AMessage> meta();

  protected:
    ~ABuffer() override;

  private:
    sp<AMessage> mMeta;
    void* mData;
    size_t mCapacity;
    size_t mRangeOffset;
    size_t mRangeLength;
    int32_t mInt32Data;
    const bool mOwnsData;

    DISALLOW_EVIL_CONSTRUCTORS(ABuffer);
};

}  // namespace android
