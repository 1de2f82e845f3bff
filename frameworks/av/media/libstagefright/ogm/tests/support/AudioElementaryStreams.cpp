// SPDX-License-Identifier: Apache-2.0
#include <stdexcept>

#include "BitWriter.h"
#include "ElementaryStreams.h"

namespace android::ogm::test {
namespace {

constexpr uint32_t kSamplingRates[] = {44100, 48000, 32000};

// kbit/s by bit-rate index 1 to 14.
constexpr uint32_t kLayer1Mpeg1[] = {32,  64,  96,  128, 160, 192, 224,
                                     256, 288, 320, 352, 384, 416, 448};
constexpr uint32_t kLayer1Mpeg2[] = {32,  48,  56,  64,  80,  96,  112,
                                     128, 144, 160, 176, 192, 224, 256};
constexpr uint32_t kLayer2Mpeg1[] = {32,  48,  56,  64,  80,  96,  112,
                                     128, 160, 192, 224, 256, 320, 384};
constexpr uint32_t kLayer3Mpeg1[] = {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr uint32_t kLayer23Mpeg2[] = {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

// kbit/s of AC-3 by half the frame size code.
constexpr uint32_t kAc3Bitrates[] = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                     192, 224, 256, 320, 384, 448, 512, 576, 640};

const uint32_t* bitratesOf(MpegVersion version, uint32_t layer) {
    const bool mpeg1 = version == MpegVersion::kMpeg1;
    switch (layer) {
        case 1:
            return mpeg1 ? kLayer1Mpeg1 : kLayer1Mpeg2;
        case 2:
            return mpeg1 ? kLayer2Mpeg1 : kLayer23Mpeg2;
        default:
            return mpeg1 ? kLayer3Mpeg1 : kLayer23Mpeg2;
    }
}

uint32_t samplingRateOf(MpegVersion version, uint32_t index) {
    const uint32_t rate = kSamplingRates[index];
    switch (version) {
        case MpegVersion::kMpeg1:
            return rate;
        case MpegVersion::kMpeg2:
            return rate / 2;
        default:
            return rate / 4;
    }
}

/** `header` followed by patterned bytes up to `size`. */
Bytes frameOf(const Bytes& header, size_t size, uint32_t seed) {
    Bytes frame = head(header, size);
    append(frame, pattern(size - frame.size(), seed));
    return frame;
}

}  // namespace

uint32_t MpegAudioFrame::header() const {
    uint32_t word = 0xFFE00000U;
    word |= static_cast<uint32_t>(version) << 19;
    word |= (4 - layer) << 17;
    word |= (crc ? 0U : 1U) << 16;
    word |= bitrateIndex << 12;
    word |= samplingRateIndex << 10;
    word |= (padding ? 1U : 0U) << 9;
    word |= (mono ? 3U : 1U) << 6;
    return word;
}

size_t MpegAudioFrame::size() const {
    if (bitrateIndex < 1 || bitrateIndex > 14 || samplingRateIndex > 2) {
        throw std::invalid_argument("this frame header has no size");
    }
    const uint32_t bitrate = bitratesOf(version, layer)[bitrateIndex - 1];
    const uint32_t rate = samplingRateOf(version, samplingRateIndex);
    const uint32_t slot = padding ? 1 : 0;
    if (layer == 1) {
        return size_t{4} * (12000 * bitrate / rate + slot);
    }
    const bool half = layer == 3 && version != MpegVersion::kMpeg1;
    return (half ? 72000 : 144000) * bitrate / rate + slot;
}

Bytes MpegAudioFrame::bytes() const {
    Bytes word;
    appendBigEndian(word, header(), 4);
    return frameOf(word, size(), seed);
}

size_t Ac3Frame::size() const {
    if (length) {
        return *length;
    }
    if (sampleRateCode > 2 || frameSizeCode >= 38) {
        throw std::invalid_argument("these codes have no frame size");
    }
    const size_t bitrate = kAc3Bitrates[frameSizeCode / 2];
    switch (sampleRateCode) {
        case 0:
            return bitrate * 4;
        case 1:
            return (bitrate * 96000 / 44100 + frameSizeCode % 2) * 2;
        default:
            return bitrate * 6;
    }
}

Bytes Ac3Frame::bytes() const {
    BitWriter header;
    header.put(0x0B77, 16)
            .put(0x1234, 16)  // crc1
            .put(sampleRateCode, 2)
            .put(frameSizeCode, 6)
            .put(bitStreamId, 5)
            .put(0, 3);
    return frameOf(header.bytes(), size(), seed);
}

Bytes EnhancedAc3Frame::bytes() const {
    if (length % 2 != 0 || length < 6) {
        throw std::invalid_argument("a sync frame has a whole number of 16-bit words");
    }
    BitWriter header;
    header.put(0x0B77, 16)
            .put(streamType, 2)
            .put(substreamId, 3)
            .put(static_cast<uint32_t>(length / 2 - 1), 11)
            .put(0x3F, 8)  // sampling rate, blocks, channels
            .put(bitStreamId, 5)
            .put(0, 3);
    return frameOf(header.bytes(), length, seed);
}

Bytes dtsFrame(DtsForm form, size_t size, uint32_t seed) {
    switch (form) {
        case DtsForm::kCore16BitBigEndian:
            return frameOf({0x7F, 0xFE, 0x80, 0x01}, size, seed);
        case DtsForm::kCore14BitBigEndian:
            return frameOf({0x1F, 0xFF, 0xE8, 0x00}, size, seed);
        default:
            return frameOf({0x64, 0x58, 0x20, 0x25}, size, seed);
    }
}

}  // namespace android::ogm::test
