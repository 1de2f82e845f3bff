// SPDX-License-Identifier: Apache-2.0
#include <optional>
#include <tuple>

#include "ElementaryStreams.h"
#include "LogTest.h"
#include "Views.h"
#include "codec/MpegAudioHeader.h"

namespace android::ogm::test::mpeg_audio_header_test {
namespace {

constexpr uint32_t kLayer3At128 = 0xFFFB9064;  // MPEG-1, 128 kbit/s, 44100 Hz: 417 bytes

/** The fields of a header word, with their widths. */
struct Fields {
    uint32_t sync = 0x7FF;
    uint32_t version = 3;
    uint32_t layer = 1;
    uint32_t protection = 1;
    uint32_t bitrate = 9;
    uint32_t rate = 0;
    uint32_t padding = 0;
    uint32_t privateBit = 0;
    uint32_t mode = 1;
    uint32_t rest = 0;

    uint32_t word() const {
        return sync << 21 | version << 19 | layer << 17 | protection << 16 | bitrate << 12 |
               rate << 10 | padding << 9 | privateBit << 8 | mode << 6 | rest;
    }
};

bool plausible(const Bytes& bytes) {
    return IsPlausibleMPEGAudioSync(viewOf(bytes));
}

TEST(MpegAudioSyncTest, FewerThanThreeBytesAreNotPlausible) {
    const Bytes header = bigEndian(kLayer3At128);
    EXPECT_FALSE(plausible({}));
    EXPECT_FALSE(plausible(head(header, 1)));
    EXPECT_FALSE(plausible(head(header, 2)));
    EXPECT_TRUE(plausible(head(header, 3)));
}

TEST(MpegAudioSyncTest, TheFirstByteMustBeAllOnes) {
    for (uint32_t first = 0; first < 0x100; ++first) {
        EXPECT_EQ(plausible({static_cast<uint8_t>(first), 0xFB, 0x90}), first == 0xFF) << first;
    }
}

TEST(MpegAudioSyncTest, SyncVersionLayerBitrateAndSamplingRateDecideForEveryPairOfBytes) {
    for (uint32_t second = 0; second < 0x100; ++second) {
        for (uint32_t third = 0; third < 0x100; ++third) {
            const bool possible = second / 32 == 7 && second / 8 % 4 != 1 && second / 2 % 4 != 0 &&
                                  third / 16 != 15 && third / 4 % 4 != 3;
            ASSERT_EQ(plausible({0xFF, static_cast<uint8_t>(second), static_cast<uint8_t>(third)}),
                      possible)
                    << second << ' ' << third;
        }
    }
}

TEST(MpegAudioSyncTest, TheFreeFormatIsPlausibleAlthoughItDoesNotDecode) {
    Fields fields;
    fields.bitrate = 0;
    EXPECT_TRUE(plausible(bigEndian(fields.word())));
    uint64_t size = 1;
    EXPECT_FALSE(GetMPEGAudioFrameSize(fields.word(), &size));
}

/** Everything that a header word decodes to. */
struct Decoded {
    bool accepted;
    uint64_t frameSize;
    int32_t sampleRate;
    int32_t channels;
    int32_t bitrate;
    int32_t samples;

