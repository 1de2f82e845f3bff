// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>

#include "codecs/AudioFrame.h"
#include "codecs/BitReader.h"

namespace ogmprobe {
namespace {

struct DtsForm {
    std::array<uint8_t, 4> sync;
    bool fourteenBits;
    bool littleEndian;
};

constexpr std::array<DtsForm, 4> kDtsCores = {{{{0x7f, 0xfe, 0x80, 0x01}, false, false},
                                               {{0xfe, 0x7f, 0x01, 0x80}, false, true},
                                               {{0x1f, 0xff, 0xe8, 0x00}, true, false},
                                               {{0xff, 0x1f, 0x00, 0xe8}, true, true}}};
constexpr std::array<uint8_t, 4> kDtsSubstream = {0x64, 0x58, 0x20, 0x25};

// In Hz, by SFREQ; 0 for reserved values.
constexpr std::array<uint32_t, 16> kDtsRates = {
        0, 8000, 16000, 32000, 0, 0, 11025, 22050, 44100, 0, 0, 12000, 24000, 48000, 0, 0};

constexpr uint32_t kDtsBlockSamples = 32;

bool beginsWith(std::span<const uint8_t> bytes, const std::array<uint8_t, 4>& sync) {
    return bytes.size() >= sync.size() && std::equal(sync.begin(), sync.end(), bytes.begin());
}

/** Returns the header as bits without gaps, whatever form it is stored in. */
std::array<uint8_t, kAudioHeaderBytes> plainHeader(std::span<const uint8_t> bytes,
                                                   const DtsForm& form) {
    const unsigned width = form.fourteenBits ? 14 : 16;
    std::array<uint8_t, kAudioHeaderBytes> header{};
    size_t position = 0;
    for (size_t i = 0; i + 1 < std::min(bytes.size(), kAudioHeaderBytes); i += 2) {
        const unsigned first = bytes[form.littleEndian ? i + 1 : i];
        const unsigned word = first << 8 | bytes[form.littleEndian ? i : i + 1];
        for (unsigned bit = width; bit-- > 0; ++position) {
            header[position / 8] |= static_cast<uint8_t>((word >> bit & 1) << (7 - position % 8));
        }
    }
    return header;
}

AudioFrame coreFrame(std::span<const uint8_t> bytes, const DtsForm& form) {
    constexpr std::array<uint32_t, 10> kChannels = {1, 2, 2, 2, 2, 3, 3, 4, 4, 5};
    const auto header = plainHeader(bytes, form);
    BitReader bits(header);
    bits.skip(32 + 1 + 5 + 1);  // SYNC, FTYPE, SHORT, CPF
    const uint32_t nblks = bits.take(7);
    const uint64_t size = uint64_t{bits.take(14)} + 1;
    const uint32_t amode = bits.take(6);
    AudioFrame frame;
    frame.kind = AudioFrame::Kind::kDtsCore;
    frame.samples = (nblks + 1) * kDtsBlockSamples;
    // FSIZE does not include the two bits that each word of 14 bits leaves unused.
    frame.size = form.fourteenBits ? size * 16 / 14 : size;
    frame.channels = amode < kChannels.size() ? kChannels[amode] : 0;
    frame.sampleRate = kDtsRates[bits.take(4)];
    frame.fourteenBits = form.fourteenBits;
    frame.littleEndian = form.littleEndian;
    return frame;
}

AudioFrame substreamFrame(std::span<const uint8_t> bytes) {
    BitReader bits(bytes);
    bits.skip(32 + 8 + 2);  // SYNCEXTSSH, UserDefinedBits, nExtSSIndex
    const bool isLong = bits.take(1) != 0;
    bits.skip(isLong ? 12 : 8);  // nuExtSSHeaderSize
    AudioFrame frame;
    frame.kind = AudioFrame::Kind::kDtsSubstream;
    frame.size = uint64_t{bits.take(isLong ? 20 : 16)} + 1;
    return frame;
}

}  // namespace

std::optional<AudioFrame> dtsFrameAt(std::span<const uint8_t> bytes) {
    for (const DtsForm& form : kDtsCores) {
        if (beginsWith(bytes, form.sync)) {
            return coreFrame(bytes, form);
        }
    }
    if (beginsWith(bytes, kDtsSubstream)) {
        return substreamFrame(bytes);
    }
    return std::nullopt;
}

std::optional<AudioFrame> audioFrameAt(AudioFraming framing, std::span<const uint8_t> bytes) {
    switch (framing) {
        case AudioFraming::kMpegAudio:
            return mpegAudioFrameAt(bytes);
        case AudioFraming::kAc3:
            return ac3FrameAt(bytes);
        case AudioFraming::kDts:
            break;
    }
    return dtsFrameAt(bytes);
}

}  // namespace ogmprobe
