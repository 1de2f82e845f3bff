// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

#include <cstddef>
#include <cstdint>

/** The framework's buffers, which a track fills and returns. */
namespace android::ogm {

/**
 * Waits for a free buffer of at least `size` bytes. Returns null if memory runs out, and if the
 * group is null, as it is before a track is started.
 */
inline MediaBufferHelper* acquireBuffer(MediaBufferGroupHelper* group, size_t size) {
    MediaBufferHelper* buffer = nullptr;
    if (group != nullptr) {
        (void)group->acquire_buffer(&buffer, false, size);
    }
    return buffer;
}

/** Presentation time in us; 0 if the buffer has none. */
inline int64_t timeOf(MediaBufferHelper* buffer) {
    int64_t timeUs = 0;
    (void)AMediaFormat_getInt64(buffer->meta_data(), AMEDIAFORMAT_KEY_TIME_US, &timeUs);
    return timeUs;
}

/** 1 for a sync frame; 0 otherwise, and if the buffer has no such entry. */
inline int32_t syncFlagOf(MediaBufferHelper* buffer) {
    int32_t isSyncFrame = 0;
    (void)AMediaFormat_getInt32(buffer->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME, &isSyncFrame);
    return isSyncFrame;
}

}  // namespace android::ogm
