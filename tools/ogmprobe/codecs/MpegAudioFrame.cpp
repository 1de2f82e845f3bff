// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "codecs/AudioFrame.h"
#include "codecs/BitReader.h"

namespace ogmprobe {
namespace {

constexpr uint32_t kMpegAudioSync = 0x7ff;
constexpr uint32_t kVersion1 = 3;
constexpr uint32_t kVersion2 = 2;
constexpr uint32_t kNoVersion = 1;
constexpr uint32_t kSingleChannel = 3;

// In Hz, for version 1.
constexpr std::array<uint32_t, 4> kMpegAudioRates = {44100, 48000, 32000, 0};

using Bitrates = std::array<uint16_t, 16>;

// In kbit/s, by bitrate_index. 0 is the free format, whose frames do not contain their size.
constexpr std::array<Bitrates, 3> kVersion1Bitrates = {
        {{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448, 0},
         {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384, 0},
         {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0}}};
constexpr Bitrates kVersion2LayerOne = {0,   32,  48,  56,  64,  80,  96,  112,
                                        128, 144, 160, 176, 192, 224, 256, 0};
constexpr Bitrates kVersion2Others = {0,  8,  16, 24,  32,  40,  48,  56,
                                      64, 80, 96, 112, 128, 144, 160, 0};

uint32_t bitrateOf(uint32_t version, uint32_t layer, uint32_t index) {
    if (version == kVersion1) {
        return kVersion1Bitrates[layer - 1][index];
    }
    return layer == 1 ? kVersion2LayerOne[index] : kVersion2Others[index];
}

uint32_t samplesOf(uint32_t version, uint32_t layer) {
    return layer == 1 ? 384 : layer == 3 && version != kVersion1 ? 576 : 1152;
}

uint64_t frameBytes(uint32_t version, uint32_t layer, uint64_t bitsPerSecond, uint32_t rate,
                    uint32_t padding) {
    if (layer == 1) {
        return (12 * bitsPerSecond / rate + padding) * 4;
    }
    const uint64_t slots = layer == 3 && version != kVersion1 ? 72 : 144;
    return slots * bitsPerSecond / rate + padding;
}

}  // namespace

std::optional<AudioFrame> mpegAudioFrameAt(std::span<const uint8_t> bytes) {
    BitReader bits(bytes);
    const bool synced = bits.take(11) == kMpegAudioSync;
    const uint32_t version = bits.take(2);
    const uint32_t layer = 4 - bits.take(2);
    bits.skip(1);  // protection_bit
    const uint32_t bitrateIndex = bits.take(4);
    const uint32_t rateIndex = bits.take(2);
    const uint32_t padding = bits.take(1);
    bits.skip(1);  // private_bit
    const uint32_t mode = bits.take(2);
    if (!synced || bits.isPastEnd() || version == kNoVersion || layer > 3) {
        return std::nullopt;
    }
    const uint32_t bitrate = bitrateOf(version, layer, bitrateIndex);
    if (bitrate == 0 || kMpegAudioRates[rateIndex] == 0) {
        return std::nullopt;
    }
    AudioFrame frame;
    frame.kind = AudioFrame::Kind::kMpegAudio;
    frame.layer = layer;
    frame.samples = samplesOf(version, layer);
    frame.sampleRate = kMpegAudioRates[rateIndex] >> (version == kVersion1   ? 0
                                                      : version == kVersion2 ? 1
                                                                             : 2);
    frame.channels = mode == kSingleChannel ? 1 : 2;
    frame.family = version << 4 | layer << 2 | rateIndex;
    frame.size = frameBytes(version, layer, uint64_t{bitrate} * 1000, frame.sampleRate, padding);
    return frame;
}

}  // namespace ogmprobe
