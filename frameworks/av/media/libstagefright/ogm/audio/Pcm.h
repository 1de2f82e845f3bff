// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginHelper.h>

#include <cstddef>
#include <cstdint>

#include "base/ByteView.h"

/** PCM of other widths made into the 16 bits, little-endian, that the framework plays. */
namespace android::ogm {

/**
 * Keeps the upper 16 bits of 24-bit little-endian samples, in place.
 * Returns the new size in bytes; bytes after the last whole sample are dropped.
 */
size_t narrowPcm24(uint8_t* samples, size_t size);

/** Makes unsigned 8-bit samples into signed 16-bit ones, twice their size, at `output`. */
void widenPcm8(ByteView samples, uint8_t* output);

/**
 * Makes PCM in `buffer` 16 bits wide where it is not; 8-bit samples go into a buffer of `group` in
 * place of this one. Returns AMEDIA_OK, or AMEDIA_ERROR_UNKNOWN (the buffer released, and null)
 * when there is none.
 */
media_status_t reworkPcm(uint16_t bitsPerSample, MediaBufferGroupHelper* group,
                         MediaBufferHelper** buffer);

}  // namespace android::ogm
