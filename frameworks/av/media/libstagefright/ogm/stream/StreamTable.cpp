// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/StreamTable.h"

#include <log/log.h>
#include <media/MediaExtractorPluginApi.h>
#include <media/MediaExtractorPluginHelper.h>

#include <algorithm>
#include <cinttypes>
#include <utility>

#include "stream/Codecs.h"
#include "stream/StreamHeader.h"

namespace android::ogm {

media_status_t StreamTable::parseOgmHeader(const MediaBuffer& buffer, uint32_t serialNo) {
    const ByteView packet(static_cast<const uint8_t*>(buffer.data()) + buffer.range_offset(),
                          buffer.range_length());
    ALOGI("Verify Header %02X %02X %02X %02X %02X %02X\n", packet[0], packet[1], packet[2],
          packet[3], packet[4], packet[5]);
    switch (identifyStream(packet)) {
        case Announcement::kVorbis:
            ALOGI("Verify Vorbis Header\n");
            return AMEDIA_OK;
        case Announcement::kVideo:
            return addVideoStream(packet, serialNo);
        case Announcement::kAudio:
            return addAudioStream(packet, serialNo);
        case Announcement::kUnknown:
            break;
    }
    ALOGI("************* unknow header %02x %02x %02x %02x %02x %02x %02x %02x **************\n",
          packet[0], packet[1], packet[2], packet[3], packet[4], packet[5], packet[6], packet[7]);
    return AMEDIA_ERROR_UNSUPPORTED;
}

media_status_t StreamTable::addVideoStream(ByteView packet, uint32_t serialNo) {
    ALOGI("Begin parse Video stream info");
    const StreamHeader header(packet);
    FormatPtr format(AMediaFormat_new());
    const uint32_t type = mapVideoCodec(format.get(), header.subtype);
    if (type == OGM_TYPE_UNKNOWN) {
        ALOGE("invalid video codec");
        return AMEDIA_ERROR_UNSUPPORTED;
    }
    const int32_t frameRate = header.frameRate();
    mBitsPerSample = header.bitsPerSample;
    AMediaFormat_setInt32(format.get(), AMEDIAFORMAT_KEY_WIDTH, header.width);
    AMediaFormat_setInt32(format.get(), AMEDIAFORMAT_KEY_HEIGHT, header.height);
    AMediaFormat_setInt32(format.get(), AMEDIAFORMAT_KEY_FRAME_RATE, frameRate);
    ALOGI("Width = %d, Height = %d", header.width, header.height);
    ALOGI("FrameRate = %d", frameRate);
    ALOGI("size = %d", header.headerSize);
    ALOGI("default_len = %d", header.defaultLength);
    ALOGI("buffer_size = %d", header.bufferSize);
    ALOGI("padding = %d", header.padding);
    ALOGI("SerialNo = %d", serialNo);
    mTracks.push_back(
            {serialNo, type, static_cast<int64_t>(header.timeUnit), frameRate, std::move(format)});
    return AMEDIA_OK;
}

media_status_t StreamTable::addAudioStream(ByteView packet, uint32_t serialNo) {
    ALOGI("Begin parse Audio stream info");
    const StreamHeader header(packet);
    FormatPtr format(AMediaFormat_new());
    const uint32_t type = mapAudioCodec(format.get(), header.subtype);
    if (type == OGM_TYPE_UNKNOWN) {
        ALOGE("invalid audio codec");
        return AMEDIA_ERROR_UNSUPPORTED;
    }
    const int32_t sampleRate = header.sampleRate();
    mBitsPerSample = header.bitsPerSample;
    AMediaFormat_setInt32(format.get(), AMEDIAFORMAT_KEY_SAMPLE_RATE, sampleRate);
    AMediaFormat_setInt32(format.get(), AMEDIAFORMAT_KEY_CHANNEL_COUNT, header.channels);
    ALOGI("channel count = %d", header.channels);
    ALOGI("SampleRate = %d", sampleRate);
    ALOGI("timeunit = %" PRId64, header.timeUnit);
    ALOGI("size = %d", header.headerSize);
    ALOGI("bit_per_sample = %d", header.bitsPerSample);
    ALOGI("default_len = %d", header.defaultLength);
    ALOGI("buffer_size = %d", header.bufferSize);
    ALOGI("padding = %d", header.padding);
    ALOGI("blockalign = %d", header.blockAlign);
    ALOGI("avg_bytes_per_sec = %d", header.averageBytesPerSecond);
    ALOGI("SerialNo = %d", serialNo);
    mTracks.push_back(
            {serialNo, type, static_cast<int64_t>(header.timeUnit), sampleRate, std::move(format)});
    return AMEDIA_OK;
}

const OgmStreamInfo* StreamTable::find(uint32_t serialNo) const {
    const auto found = std::find_if(
            begin(), end(), [=](const OgmStreamInfo& row) { return row.mSerialNo == serialNo; });
    return found == end() ? nullptr : &*found;
}

void StreamTable::setDuration(int64_t durationUs) {
    const std::lock_guard<std::mutex> lock(mFormatLock);
    for (const OgmStreamInfo& stream : mTracks) {
        AMediaFormat_setInt64(stream.mFormat.get(), AMEDIAFORMAT_KEY_DURATION, durationUs);
    }
}

std::string StreamTable::mimeOf(uint32_t serialNo) const {
    const OgmStreamInfo* const stream = find(serialNo);
    const std::lock_guard<std::mutex> lock(mFormatLock);
    const char* mime = nullptr;
    const bool known = stream != nullptr &&
                       AMediaFormat_getString(stream->mFormat.get(), AMEDIAFORMAT_KEY_MIME, &mime);
    return known ? std::string(mime) : std::string();
}

media_status_t StreamTable::copyFormat(uint32_t serialNo, int64_t durationUs,
                                       AMediaFormat* format) const {
    const OgmStreamInfo* const stream = find(serialNo);
    if (stream == nullptr) {
        return AMEDIA_ERROR_MALFORMED;
    }
    const std::lock_guard<std::mutex> lock(mFormatLock);
    AMediaFormat_setInt64(stream->mFormat.get(), AMEDIAFORMAT_KEY_DURATION, durationUs);
    AMediaFormat_copy(format, stream->mFormat.get());
    return AMEDIA_OK;
}

media_status_t StreamTable::getTrackMetaData(AMediaFormat* format, size_t index, uint32_t flags) {
    if (index >= mTracks.size()) {
        ALOGE("getTrackMetaData,invalid index[%d]", static_cast<int>(index));
        return AMEDIA_ERROR_UNKNOWN;
    }
    const std::lock_guard<std::mutex> lock(mFormatLock);
    AMediaFormat* const own = mTracks[index].mFormat.get();
    const char* mime = nullptr;
    if (AMediaFormat_getString(own, AMEDIAFORMAT_KEY_MIME, &mime)) {
        ALOGI("getTrackMetaData mime:%s", mime);
    }
    // Only once per extractor, for the first track that is queried.
    if ((flags & MediaExtractorPluginHelper::kIncludeExtensiveMetaData) != 0 &&
        !mThumbnailTimeSet) {
        ALOGI("getTrackMetaData, set thumbnail time");
        AMediaFormat_setInt64(own, AMEDIAFORMAT_KEY_THUMBNAIL_TIME, 0);
        mThumbnailTimeSet = true;
    }
    AMediaFormat_copy(format, own);
    return AMEDIA_OK;
}

}  // namespace android::ogm
