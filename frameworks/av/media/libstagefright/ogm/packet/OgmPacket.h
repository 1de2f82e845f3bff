// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "base/ByteBuffer.h"

namespace android {

/** One item of a track's queue: a packet with its OGM packet header, or one audio access unit. */
struct OgmPacket {
    uint32_t serialNo = 0;
    /** Empty while the packet is still being assembled. */
    ogm::ByteBuffer bytes;
    int64_t timeUs = 0;
    int64_t granulePosition = 0;
    /** Video only: 1 for a sync frame, otherwise what the frame typing found; 0 when unknown. */
    int32_t frameType = 0;
};

}  // namespace android
