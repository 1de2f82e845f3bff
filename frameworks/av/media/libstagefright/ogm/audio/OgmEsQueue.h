// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/stagefright/foundation/ABuffer.h>
#include <media/stagefright/foundation/AMessage.h>

#include <cstdint>
#include <deque>
#include <optional>

#include "OgmExtractor.h"

namespace android {

/**
 * The elementary-stream queue that a track owns. It is set up by stream type and reset on every
 * discontinuity; access units themselves are cut from the track's own buffer, so its containers
 * stay empty.
 */
class OgmEsQueue {
  public:
    /** No flag is defined; `flags` is always 0. */
    OgmEsQueue(uint32_t mode, uint32_t flags);

    /** The mode of a stream type's queue; nothing for a type that has none. */
    static std::optional<uint32_t> modeFor(uint32_t streamType);

    uint32_t mode() const { return mMode; }
    uint32_t flags() const { return mFlags; }

    /** Marks the queue of an MPEG audio stream whose frames are cut out of OGM packets. */
    void setDequeueMpegAudioOgm(bool enabled);
    /** Makes `clear` mark the emptied buffer with "LPos" 0. */
    void setMarkLastPosition(bool enabled) { mMarkLastPosition = enabled; }

    /** Empties the queue, its format only if asked for. */
    void clear(bool clearFormat);
    void setDiscontinuity(bool discontinuity);

  private:
    const uint32_t mMode;
    const uint32_t mFlags;
    sp<ABuffer> mBuffer;
    std::deque<RangeInfo> mRangeInfos;
    std::deque<sp<ABuffer>> mBuffers;
    sp<AMessage> mFormat;
    bool mSawDiscontinuity = false;
    bool mMarkLastPosition = false;
    bool mDequeueMpegAudioOgm = false;
    bool mDiscontinuity = false;
    bool mClearedByReset = false;
};

}  // namespace android
