// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

#include <cstddef>
#include <cstdint>

/** The framework's buffers, which a track fills and hands out. */
namespace android::ogm {

/**
 * Waits for a free buffer of at least `size` bytes. Null for a null group, which a track has before
 * it is started, and when there is no memory.
 */
inline MediaBufferHelper* acquireBuffer(MediaBufferGroupHelper* group, size_t size) {
    MediaBufferHelper* buffer = nullptr;
    if (group != nullptr) {
        (void)group->acquire_buffer(&buffer, false, size);
    }
    return buffer;
}

/** Presentation time in us; 0 when the buffer has none. */
inline int64_t timeOf(MediaBufferHelper* buffer) {
    int64_t timeUs = 0;
    (void)AMediaFormat_getInt64(buffer->meta_data(), AMEDIAFORMAT_KEY_TIME_US, &timeUs);
    return timeUs;
}

/** 1 for a sync frame; 0 otherwise, or when the buffer does not say. */
inline int32_t syncFlagOf(MediaBufferHelper* buffer) {
    int32_t isSyncFrame = 0;
    (void)AMediaFormat_getInt32(buffer->meta_data(), AMEDIAFORMAT_KEY_IS_SYNC_FRAME, &isSyncFrame);
    return isSyncFrame;
}

}  // namespace android::ogm
