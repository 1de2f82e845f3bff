// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "codecs/AudioFrame.h"
#include "ledger/StreamBytes.h"

namespace ogmprobe {

/** A frame and its position in an elementary stream. */
struct WalkedFrame {
    uint64_t position = 0;
    /** From its header; up to the next frame if the header is not confirmed. */
    uint64_t size = 0;
    AudioFrame header;
};

/**
 * Returns the complete frames of an elementary stream, found without the plug-in. A frame counts if
 * another frame, the end of a packet (`boundaries`, sorted) or the end of the stream follows it, or
 * if it follows such a frame. Bytes between frames are skipped.
 */
std::vector<WalkedFrame> walkFrames(AudioFraming framing, StreamBytes& stream,
                                    const std::vector<uint64_t>& boundaries);

}  // namespace ogmprobe
