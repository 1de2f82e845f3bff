// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>

#include <atomic>

#include <media/stagefright/MediaBufferBase.h>
#include <media/stagefright/foundation/ABase.h>

namespace android {

/**
 * A block of bytes with a range of used bytes. New storage is not cleared.
 *
 * A buffer without a group is made with `new` and destroyed by its only release(). It cannot be
 * deleted or held in an sp<>. A buffer of a group belongs to the group; it may be used and released
 * any number of times.
 */
class MediaBuffer : public MediaBufferBase {
  public:
    /** Out of memory: data() is null. */
    explicit MediaBuffer(size_t size);

    void release() override;
    void add_ref() override;

    void* data() const override { return mData; }
    size_t size() const override { return mSize; }
    size_t range_offset() const override { return mRangeOffset; }
    size_t range_length() const override { return mRangeLength; }
    void set_range(size_t offset, size_t length) override;
    void reset() override;

    void setObserver(MediaBufferObserver* group) override;
    int refcount() const override { return mRefCount.load(); }

  protected:
    ~MediaBuffer() override;

  private:
    MediaBufferObserver* mObserver;
    std::atomic<int> mRefCount;
    void* const mData;
    const size_t mSize;
    size_t mRangeOffset;
    size_t mRangeLength;

    DISALLOW_EVIL_CONSTRUCTORS(MediaBuffer);
};

}  // namespace android
