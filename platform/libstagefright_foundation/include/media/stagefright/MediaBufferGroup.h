// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stddef.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include <media/MediaExtractorPluginApi.h>
#include <media/stagefright/MediaBufferBase.h>
#include <media/stagefright/foundation/ABase.h>
#include <utils/Errors.h>

namespace android {

/**
 * An ordered list of buffers. acquire_buffer() lends a buffer, and its release() returns it.
 *
 * Below the growth limit, initially 0 buffers, an acquisition may add a new buffer. All functions
 * may be called from several threads. Destroying the group while a buffer is in use aborts.
 */
class MediaBufferGroup : public MediaBufferObserver {
  public:
    explicit MediaBufferGroup(size_t growthLimit = 0);
    /** A new group with init(). */
    MediaBufferGroup(size_t buffers, size_t buffer_size, size_t growthLimit = 0);
    ~MediaBufferGroup() override;

    /**
     * Sets the growth limit and adds `buffers` buffers of `buffer_size` bytes. A limit between 0
     * and `buffers` is raised to `buffers` with a warning. Stops adding when memory runs out.
     * Existing buffers stay: calling it again adds more.
     */
    void init(size_t buffers, size_t buffer_size, size_t growthLimit = 0);

    /**
     * Takes ownership of a buffer and appends it to the list, even above the growth limit. While a
     * limit is set and reached, free buffers are removed from the front to make room.
     */
    void add_buffer(MediaBufferBase* buffer);

    /** Returns true if a buffer is free or the growth limit allows a new one. */
    bool has_buffers();

    /**
     * Lends the first free buffer of at least `requestedSize` bytes, its range reset to the whole
     * storage. If there is none, a new buffer of 3/2 of that size (for a request of 0: of the
     * largest existing size) replaces the smallest free buffer; if no buffer is free, it is added,
     * below the growth limit. Otherwise waits for a release, without a time limit, or returns
     * WOULD_BLOCK with a null buffer.
     */
    status_t acquire_buffer(MediaBufferBase** buffer, bool nonBlocking = false,
                            size_t requestedSize = 0);

    /** Returns the number of buffers in the list. */
    size_t buffers();

    void signalBufferReturned(MediaBufferBase* buffer) override;

    /**
     * Returns the group's C table, which belongs to the group. Instead of WOULD_BLOCK, the table's
     * acquire_buffer logs an error and returns AMEDIA_ERROR_UNKNOWN.
     */
    CMediaBufferGroup* wrap();

  private:
    MediaBufferBase* findOrMake(size_t requestedSize);
    /** Returns the end if no free buffer is smaller. */
    std::vector<MediaBufferBase*>::iterator smallestFreeBelow(size_t size);
    size_t largestSize() const;
    void add_l(MediaBufferBase* buffer);
    void discard(MediaBufferBase* buffer);

    std::mutex mLock;
    std::condition_variable mReturned;
    size_t mGrowthLimit;
    std::vector<MediaBufferBase*> mBuffers;
    std::unique_ptr<CMediaBufferGroup> mWrapper;

    DISALLOW_EVIL_CONSTRUCTORS(MediaBufferGroup);
};

}  // namespace android