    bool operator==(const Decoded& o) const {
        return std::tie(accepted, frameSize, sampleRate, channels, bitrate, samples) ==
               std::tie(o.accepted, o.frameSize, o.sampleRate, o.channels, o.bitrate, o.samples);
    }
};

std::ostream& operator<<(std::ostream& stream, const Decoded& d) {
    return stream << d.accepted << ", " << d.frameSize << " bytes, " << d.sampleRate << " Hz, "
                  << d.channels << " channels, " << d.bitrate << " kbit/s, " << d.samples
                  << " samples";
}

Decoded decode(uint32_t word) {
    Decoded d{false, 11, 12, 13, 14, 15};
    d.accepted = GetMPEGAudioFrameSize(word, &d.frameSize, &d.sampleRate, &d.channels, &d.bitrate,
                                       &d.samples);
    return d;
}

constexpr Decoded kRefused{false, 0, 0, 0, 0, 1152};

// In kbit/s, by bit-rate index 1 to 14: the five lists of ISO/IEC 11172-3 and 13818-3.
constexpr int kLayer1Of1[] = {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448};
constexpr int kLayer1Of2[] = {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256};
constexpr int kLayer2Of1[] = {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
constexpr int kLayer3Of1[] = {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr int kLayer23Of2[] = {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

// In Hz, by version bits and sampling-rate index; version 1 is reserved.
constexpr int kRates[4][3] = {
        {11025, 12000, 8000}, {0, 0, 0}, {22050, 24000, 16000}, {44100, 48000, 32000}};

const int* bitratesFor(const Fields& fields) {
    if (fields.layer == 3) {
        return fields.version == 3 ? kLayer1Of1 : kLayer1Of2;
    }
    if (fields.version != 3) {
        return kLayer23Of2;
    }
    return fields.layer == 2 ? kLayer2Of1 : kLayer3Of1;
}

Decoded expectedOf(const Fields& fields) {
    if (fields.sync != 0x7FF || fields.version == 1 || fields.layer == 0 || fields.bitrate == 0 ||
        fields.bitrate == 15 || fields.rate == 3) {
        return kRefused;
    }
    const int bitrate = bitratesFor(fields)[fields.bitrate - 1];
    const int rate = kRates[fields.version][fields.rate];
    const int padding = static_cast<int>(fields.padding);
    const int channels = fields.mode == 3 ? 1 : 2;
    if (fields.layer == 3) {
        const int size = (12000 * bitrate / rate + padding) * 4;
        return {true, static_cast<uint64_t>(size), rate, channels, bitrate, 384};
    }
    // A frame of 576 samples has half the bytes of one of 1152.
    const int samples = fields.layer == 1 && fields.version != 3 ? 576 : 1152;
    const int size = samples * 125 * bitrate / rate + padding;
    return {true, static_cast<uint64_t>(size), rate, channels, bitrate, samples};
}

TEST(MpegAudioFrameSizeTest, EveryVersionLayerBitrateAndRateHasTheSizeOfItsTables) {
    size_t accepted = 0;
    for (uint32_t i = 0; i < 1U << 15; ++i) {
        Fields fields;
        fields.version = i & 3;
        fields.layer = i >> 2 & 3;
        fields.bitrate = i >> 4 & 15;
        fields.rate = i >> 8 & 3;
        fields.padding = i >> 10 & 1;
        fields.mode = i >> 11 & 3;
        fields.protection = i >> 13 & 1;
        fields.privateBit = i >> 14 & 1;
        ASSERT_EQ(decode(fields.word()), expectedOf(fields)) << std::hex << fields.word();
        accepted += expectedOf(fields).accepted ? 1 : 0;
    }
    // 3 versions, 3 layers, 14 bit rates, 3 rates, and 5 bits that do not matter.
    EXPECT_EQ(accepted, 3U * 3U * 14U * 3U * 32U);
}

TEST(MpegAudioFrameSizeTest, KnownHeadersHaveTheirKnownSizes) {
    EXPECT_EQ(decode(0xFFFB9064), (Decoded{true, 417, 44100, 2, 128, 1152}));
    EXPECT_EQ(decode(0xFFFB9264), (Decoded{true, 418, 44100, 2, 128, 1152}));
    EXPECT_EQ(decode(0xFFFB94C4), (Decoded{true, 384, 48000, 1, 128, 1152}));
    EXPECT_EQ(decode(0xFFFFE000), (Decoded{true, 484, 44100, 2, 448, 384}));
    EXPECT_EQ(decode(0xFFFF1400), (Decoded{true, 32, 48000, 2, 32, 384}));
    EXPECT_EQ(decode(0xFFFF1600), (Decoded{true, 36, 48000, 2, 32, 384}));
    EXPECT_EQ(decode(0xFFFDE400), (Decoded{true, 1152, 48000, 2, 384, 1152}));
    EXPECT_EQ(decode(0xFFF3E800), (Decoded{true, 720, 16000, 2, 160, 576}));
    EXPECT_EQ(decode(0xFFF5E800), (Decoded{true, 1440, 16000, 2, 160, 1152}));
    EXPECT_EQ(decode(0xFFE31400), (Decoded{true, 48, 12000, 2, 8, 576}));
    EXPECT_EQ(decode(0xFFE71800), (Decoded{true, 192, 8000, 2, 32, 384}));
}

TEST(MpegAudioFrameSizeTest, EverySyncBitMustBeSet) {
    for (uint32_t bit = 0; bit < 11; ++bit) {
        EXPECT_EQ(decode(kLayer3At128 & ~(1U << (21 + bit))), kRefused) << bit;
    }
}

TEST(MpegAudioFrameSizeTest, TheLastSixBitsChangeNothing) {
    for (uint32_t rest = 0; rest < 64; ++rest) {
        Fields fields;
        fields.rest = rest;
        EXPECT_EQ(decode(fields.word()), (Decoded{true, 417, 44100, 2, 128, 1152})) << rest;
    }
}

TEST(MpegAudioFrameSizeTest, AllOutputsButTheSizeMayBeAbsent) {
    uint64_t size = 0;
    EXPECT_TRUE(GetMPEGAudioFrameSize(kLayer3At128, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(size, 417U);
    EXPECT_FALSE(GetMPEGAudioFrameSize(0, &size, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(size, 0U);
}

int32_t scan(const Bytes& bytes, uint32_t reference = kLayer3At128) {
    return FindMatchingMPEGAudioHeader(viewOf(bytes), static_cast<int32_t>(bytes.size()),
                                       reference);
}

TEST(MpegAudioHeaderScanTest, FindsAHeaderAtTheStart) {
    EXPECT_EQ(scan(bigEndian(kLayer3At128)), 0);
}

TEST(MpegAudioHeaderScanTest, FindsTheFirstOfSeveral) {
    const Bytes header = bigEndian(kLayer3At128);
    EXPECT_EQ(scan(joined({pattern(9, 1), header, pattern(5, 2), header})), 9);
}

TEST(MpegAudioHeaderScanTest, NeedsFourBytesAlthoughItComparesThree) {
    const Bytes header = bigEndian(kLayer3At128);
    EXPECT_EQ(scan(head(header, 3)), -1);
    EXPECT_EQ(scan(joined({pattern(9, 1), head(header, 3)})), -1);
    EXPECT_EQ(scan(joined({pattern(9, 1), head(header, 3), {0x00}})), 9);
}

TEST(MpegAudioHeaderScanTest, ALengthBelowOneFindsNothing) {
    const Bytes header = bigEndian(kLayer3At128);
    EXPECT_EQ(FindMatchingMPEGAudioHeader(viewOf(header), 0, kLayer3At128), -1);
    EXPECT_EQ(FindMatchingMPEGAudioHeader(viewOf(header), -1, kLayer3At128), -1);
    EXPECT_EQ(FindMatchingMPEGAudioHeader(viewOf(header), INT32_MIN, kLayer3At128), -1);
}

TEST(MpegAudioHeaderScanTest, TheLengthLimitsTheSearchNotTheBytes) {
    const Bytes bytes = joined({pattern(9, 1), bigEndian(kLayer3At128), pattern(9, 2)});
    EXPECT_EQ(FindMatchingMPEGAudioHeader(viewOf(bytes), 12, kLayer3At128), -1);
    EXPECT_EQ(FindMatchingMPEGAudioHeader(viewOf(bytes), 13, kLayer3At128), 9);
}

TEST(MpegAudioHeaderScanTest, ExactlyTheBitsOfSyncVersionLayerAndRateMustAgree) {
    constexpr uint32_t kMask = 0xFFFE0C00;
    for (uint32_t bit = 0; bit < 32; ++bit) {
        const bool counts = (kMask >> bit & 1) != 0;
        EXPECT_EQ(scan(bigEndian(kLayer3At128 ^ 1U << bit)), counts ? -1 : 0) << bit;
    }
}

TEST(MpegAudioHeaderScanTest, FindsAHeaderAfterAByteThatLooksLikeOne) {
    EXPECT_EQ(scan(joined({{0xFF, 0xFF, 0xFB}, bigEndian(kLayer3At128)})), 3);
    EXPECT_EQ(scan(joined({{0xFF}, bigEndian(kLayer3At128)})), 1);
}

}  // namespace
}  // namespace android::ogm::test::mpeg_audio_header_test
