// SPDX-License-Identifier: Apache-2.0
#include "stream/StreamHeader.h"

#include "base/Wrap.h"
#include "page/PageFormat.h"

namespace android::ogm {

namespace {

/** Offsets of the fields in bytes. */
enum Field : size_t {
    kPacketType = 0,
    kStreamType = 1,
    kSubtype = 9,
    kHeaderSize = 13,
    kTimeUnit = 17,
    kSamplesPerUnit = 25,
    kDefaultLength = 33,
    kBufferSize = 37,
    kBitsPerSample = 41,
    kPadding = 43,

    kWidth = 45,
    kHeight = 49,

    kChannels = 45,
    kBlockAlign = 47,
    kAverageBytesPerSecond = 49,
};

constexpr int kUnitsPerSecond = 10'000'000;  // a time unit is 100 ns

}  // namespace

Announcement identifyStream(ByteView packet) {
    if (packet.holds("vorbis", kStreamType)) {
        return Announcement::kVorbis;
    }
    if (packet[kPacketType] != kStreamHeaderPacket) {
        return Announcement::kUnknown;
    }
    if (packet.holds("video", kStreamType)) {
        return Announcement::kVideo;
    }
    return packet.holds("audio", kStreamType) ? Announcement::kAudio : Announcement::kUnknown;
}

StreamHeader::StreamHeader(ByteView packet)
    : subtype(packet.u32be(kSubtype)),
      headerSize(static_cast<int32_t>(packet.u32le(kHeaderSize))),
      timeUnit(packet.u64le(kTimeUnit)),
      samplesPerUnit(packet.u64le(kSamplesPerUnit)),
      defaultLength(static_cast<int32_t>(packet.u32le(kDefaultLength))),
      bufferSize(static_cast<int32_t>(packet.u32le(kBufferSize))),
      bitsPerSample(packet.u16le(kBitsPerSample)),
      padding(packet.u16le(kPadding)),
      width(static_cast<int32_t>(packet.u32le(kWidth))),
      height(static_cast<int32_t>(packet.u32le(kHeight))),
      channels(packet.u16le(kChannels)),
      blockAlign(packet.u16le(kBlockAlign)),
      averageBytesPerSecond(packet.u16le(kAverageBytesPerSecond)) {}

int32_t StreamHeader::frameRate() const {
    return wrapDiv(wrapMul(static_cast<int32_t>(samplesPerUnit), kUnitsPerSecond),
                   static_cast<int32_t>(timeUnit));
}

int32_t StreamHeader::sampleRate() const {
    return static_cast<int32_t>(
            wrapDiv(wrapMul(samplesPerUnit, uint64_t{kUnitsPerSecond}), timeUnit));
}

}  // namespace android::ogm
