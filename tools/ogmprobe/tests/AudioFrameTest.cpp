// SPDX-License-Identifier: Apache-2.0
#include "codecs/AudioFrame.h"

#include <BitWriter.h>
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "codecs/BitReader.h"

namespace ogmprobe {
namespace {

using Bytes = std::vector<uint8_t>;

TEST(AudioFrame, MpegAudioSaysSizeRateAndChannels) {
    // Version 1, layer III, 128 kbit/s, 44.1 kHz, stereo.
    const auto frame = mpegAudioFrameAt(Bytes{0xff, 0xfb, 0x90, 0x00});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->layer, 3U);
    EXPECT_EQ(frame->size, 417U);
    EXPECT_EQ(frame->samples, 1152U);
    EXPECT_EQ(frame->sampleRate, 44100U);
    EXPECT_EQ(frame->channels, 2U);
    EXPECT_EQ(mpegAudioFrameAt(Bytes{0xff, 0xfb, 0x92, 0x00})->size, 418U);
    // Version 2, layer III, 64 kbit/s, 22.05 kHz, one channel.
    const auto half = mpegAudioFrameAt(Bytes{0xff, 0xf3, 0x80, 0xc0});
    ASSERT_TRUE(half);
    EXPECT_EQ(half->size, 208U);
    EXPECT_EQ(half->samples, 576U);
    EXPECT_EQ(half->sampleRate, 22050U);
    EXPECT_EQ(half->channels, 1U);
    EXPECT_NE(half->family, frame->family);
    EXPECT_EQ(mpegAudioFrameAt(Bytes{0xff, 0xff, 0x14, 0x00})->samples, 384U);
    // Version 1, layer I, 32 kbit/s, 48 kHz.
    EXPECT_EQ(mpegAudioFrameAt(Bytes{0xff, 0xff, 0x14, 0x00})->size, 32U);
}

TEST(AudioFrame, MpegAudioRefusesReservedFields) {
    for (const Bytes& bytes :
         {Bytes{0xff, 0x1b, 0x90, 0}, Bytes{0xff, 0xeb, 0x90, 0}, Bytes{0xff, 0xf9, 0x90, 0},
          Bytes{0xff, 0xfb, 0x00, 0}, Bytes{0xff, 0xfb, 0xf0, 0}, Bytes{0xff, 0xfb, 0x9c, 0},
          Bytes{0xff, 0xfb}}) {
        EXPECT_FALSE(mpegAudioFrameAt(bytes)) << int{bytes[1]} << " " << bytes.size();
    }
}

TEST(AudioFrame, Ac3SaysSizeRateAndChannels) {
    // 48 kHz, frmsizecod 20 (192 kbit/s), bsid 8, stereo.
    const auto frame = ac3FrameAt(Bytes{0x0b, 0x77, 0, 0, 0x14, 0x40, 0x40, 0});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->kind, AudioFrame::Kind::kAc3);
    EXPECT_EQ(frame->size, 768U);
    EXPECT_EQ(frame->samples, 1536U);
    EXPECT_EQ(frame->sampleRate, 48000U);
    EXPECT_EQ(frame->channels, 2U);
    // Three front channels, two rear channels, and the low-frequency channel.
    EXPECT_EQ(ac3FrameAt(Bytes{0x0b, 0x77, 0, 0, 0x14, 0x40, 0xe1, 0})->channels, 6U);
    EXPECT_FALSE(ac3FrameAt(Bytes{0x0b, 0x77, 0, 0, 0xd4, 0x40, 0x40, 0}));
    EXPECT_FALSE(ac3FrameAt(Bytes{0x0b, 0x77, 0, 0, 0x26, 0x40, 0x40, 0}));
    EXPECT_FALSE(ac3FrameAt(Bytes{0x0b, 0x77, 0, 0, 0x14}));
}

TEST(AudioFrame, TheOddCodeOfAc3RoundsUpAt44100Hertz) {
    EXPECT_EQ(ac3FrameSize(44100, 0), 138U);
    EXPECT_EQ(ac3FrameSize(44100, 1), 140U);
    EXPECT_EQ(ac3FrameSize(44100, 37), 2788U);
    EXPECT_EQ(ac3FrameSize(48000, 37), 2560U);
    EXPECT_EQ(ac3FrameSize(32000, 36), 3840U);
    EXPECT_EQ(ac3FrameSize(48000, 38), 0U);
}

TEST(AudioFrame, EnhancedAc3HasASizeField) {
    // 256 bytes, 48 kHz, bsid 16.
    const auto frame = ac3FrameAt(Bytes{0x0b, 0x77, 0x00, 0x7f, 0x34, 0x80, 0, 0});
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->kind, AudioFrame::Kind::kEnhancedAc3);
    EXPECT_EQ(frame->size, 256U);
    EXPECT_EQ(frame->samples, 1536U);
    EXPECT_FALSE(frame->addsToFrameBefore);
    // numblkscod 0 to 3; strmtyp 1.
    EXPECT_EQ(ac3FrameAt(Bytes{0x0b, 0x77, 0x00, 0x7f, 0x04, 0x80, 0, 0})->samples, 256U);
    EXPECT_EQ(ac3FrameAt(Bytes{0x0b, 0x77, 0x00, 0x7f, 0x14, 0x80, 0, 0})->samples, 512U);
    EXPECT_EQ(ac3FrameAt(Bytes{0x0b, 0x77, 0x00, 0x7f, 0x24, 0x80, 0, 0})->samples, 768U);
    EXPECT_TRUE(ac3FrameAt(Bytes{0x0b, 0x77, 0x40, 0x7f, 0x34, 0x80, 0, 0})->addsToFrameBefore);
    EXPECT_EQ(frame->sampleRate, 48000U);
    EXPECT_FALSE(ac3FrameAt(Bytes{0x0b, 0x77, 0x00, 0x7f, 0x34, 0x88, 0, 0}));
}

