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
 * An ordered list of buffers that are lent out and come back by release().
 *
 * The growth limit, 0 at first, says up to how many buffers an acquisition may make new ones. All
 * functions may be called from several threads. Buffers must be back when the group is destroyed:
 * one in use aborts.
 */
class MediaBufferGroup : public MediaBufferObserver {
  public:
    explicit MediaBufferGroup(size_t growthLimit = 0);
    /** As init() on a new group. */
    MediaBufferGroup(size_t buffers, size_t buffer_size, size_t growthLimit = 0);
    ~MediaBufferGroup() override;

    /**
     * Sets the growth limit, raised to `buffers` with a warning line if it lies between 0 and that,
     * and adds `buffers` buffers of `buffer_size` bytes. Stops adding when memory ends. Buffers
     * that the group has already stay: calling it again adds more.
     */
    void init(size_t buffers, size_t buffer_size, size_t growthLimit = 0);

    /**
     * Takes over a buffer and puts it at the end of the list, even above the growth limit. Free
     * buffers give way to it from the front on while a limit is set and reached.
     */
    void add_buffer(MediaBufferBase* buffer);

    /** True when a buffer is free or the growth limit allows a new one. */
    bool has_buffers();

    /**
     * Lends out the first free buffer of at least `requestedSize` bytes, its range reset to the
     * whole storage. Without one, a new buffer of 3/2 of the size (or of the largest size there is,
     * for a request of 0) takes the place of the smallest free buffer, or is added below the growth
     * limit. Otherwise WOULD_BLOCK with a null buffer, or waits for a release, without end.
     */
    status_t acquire_buffer(MediaBufferBase** buffer, bool nonBlocking = false,
                            size_t requestedSize = 0);

    /** The number of buffers in the list. */
    size_t buffers();

    void signalBufferReturned(MediaBufferBase* buffer) override;

    /**
     * The group as the plug-in interface sees it: the same table each time, owned by the group. Its
     * acquire_buffer gives AMEDIA_ERROR_UNKNOWN and writes an error line where the group's gives
     * WOULD_BLOCK.
     */
    CMediaBufferGroup* wrap();

  private:
    MediaBufferBase* findOrMake(size_t requestedSize);
    /** The end if none is free and smaller. */
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
