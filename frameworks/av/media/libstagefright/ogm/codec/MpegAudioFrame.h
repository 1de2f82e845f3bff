// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ByteView.h"
#include "codec/MpegAudioHeader.h"

/**
 * Finds frames of MPEG audio in the bytes of a stream: lock to a header that a second one confirms,
 * find the next header that matches it, and determine the size of the frame there.
 */
namespace android::ogm {

/**
 * Searches from `offset` on for the header that all frames of the stream must match, and stores it
 * in `reference`. `offset` becomes the position of the header that confirmed it. If there is none,
 * logs why and returns false.
 */
bool lockMpegAudio(ByteView data, uint64_t* offset, uint32_t* reference);

/** Whether this many bytes without a confirmed header are to be dropped. */
bool isTooLongWithoutLock(size_t size);

struct MpegAudioFrame {
    enum class Result { kWhole, kNoMatch, kBadHeader, kIncomplete };
    Result result = Result::kNoMatch;
    uint64_t offset = 0;
    uint32_t header = 0;
    /** In bytes. */
    uint64_t size = 0;
};

/**
 * The first frame from `offset` on whose header matches `reference`. Inline, because it runs for
 * each frame.
 */
inline MpegAudioFrame findMpegAudioFrame(ByteView data, uint64_t offset, uint32_t reference) {
    MpegAudioFrame frame;
    const ByteView rest = data.from(offset);
    const int32_t skip =
            FindMatchingMPEGAudioHeader(rest, static_cast<int32_t>(rest.size()), reference);
    if (skip < 0) {
        return frame;
    }
    frame.offset = offset + static_cast<uint64_t>(skip);
    frame.header = data.u32be(frame.offset);
    if (!GetMPEGAudioFrameSize(frame.header, &frame.size)) {
        frame.result = MpegAudioFrame::Result::kBadHeader;
    } else if (data.size() - frame.offset < frame.size) {
        frame.result = MpegAudioFrame::Result::kIncomplete;
    } else {
        frame.result = MpegAudioFrame::Result::kWhole;
    }
    return frame;
}

}  // namespace android::ogm