TEST(AudioFrame, DtsSaysItsSizeInEachForm) {
    // FSIZE 1005, AMODE 9, SFREQ 13 (48 kHz).
    const Bytes core = {0x7f, 0xfe, 0x80, 0x01, 0xfc, 0x3c, 0x3e, 0xd2, 0x74, 0, 0, 0};
    const auto frame = dtsFrameAt(core);
    ASSERT_TRUE(frame);
    EXPECT_EQ(frame->kind, AudioFrame::Kind::kDtsCore);
    EXPECT_EQ(frame->size, 1006U);
    EXPECT_EQ(frame->samples, 512U);
    EXPECT_EQ(frame->sampleRate, 48000U);
    EXPECT_EQ(frame->channels, 5U);
    Bytes swapped;
    for (size_t i = 0; i < core.size(); i += 2) {
        swapped.push_back(core[i + 1]);
        swapped.push_back(core[i]);
    }
    EXPECT_EQ(dtsFrameAt(swapped)->size, 1006U);
    EXPECT_TRUE(dtsFrameAt(swapped)->littleEndian);
    EXPECT_TRUE(dtsFrameAt(Bytes{0x1f, 0xff, 0xe8, 0x00, 0x07, 0xf1})->fourteenBits);
    // A substream of 0x1234 + 1 bytes.
    const auto substream = dtsFrameAt(Bytes{0x64, 0x58, 0x20, 0x25, 0, 0x00, 0x02, 0x46, 0x80});
    ASSERT_TRUE(substream);
    EXPECT_EQ(substream->kind, AudioFrame::Kind::kDtsSubstream);
    EXPECT_EQ(substream->size, 0x1235U);
    EXPECT_FALSE(dtsFrameAt(Bytes{0x7f, 0xfe, 0x80}));
}

/** The fields of a core from its sync word on, in one of the forms in which DTS is stored. */
Bytes dtsCore(uint32_t channels, uint32_t rate, bool fourteenBits, bool littleEndian) {
    android::ogm::test::BitWriter fields;
    fields.put(0x7ffe8001, 32).put(1, 1).put(31, 5).put(0, 1).put(15, 7).put(1005, 14);
    fields.put(channels, 6).put(rate, 4).put(0, 22);
    // 14 bits of each word are used; the sign of the word is repeated before them.
    const Bytes& plain = fields.bytes();
    BitReader bits(plain);
    android::ogm::test::BitWriter words;
    const unsigned width = fourteenBits ? 14 : 16;
    for (unsigned used = 0; used + width <= 8 * plain.size(); used += width) {
        const uint32_t word = bits.take(width);
        const bool isNegative = fourteenBits && word >> 13 != 0;
        words.put(isNegative ? 3 : 0, 16 - width).put(word, width);
    }
    Bytes bytes = words.bytes();
    for (size_t i = 0; littleEndian && i + 1 < bytes.size(); i += 2) {
        std::swap(bytes[i], bytes[i + 1]);
    }
    return bytes;
}

TEST(AudioFrame, DtsHasTheSameFieldsInEachOfItsFourForms) {
    for (const bool fourteenBits : {false, true}) {
        for (const bool littleEndian : {false, true}) {
            const Bytes core = dtsCore(9, 13, fourteenBits, littleEndian);
            const auto frame = dtsFrameAt(core);
            ASSERT_TRUE(frame) << fourteenBits << littleEndian;
            EXPECT_EQ(frame->fourteenBits, fourteenBits);
            EXPECT_EQ(frame->littleEndian, littleEndian);
            EXPECT_EQ(frame->size, fourteenBits ? 1006U * 16 / 14 : 1006U);
            EXPECT_EQ(frame->samples, 512U);
            EXPECT_EQ(frame->sampleRate, 48000U);
            EXPECT_EQ(frame->channels, 5U);
            for (size_t i = 0; i < 4; ++i) {
                Bytes other = core;
                other[i] ^= 1;
                EXPECT_FALSE(dtsFrameAt(other)) << i;
            }
        }
    }
}

TEST(AudioFrame, DtsSaysItsRateAndItsChannelsByTables) {
    const std::vector<uint32_t> rates = {0,     8000, 16000, 32000, 0,     0,     11025, 22050,
                                         44100, 0,    0,     12000, 24000, 48000, 0,     0};
    for (uint32_t code = 0; code < rates.size(); ++code) {
        EXPECT_EQ(dtsFrameAt(dtsCore(2, code, false, false))->sampleRate, rates[code]) << code;
    }
    const std::vector<uint32_t> channels = {1, 2, 2, 2, 2, 3, 3, 4, 4, 5, 0, 0};
    for (uint32_t code = 0; code < channels.size(); ++code) {
        EXPECT_EQ(dtsFrameAt(dtsCore(code, 13, false, false))->channels, channels[code]) << code;
    }
}

}  // namespace
}  // namespace ogmprobe
