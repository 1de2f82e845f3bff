// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

#include <cstddef>
#include <cstdint>

#include "base/ByteView.h"

/** Converts PCM of other widths to 16 bits, little-endian, which the framework plays. */
namespace android::ogm {

/**
 * Keeps the upper 16 bits of 24-bit little-endian samples, in place. Bytes after the last complete
 * sample are dropped. Returns the new size in bytes.
 */
size_t narrowPcm24(uint8_t* samples, size_t size);

/** Converts unsigned 8-bit samples to signed 16-bit ones at `output`, which take twice the size. */
void widenPcm8(ByteView samples, uint8_t* output);

/**
 * Converts the PCM in `buffer` to 16 bits if needed. For 8-bit samples `buffer` is replaced by
 * another buffer of `group`. Returns AMEDIA_OK; or AMEDIA_ERROR_UNKNOWN if the group has none: then
 * `buffer` has been released and is null.
 */
media_status_t reworkPcm(uint16_t bitsPerSample, MediaBufferGroupHelper* group,
                         MediaBufferHelper** buffer);

}  // namespace android::ogm
