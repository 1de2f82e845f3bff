// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ByteView.h"

/** PCM of other widths made into the 16 bits, little-endian, that the framework plays. */
namespace android::ogm {

/**
 * Keeps the upper 16 bits of 24-bit little-endian samples, in place.
 * Returns the new size in bytes; bytes behind the last whole sample are dropped.
 */
size_t narrowPcm24(uint8_t* samples, size_t size);

/** Makes unsigned 8-bit samples into signed 16-bit ones, twice their size, at `output`. */
void widenPcm8(ByteView samples, uint8_t* output);

}  // namespace android::ogm
