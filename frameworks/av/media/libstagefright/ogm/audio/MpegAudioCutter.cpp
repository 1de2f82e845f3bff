// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmExtractor.h"
#include "audio/Cutters.h"
#include "base/Assert.h"
#include "codec/MpegAudioFormat.h"
#include "codec/Ogmavc_utils.h"

namespace android {

using ogm::ByteView;

namespace {

constexpr size_t kHeaderSize = 4;

}  // namespace

std::optional<size_t> ogm::findMpegAudioSync(ByteView data) {
    for (size_t position = 0; position < data.size(); ++position) {
        if (IsPlausibleMPEGAudioSync(data.from(position))) {
            return position;
        }
    }
    return std::nullopt;
}

std::optional<AccessUnit> OgmTrack::dequeueAccessUnitMpegAudio() {
    const ByteView data = mPacketBuff.view();
    if (data.size() < kHeaderSize) {
        return std::nullopt;
    }
    uint64_t offset = 0;
    if (mMP3Header == 0 && !lockMpegAudio(data, &offset)) {
        return std::nullopt;
    }
    const ByteView rest = data.from(offset);
    const int32_t skip =
            ogm::FindMatchingMPEGAudioHeader(rest, static_cast<int32_t>(rest.size()), mMP3Header);
    if (skip < 0) {
        ALOGI("not found mMP3Header,skip");
        discardBuffer();
        return std::nullopt;
    }
    offset += static_cast<uint64_t>(skip);
    const uint32_t header = data.u32be(offset);
    uint64_t frameSize = 0;
    int32_t sampleRate = 0;
    int32_t channels = 0;
    if (!ogm::GetMPEGAudioFrameSize(header, &frameSize, &sampleRate, &channels)) {
        ALOGE("GetMPEGAudioFrameSize fail, skip this buffer");
        discardBuffer();
        return std::nullopt;
    }
    if (data.size() - offset < frameSize) {
        return std::nullopt;
    }
    AccessUnit unit{takeFrame(offset, frameSize)};
    // Bytes in front of the frame are charged to it.
    unit.timeUs = fetchTimestamp(offset + frameSize);
    OGM_CHECK_VALUES(unit.timeUs >= 0,
                     OGM_SOURCES "OgmExtractor:717 CHECK_GE( timeUs,0ll) failed: ", unit.timeUs, 0);
    if (mFormat == nullptr) {
        learnFormat(header, sampleRate, channels);
    }
    return unit;
}

/**
 * Looks for the header that all frames of the stream agree with. This call's search for a frame
 * goes on at the header that confirmed it: if the second frame is whole by then, the first is given
 * up and charged to it. Otherwise the next call begins at the first frame again.
 */
bool OgmTrack::lockMpegAudio(ByteView data, uint64_t* offset) {
    if (ogm::findMP3Header(data, offset, &mMP3Header) == ogm::kMP3HeaderFound) {
        ALOGI("mMP3Header:%x", mMP3Header);
        return true;
    }
    if (data.size() <= ogm::kMaxHeaderSearch) {
        ALOGW("Not get mMP3Header, size:%d", static_cast<int>(data.size()));
        return false;
    }
    ALOGE("findMP3Header fail size>%d, skip this buffer", static_cast<int>(ogm::kMaxHeaderSearch));
    discardBuffer();
    return false;
}

void OgmTrack::learnFormat(uint32_t header, int32_t sampleRate, int32_t channels) {
    mFormat.reset(AMediaFormat_new());
    const uint32_t layerBits = ogm::mpegAudioLayerBits(header);
    OGM_CHECK(layerBits != 0, OGM_SOURCES "OgmExtractor:735 Should not be here. ");
    ogm::setMpegAudioLayer(mFormat.get(), layerBits);
    AMediaFormat_setInt32(mFormat.get(), AMEDIAFORMAT_KEY_SAMPLE_RATE, sampleRate);
    AMediaFormat_setInt32(mFormat.get(), AMEDIAFORMAT_KEY_CHANNEL_COUNT, channels);
}

}  // namespace android
