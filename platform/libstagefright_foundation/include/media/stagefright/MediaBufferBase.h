// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>

#include <memory>

#include <media/MediaExtractorPluginApi.h>
#include <media/NdkMediaFormat.h>
#include <media/stagefright/foundation/ABase.h>

namespace android {

class MediaBufferBase;

/** Told when the last user of a buffer has released it. */
class MediaBufferObserver {
  public:
    MediaBufferObserver() = default;
    virtual ~MediaBufferObserver() = default;

    /** Called on the thread that released, with the buffer free already. */
    virtual void signalBufferReturned(MediaBufferBase* buffer) = 0;

  private:
    DISALLOW_EVIL_CONSTRUCTORS(MediaBufferObserver);
};

/** What a buffer group and the plug-in interface know of a media buffer. */
class MediaBufferBase {
  public:
    /** A free-standing buffer with storage of its own, or null and an error line without memory. */
    static MediaBufferBase* Create(size_t size);

    /** Drops one use. A buffer without an observer has no uses to count and deletes itself. */
    virtual void release() = 0;
    /** Adds one use; only for buffers with an observer. */
    virtual void add_ref() = 0;

    /** The start of the storage, whatever the range is. */
    virtual void* data() const = 0;
    virtual size_t size() const = 0;

    virtual size_t range_offset() const = 0;
    virtual size_t range_length() const = 0;
    /** Aborts when the range ends beyond the storage. */
    virtual void set_range(size_t offset, size_t length) = 0;

    /** Sets the range to the whole storage; the format behind the C table stays as it is. */
    virtual void reset() = 0;

    /** Ties the buffer to an observer, or with null unties it. */
    virtual void setObserver(MediaBufferObserver* group) = 0;

    /** The number of uses. */
    virtual int refcount() const = 0;

    /**
     * The buffer as the plug-in interface sees it: made on the first call, the same table each
     * time, owned by the buffer. Its meta_data() makes the buffer's format on the first request.
     * Called only by whoever uses the buffer at the moment.
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
