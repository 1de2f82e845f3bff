// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmEsqueue"

#include "audio/OgmEsQueue.h"

#include <iterator>

namespace android {

namespace {

struct Mode {
    uint32_t streamType;
    uint32_t mode;
};

// The types 2 and 16 have queues although no file produces a stream of them.
constexpr Mode kModes[] = {
        {OGA_AUDIO_MP3, 21},   {2, 13},
        {OGA_AUDIO_AAC, 1},    {OGA_AUDIO_WMA, 12},
        {OGA_AUDIO_PCM, 24},   {OGA_AUDIO_MPEG, 21},
        {OGA_AUDIO_AC3, 3},    {OGA_AUDIO_DTS, 2},
        {OGA_AUDIO_ADPCM, 25}, {16, 11},
        {OGV_VIDEO_MP4, 23},   {OGV_VIDEO_MPEG, 22},
        {OGV_VIDEO_H264, 0},   {OGV_VIDEO_DIVX, 6},
        {OGV_VIDEO_WMV, 7},    {OGV_VIDEO_VP8, 8},
        {OGV_VIDEO_MJPEG, 9},
};

}  // namespace

std::optional<uint32_t> OgmEsQueue::modeFor(uint32_t streamType) {
    for (const Mode& row : kModes) {
        if (row.streamType == streamType) {
            return row.mode;
        }
    }
    return std::nullopt;
}

OgmEsQueue::OgmEsQueue(uint32_t mode, uint32_t flags)
    : mMode(mode), mFlags(flags), mFormat(new AMessage) {}

void OgmEsQueue::setDequeueMpegAudioOgm(bool enabled) {
    mDequeueMpegAudioOgm = enabled;
    // At error level although nothing is wrong.
    ALOGE("set  mDequeueMpegAudioOgm :%d\n", static_cast<int>(enabled));
}

void OgmEsQueue::clear(bool clearFormat) {
    if (mBuffer != nullptr) {
        mBuffer->setRange(0, 0);
        if (mMarkLastPosition) {
            mBuffer->meta()->setInt32("LPos", 0);
        }
    }
    mRangeInfos.clear();
    mBuffers.clear();
    mClearedByReset = false;
    if (clearFormat) {
        mFormat->clear();
    }
}

void OgmEsQueue::setDiscontinuity(bool discontinuity) {
    mDiscontinuity = discontinuity;
    mSawDiscontinuity = true;
}

}  // namespace android
