// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "codecs/AudioFrame.h"
#include "ledger/StreamBytes.h"

namespace ogmprobe {

/** A frame at its place in an elementary stream. */
struct WalkedFrame {
    uint64_t position = 0;
    /** What its header says, or where that is not confirmed, up to the next frame. */
    uint64_t size = 0;
    AudioFrame header;
};

/**
 * The whole frames of an elementary stream, found without the plug-in: each is followed by another
 * one, by the end of a packet (`boundaries`, sorted) or by the end of the stream, or it follows one
 * that is. Bytes between frames are passed over.
 */
std::vector<WalkedFrame> walkFrames(AudioFraming framing, StreamBytes& stream,
                                    const std::vector<uint64_t>& boundaries);

}  // namespace ogmprobe
