// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>

#include <memory>

#include <media/MediaExtractorPluginApi.h>
#include <media/NdkMediaFormat.h>
#include <media/stagefright/foundation/ABase.h>

namespace android {

class MediaBufferBase;

/** Is notified when the last user of a buffer has released it. */
class MediaBufferObserver {
  public:
    MediaBufferObserver() = default;
    virtual ~MediaBufferObserver() = default;

    /** Called on the releasing thread, when the buffer is already free. */
    virtual void signalBufferReturned(MediaBufferBase* buffer) = 0;

  private:
    DISALLOW_EVIL_CONSTRUCTORS(MediaBufferObserver);
};

/** The interface of a media buffer to its group and to the plug-in interface. */
class MediaBufferBase {
  public:
    /**
     * Returns a buffer without a group, with its own storage. If memory runs out, logs an error and
     * returns null.
     */
    static MediaBufferBase* Create(size_t size);

    /** Ends one use. A buffer without an observer has no use count and deletes itself. */
    virtual void release() = 0;
    /** Adds one use; only for buffers with an observer. */
    virtual void add_ref() = 0;

    /** Returns the start of the storage, whatever the range is. */
    virtual void* data() const = 0;
    virtual size_t size() const = 0;

    virtual size_t range_offset() const = 0;
    virtual size_t range_length() const = 0;
    /** Aborts if the range ends after the storage. */
    virtual void set_range(size_t offset, size_t length) = 0;

    /** Sets the range to the whole storage; the format of the C table stays unchanged. */
    virtual void reset() = 0;

    /** Sets the buffer's observer; null removes it. */
    virtual void setObserver(MediaBufferObserver* group) = 0;

    /** Returns the number of uses. */
    virtual int refcount() const = 0;

    /**
     * Returns the buffer's C table, which is made on the first call and belongs to the buffer. Its
     * meta_data() makes the buffer's format on the first call. Only the current user of the buffer
     * may call this.
     */
    CMediaBuffer* wrap();

  protected:
    MediaBufferBase();
    virtual ~MediaBufferBase();

  private:
    AMediaFormat* format();

    std::unique_ptr<CMediaBuffer> mWrapper;
    AMediaFormat* mFormat;

    DISALLOW_EVIL_CONSTRUCTORS(MediaBufferBase);
};

}  // namespace android
