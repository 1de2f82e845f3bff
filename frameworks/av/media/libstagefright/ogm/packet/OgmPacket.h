// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "base/ByteBuffer.h"

namespace android {

/** An item of a track's queue: a packet with its OGM packet header, or an audio access unit. */
struct OgmPacket {
    uint32_t serialNo = 0;
    /** Empty while the packet is open. */
    ogm::ByteBuffer bytes;
    int64_t timeUs = 0;
    int64_t granulePosition = 0;
    /** Video only: 1 for a sync frame, otherwise as in codec/FrameType.h; 0 if unknown. */
    int32_t frameType = 0;
};

}  // namespace android
