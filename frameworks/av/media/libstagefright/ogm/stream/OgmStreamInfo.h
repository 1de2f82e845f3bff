// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "base/Format.h"
#include "stream/StreamTypes.h"

namespace android {

/** A logical stream that became a track. */
struct OgmStreamInfo {
    uint32_t mSerialNo = 0;
    /** An OgmStreamType. */
    uint32_t mType = OGM_TYPE_UNKNOWN;
    /** In 100 ns; for video the duration of a frame. */
    int64_t mTimeUnit = 0;
    /** Audio: sample rate in Hz. Video: frames a second. */
    int64_t mSampleRate = 0;
    ogm::FormatPtr mFormat;
};

}  // namespace android
