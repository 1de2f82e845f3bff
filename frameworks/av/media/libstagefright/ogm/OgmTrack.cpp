// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <cutils/properties.h>

#include "OgmExtractor.h"
#include "audio/OgmBufferQueue.h"
#include "audio/OgmEsQueue.h"

namespace android {

namespace {

constexpr size_t kBufferCount = 1;
constexpr size_t kBufferSize = 256;
constexpr size_t kMaxBufferCount = 64;

constexpr const char* kDumpAudioProperty = "vendor.zor.ogmextractor.dump.audio";
constexpr const char* kDumpVideoProperty = "vendor.zor.ogmextractor.dump.video";

}  // namespace

OgmTrack::OgmTrack(OgmExtractor* extractor, uint32_t serialNo, uint32_t type,
                   uint16_t bitsPerSample)
    : mExtractor(extractor),
      mSerialNo(serialNo),
      mType(type),
      mBitsPerSample(bitsPerSample),
      mMime(extractor->mimeOf(serialNo)),
      mDumpAudio(property_get_int32(kDumpAudioProperty, 0) != 0),
      mDumpVideo(property_get_int32(kDumpVideoProperty, 0) != 0) {
    if (const auto mode = OgmEsQueue::modeFor(type)) {
        mEsQueue = std::make_unique<OgmEsQueue>(*mode, 0);
        if (type == OGA_AUDIO_MP3 || type == OGA_AUDIO_MPEG) {
            mEsQueue->setDequeueMpegAudioOgm(true);
        }
        if (type == OGV_VIDEO_MPEG) {
            mEsQueue->setMarkLastPosition(true);
        }
        mBufferQueue = std::make_unique<OgmBufferQueue>();
    }
    resetPageState();
}

OgmTrack::~OgmTrack() {
    ALOGI("Track Type[%d] destroy\n", static_cast<int>(mType));
    if (!mStopped) {
        ALOGI("~OgmTrack call stop()!");
        (void)OgmTrack::stop();
    }
    // A track that was stopped once is not stopped again, even if it was started since, and stays
    // registered: its serial number goes on counting, but packets no longer reach it.
    mExtractor->trackDestroyed(this);
}

media_status_t OgmTrack::start() {
    ALOGI("OgmTrack:[start] mSerialNo[%d]\n", static_cast<int>(mSerialNo));
    // A track that was never stopped has been registered since it was made.
    if (mStopped) {
        mExtractor->trackStart(static_cast<int32_t>(mSerialNo), this);
    }
    (void)mBufferGroup->init(kBufferCount, kBufferSize, kMaxBufferCount);
    return AMEDIA_OK;
}

media_status_t OgmTrack::stop() {
    ALOGI("OgmTrack:[stop] mSerialNo[%d]\n", static_cast<int>(mSerialNo));
    mExtractor->trackStop(static_cast<int32_t>(mSerialNo));
    mStopped = true;
    return AMEDIA_OK;
}

media_status_t OgmTrack::getFormat(AMediaFormat* format) {
    logGetFormat();
    return mExtractor->copyFormat(mSerialNo, format);
}

}  // namespace android
