// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/StreamHeader.h"

#include <log/log.h>

#include <utility>

#include "OgmExtractor.h"
#include "base/Wrap.h"
#include "packet/PacketHeader.h"

namespace android {

using ogm::ByteView;
using ogm::FormatPtr;
using ogm::StreamHeader;

namespace {

constexpr size_t kStreamTypeOffset = 1;

constexpr int kUnitsPerSecond = 10'000'000;  // a time unit is 100 ns

}  // namespace

namespace ogm {

StreamHeader::StreamHeader(ByteView packet)
    : subtype(packet.u32be(9)),
      headerSize(static_cast<int32_t>(packet.u32le(13))),
      timeUnit(packet.u64le(17)),
      samplesPerUnit(packet.u64le(25)),
      defaultLength(static_cast<int32_t>(packet.u32le(33))),
      bufferSize(static_cast<int32_t>(packet.u32le(37))),
      bitsPerSample(packet.u16le(41)),
      padding(packet.u16le(43)),
      width(static_cast<int32_t>(packet.u32le(45))),
      height(static_cast<int32_t>(packet.u32le(49))),
      channels(packet.u16le(45)),
      blockAlign(packet.u16le(47)),
      averageBytesPerSecond(packet.u16le(49)) {}

int32_t StreamHeader::frameRate() const {
    return wrapDiv(wrapMul(static_cast<int32_t>(samplesPerUnit), kUnitsPerSecond),
                   static_cast<int32_t>(timeUnit));
}

int32_t StreamHeader::sampleRate() const {
    return static_cast<int32_t>(
            wrapDiv(wrapMul(samplesPerUnit, uint64_t{kUnitsPerSecond}), timeUnit));
}

}  // namespace ogm

media_status_t OgmExtractor::parseOgmHeader(const MediaBuffer& buffer, uint32_t serialNo) {
    const ByteView packet(static_cast<const uint8_t*>(buffer.data()) + buffer.range_offset(),
                          buffer.range_length());
    ALOGI("Verify Header %02X %02X %02X %02X %02X %02X\n", packet[0], packet[1], packet[2],
          packet[3], packet[4], packet[5]);
    if (packet.holds("vorbis", kStreamTypeOffset)) {
        ALOGI("Verify Vorbis Header\n");
        return AMEDIA_OK;
    }
    if (packet[0] == ogm::kStreamHeaderPacket && packet.holds("video", kStreamTypeOffset)) {
        return addVideoStream(packet, serialNo);
    }
    if (packet[0] == ogm::kStreamHeaderPacket && packet.holds("audio", kStreamTypeOffset)) {
        return addAudioStream(packet, serialNo);
    }
    ALOGI("************* unknow header %02x %02x %02x %02x %02x %02x %02x %02x **************\n",
          packet[0], packet[1], packet[2], packet[3], packet[4], packet[5], packet[6], packet[7]);
    return AMEDIA_ERROR_UNSUPPORTED;
}

media_status_t OgmExtractor::addVideoStream(ByteView packet, uint32_t serialNo) {
    ALOGI("Begin parse Video stream info");
    const StreamHeader header(packet);
    FormatPtr format(AMediaFormat_new());
    const uint32_t type = ogm::mapVideoCodec(format.get(), header.subtype);
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
    ALOGI("SerialNo = %d", static_cast<int>(serialNo));
    mTracks.push_back(
            {serialNo, type, static_cast<int64_t>(header.timeUnit), frameRate, std::move(format)});
    return AMEDIA_OK;
}

media_status_t OgmExtractor::addAudioStream(ByteView packet, uint32_t serialNo) {
    ALOGI("Begin parse Audio stream info");
    const StreamHeader header(packet);
    FormatPtr format(AMediaFormat_new());
    const uint32_t type = ogm::mapAudioCodec(format.get(), header.subtype);
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
    ALOGI("timeunit = %lld", static_cast<long long>(header.timeUnit));
    ALOGI("size = %d", header.headerSize);
    ALOGI("bit_per_sample = %d", header.bitsPerSample);
    ALOGI("default_len = %d", header.defaultLength);
    ALOGI("buffer_size = %d", header.bufferSize);
    ALOGI("padding = %d", header.padding);
    ALOGI("blockalign = %d", header.blockAlign);
    ALOGI("avg_bytes_per_sec = %d", header.averageBytesPerSecond);
    ALOGI("SerialNo = %d", static_cast<int>(serialNo));
    mTracks.push_back(
            {serialNo, type, static_cast<int64_t>(header.timeUnit), sampleRate, std::move(format)});
    return AMEDIA_OK;
}

}  // namespace android
