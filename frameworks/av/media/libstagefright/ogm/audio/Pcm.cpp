// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "audio/Pcm.h"

#include <log/log.h>

#include "base/Format.h"
#include "base/MediaBuffers.h"

namespace android::ogm {

namespace {

constexpr uint16_t kBits24 = 24;
constexpr uint16_t kBits8 = 8;

constexpr size_t kBytes24 = 3;
constexpr size_t kBytes16 = 2;

/** Silence in unsigned samples. */
constexpr uint8_t kUnsignedBias = 0x80;

void narrowBuffer(MediaBufferHelper* buffer) {
    const size_t size = narrowPcm24(static_cast<uint8_t*>(buffer->data()) + buffer->range_offset(),
                                    buffer->range_length());
    buffer->set_range(buffer->range_offset(), size);
}

media_status_t widenBuffer(MediaBufferGroupHelper* group, MediaBufferHelper** buffer) {
    MediaBufferHelper* const narrow = *buffer;
    const ByteView samples(static_cast<const uint8_t*>(narrow->data()), narrow->range_length());
    const size_t size = kBytes16 * samples.size();
    MediaBufferHelper* const wide = acquireBuffer(group, size);
    if (wide == nullptr) {
        narrow->release();
        *buffer = nullptr;
        return AMEDIA_ERROR_UNKNOWN;
    }
    wide->set_range(0, size);
    widenPcm8(samples, static_cast<uint8_t*>(wide->data()));
    const int64_t timeUs = timeOf(narrow);
    narrow->release();
    // A reused buffer keeps its old entries. This one must have only its time.
    const FormatPtr empty(AMediaFormat_new());
    AMediaFormat_copy(wide->meta_data(), empty.get());
    AMediaFormat_setInt64(wide->meta_data(), AMEDIAFORMAT_KEY_TIME_US, timeUs);
    *buffer = wide;
    return AMEDIA_OK;
}

}  // namespace

size_t narrowPcm24(uint8_t* samples, size_t size) {
    const size_t count = size / kBytes24;
    for (size_t i = 0; i < count; ++i) {
        samples[i * kBytes16] = samples[i * kBytes24 + 1];
        samples[i * kBytes16 + 1] = samples[i * kBytes24 + 2];
    }
    return count * kBytes16;
}

void widenPcm8(ByteView samples, uint8_t* output) {
    for (size_t i = 0; i < samples.size(); ++i) {
        output[i * kBytes16] = 0;
        output[i * kBytes16 + 1] = samples[i] ^ kUnsignedBias;
    }
}

media_status_t reworkPcm(uint16_t bitsPerSample, MediaBufferGroupHelper* group,
                         MediaBufferHelper** buffer) {
    if (bitsPerSample == kBits8) {
        ALOGI("OGA_AUDIO_PCM,mBitsPerSample == 8");
        return widenBuffer(group, buffer);
    }
    if (bitsPerSample == kBits24) {
        narrowBuffer(*buffer);
    }
    return AMEDIA_OK;
}

}  // namespace android::ogm
