// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ByteView.h"
#include "codec/MpegAudioHeader.h"

/**
 * How a frame of MPEG audio is found among the bytes of a stream: lock on to a header that a second
 * one confirms, find the next header that agrees with it, measure the frame that begins there.
 */
namespace android::ogm {

/**
 * Searches from `offset` for the header that all frames of the stream agree with, and puts it into
 * `reference`. `offset` is then where it was confirmed. Returns false, and logs why, without one.
 */
bool lockMpegAudio(ByteView data, uint64_t* offset, uint32_t* reference);

/** Whether so many bytes without a lock are given up. */
bool isTooLongWithoutLock(size_t size);

struct MpegAudioFrame {
    enum class Result { kWhole, kNoMatch, kBadHeader, kIncomplete };
    Result result = Result::kNoMatch;
    uint64_t offset = 0;
    uint32_t header = 0;
    /** Bytes. */
    uint64_t size = 0;
};

/**
 * The first frame from `offset` on whose header agrees with `reference`. Inline, as it runs for
 * each frame that is handed out.
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
