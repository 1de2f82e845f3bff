// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "audio/MpegAudioCutter.h"

#include <log/log.h>

#include "base/Assert.h"
#include "codec/MpegAudioFormat.h"
#include "codec/MpegAudioFrame.h"
#include "codec/MpegAudioHeader.h"

namespace android::ogm {

namespace {

constexpr size_t kHeaderSize = 4;

}  // namespace

std::optional<size_t> findMpegAudioSync(ByteView data) {
    for (size_t position = 0; position < data.size(); ++position) {
        if (IsPlausibleMPEGAudioSync(data.from(position))) {
            return position;
        }
    }
    return std::nullopt;
}

std::optional<size_t> MpegAudioCutter::findFirstSync(ByteView bytes) const {
    const std::optional<size_t> start = findMpegAudioSync(bytes);
    if (start.value_or(0) > 0) {
        ALOGI("found something resembling an MPEG audio syncword at offset %zu", *start);
    }
    return start;
}

std::optional<AccessUnit> MpegAudioCutter::dequeueAccessUnit(ElementaryStream* stream,
                                                             PieceAllocator* allocator) {
    if (stream->size() < kHeaderSize) {
        return std::nullopt;
    }
    uint64_t offset = 0;
    if (mMP3Header == 0 && !lock(stream, &offset)) {
        return std::nullopt;
    }
    const MpegAudioFrame frame = findMpegAudioFrame(stream->view(), offset, mMP3Header);
    switch (frame.result) {
        case MpegAudioFrame::Result::kNoMatch:
            ALOGI("not found mMP3Header,skip");
            stream->discardBytes();
            return std::nullopt;
        case MpegAudioFrame::Result::kBadHeader:
            ALOGE("GetMPEGAudioFrameSize fail, skip this buffer");
            stream->discardBytes();
            return std::nullopt;
        case MpegAudioFrame::Result::kIncomplete:
            return std::nullopt;
        case MpegAudioFrame::Result::kWhole:
            break;
    }
    AccessUnit unit{stream->takeFrame(frame.offset, frame.size, allocator)};
    // Bytes before the frame are charged to it.
    unit.timeUs = stream->fetchTimestamp(frame.offset + frame.size);
    OGM_CHECK_VALUES(unit.timeUs >= 0,
                     OGM_SOURCES "OgmExtractor:717 CHECK_GE( timeUs,0ll) failed: ", unit.timeUs, 0);
    if (mFormat == nullptr) {
        mFormat = makeMpegAudioFormat(frame.header);
    }
    return unit;
}

/**
 * Searches for the header that all frames of the stream must match. The search for a frame then
 * continues at the second header, which confirmed the first: if the second frame is complete, the
 * first one is lost and charged to it. Otherwise the next call begins at the first frame again.
 */
bool MpegAudioCutter::lock(ElementaryStream* stream, uint64_t* offset) {
    if (lockMpegAudio(stream->view(), offset, &mMP3Header)) {
        ALOGI("mMP3Header:%x", mMP3Header);
        return true;
    }
    if (isTooLongWithoutLock(stream->size())) {
        stream->discardBytes();
    }
    return false;
}

}  // namespace android::ogm
