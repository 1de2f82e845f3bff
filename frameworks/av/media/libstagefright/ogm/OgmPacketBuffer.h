// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/stagefright/foundation/ABuffer.h>

#include <cstddef>
#include <optional>

#include "OgmByteView.h"

/** A byte buffer that is filled at the end and emptied from the front. */
namespace android::ogm {

/**
 * Appends `bytes` to the buffer's range. A null buffer is made, and one that is too small replaced:
 * the new capacity is what is needed, rounded up to 64 KiB. Returns that capacity, or nothing when
 * the buffer was large enough (or no memory was left; the bytes are dropped then).
 */
std::optional<size_t> appendBytes(sp<ABuffer>* buffer, ByteView bytes);

/** Takes `size` bytes off the front of the range. */
void dropFront(ABuffer& buffer, size_t size);

}  // namespace android::ogm
