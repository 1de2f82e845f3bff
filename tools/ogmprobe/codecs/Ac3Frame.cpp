// SPDX-License-Identifier: Apache-2.0
#include <array>

#include "codecs/AudioFrame.h"
#include "codecs/BitReader.h"

namespace ogmprobe {
namespace {

constexpr uint32_t kAc3Sync = 0x0b77;
constexpr uint32_t kNoRate = 3;
constexpr uint32_t kBlocks = 6;
constexpr uint32_t kSamplesPerBlock = 256;
/** Audio blocks of an E-AC-3 frame, by `numblkscod`. */
constexpr std::array<uint32_t, 4> kEnhancedBlocks = {1, 2, 3, kBlocks};
/** `strmtyp` of a frame that adds channels to the one before. */
constexpr uint32_t kDependent = 1;
constexpr uint32_t kLastAc3Version = 10;
constexpr uint32_t kLastVersion = 16;
constexpr size_t kVersionByte = 5;

constexpr std::array<uint32_t, 3> kAc3Rates = {48000, 44100, 32000};
/** Channels without the low-frequency one, by `acmod`. */
constexpr std::array<uint32_t, 8> kAc3Channels = {2, 1, 2, 3, 3, 4, 4, 5};

// kbit/s; two values of frmsizecod share each.
constexpr std::array<uint32_t, 19> kAc3Bitrates = {32,  40,  48,  56,  64,  80,  96,  112, 128, 160,
                                                   192, 224, 256, 320, 384, 448, 512, 576, 640};

std::optional<AudioFrame> plainFrame(BitReader bits) {
    bits.skip(16);  // crc1
    const uint32_t fscod = bits.take(2);
    const uint32_t frmsizecod = bits.take(6);
    bits.skip(5 + 3);  // bsid, bsmod
    const uint32_t acmod = bits.take(3);
    if (fscod == kNoRate || frmsizecod / 2 >= kAc3Bitrates.size()) {
        return std::nullopt;
    }
    // cmixlev, surmixlev, dsurmod
    bits.skip((acmod & 1) != 0 && acmod != 1 ? 2 : 0);
    bits.skip((acmod & 4) != 0 ? 2 : 0);
    bits.skip(acmod == 2 ? 2 : 0);
    AudioFrame frame;
    frame.kind = AudioFrame::Kind::kAc3;
    frame.samples = kBlocks * kSamplesPerBlock;
    frame.sampleRate = kAc3Rates[fscod];
    frame.channels = kAc3Channels[acmod] + bits.take(1);
    frame.family = fscod;
    frame.frameSizeCode = frmsizecod;
    frame.size = ac3FrameSize(frame.sampleRate, frmsizecod);
    return frame;
}

std::optional<AudioFrame> enhancedFrame(BitReader bits) {
    const uint32_t strmtyp = bits.take(2);
    const uint32_t substreamid = bits.take(3);
    AudioFrame frame;
    frame.kind = AudioFrame::Kind::kEnhancedAc3;
    frame.size = (uint64_t{bits.take(11)} + 1) * 2;
    const uint32_t fscod = bits.take(2);
    const uint32_t fscod2 = bits.take(2);  // numblkscod unless fscod is 3
    const uint32_t acmod = bits.take(3);
    if (fscod == kNoRate && fscod2 == kNoRate) {
        return std::nullopt;
    }
    frame.sampleRate = fscod == kNoRate ? kAc3Rates[fscod2] / 2 : kAc3Rates[fscod];
    frame.channels = kAc3Channels[acmod] + bits.take(1);
    frame.family = 4 + fscod;
    const uint32_t blocks = fscod == kNoRate ? kBlocks : kEnhancedBlocks[fscod2];
    frame.samples = blocks * kSamplesPerBlock;
    frame.addsToFrameBefore = strmtyp == kDependent || substreamid > 0;
    return frame;
}

}  // namespace

// A frame has 1536 samples. At 44.1 kHz that is no whole number of words, and the odd code rounds
// up.
uint64_t ac3FrameSize(uint32_t sampleRate, uint32_t frmsizecod) {
    constexpr uint64_t kBitsPerWord = 16;
    constexpr uint32_t kUnevenRate = 44100;
    if (frmsizecod / 2 >= kAc3Bitrates.size()) {
        return 0;
    }
    const uint64_t bits = uint64_t{kAc3Bitrates[frmsizecod / 2]} * 1000 * 1536;
    const uint64_t words = bits / (sampleRate * kBitsPerWord);
    return 2 * (words + (sampleRate == kUnevenRate ? frmsizecod % 2 : 0));
}

std::optional<AudioFrame> ac3FrameAt(std::span<const uint8_t> bytes) {
    if (bytes.size() <= kVersionByte) {
        return std::nullopt;
    }
    BitReader bits(bytes);
    const uint32_t bsid = bytes[kVersionByte] >> 3;
    if (bits.take(16) != kAc3Sync || bsid > kLastVersion) {
        return std::nullopt;
    }
    return bsid <= kLastAc3Version ? plainFrame(bits) : enhancedFrame(bits);
}

}  // namespace ogmprobe
