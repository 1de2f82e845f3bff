// SPDX-License-Identifier: Apache-2.0
#include "AccessUnit.h"
#include "ElementaryStreams.h"
#include "PageLayout.h"
#include "PluginTest.h"

namespace android::ogm::test::round_trip_test {
namespace {

constexpr uint32_t kSerialNo = 5;
constexpr size_t kFrames = 40;
constexpr PageLayout kLayouts[] = {PageLayout::kOnePacketAPage, PageLayout::kManyPacketsAPage,
                                   PageLayout::kPacketsOverPages};

using Frames = std::vector<Bytes>;

Frames without(const Frames& frames, size_t first, size_t last) {
    return {frames.begin() + static_cast<ptrdiff_t>(first),
            frames.end() - static_cast<ptrdiff_t>(last)};
}

/** Packets of `count` frames each. */
std::vector<Bytes> packetsOf(const Frames& frames, size_t count) {
    std::vector<Bytes> packets;
    for (size_t i = 0; i < frames.size(); i += count) {
        Bytes payload;
        for (size_t k = i; k < std::min(i + count, frames.size()); ++k) {
            append(payload, frames[k]);
        }
        packets.push_back(audioPacket(payload));
    }
    return packets;
}

/** Packets that begin and end anywhere in a frame. */
std::vector<Bytes> packetsAcross(const Frames& frames, size_t size) {
    Bytes stream;
    for (const Bytes& frame : frames) {
        append(stream, frame);
    }
    std::vector<Bytes> packets;
    for (size_t start = 0; start < stream.size(); start += size) {
        packets.push_back(audioPacket(head(tail(stream, start), size)));
    }
    return packets;
}

/** Files with one audio stream: the packets written are compared with the buffers read. */
class RoundTripTest : public PluginTest {
  protected:
    struct Outcome {
        std::vector<PacketPiece> pieces;
        std::vector<ReadResult> results;

        Frames frames() const {
            Frames all;
            for (const ReadResult& result : results) {
                all.push_back(result.bytes);
            }
            return all;
        }
        std::vector<int64_t> times() const {
            std::vector<int64_t> all;
            for (const ReadResult& result : results) {
                all.push_back(result.timeUs.value_or(-1));
            }
            return all;
        }
    };

    static OgmFile fileOf(const char* tag, uint32_t sampleRate, uint16_t bitsPerSample = 16) {
        AudioHeader header;
        header.subtype = tag;
        header.samplesPerUnit = sampleRate;
        header.bitsPerSample = bitsPerSample;
        header.channels = 2;
        OgmFile file;
        file.addHeader(kSerialNo, header);
        return file;
    }

    Outcome play(OgmFile file, const std::vector<Bytes>& packets, PageLayout layout) {
        Outcome outcome;
        outcome.pieces = addPackets(file, kSerialNo, packets, layout);
        OpenedFile opened = openQuietly(file);
        outcome.results = opened->startedTrack(0)->drain();
        return outcome;
    }
};

// The last unit of a stream is never returned, because it might still be open.
constexpr size_t kKeptBack = 1;

/**
 * Whether the first frame is lost. The header is confirmed by the piece that brings four bytes of
 * the second frame; if that frame is complete by then, the search continues from it.
 */
bool losesTheFirst(const Frames& frames, const std::vector<PacketPiece>& pieces) {
    size_t arrived = 0;
    for (const PacketPiece& piece : pieces) {
        arrived += piece.bytes.size();
        arrived -= piece.beginsPacket ? audioHeaderLength(kPlainPacket) : 0;
        if (arrived >= frames[0].size() + 4) {
            return arrived >= frames[0].size() + frames[1].size();
        }
    }
    return false;
}

struct MpegAudio {
    MpegVersion version;
    uint32_t layer;
};

std::string nameOf(const MpegAudio& stream) {
    constexpr const char* kVersions[] = {"Mpeg25", "Reserved", "Mpeg2", "Mpeg1"};
    return std::string(kVersions[static_cast<size_t>(stream.version)]) + "Layer" +
           std::to_string(stream.layer);
}

class MpegAudioRoundTripTest : public RoundTripTest,
                               public ::testing::WithParamInterface<MpegAudio> {
  protected:
    static Frames frames(uint32_t samplingRateIndex) {
        Frames all;
        for (uint32_t i = 0; i < kFrames; ++i) {
            MpegAudioFrame frame;
            frame.version = GetParam().version;
            frame.layer = GetParam().layer;
            frame.samplingRateIndex = samplingRateIndex;
            frame.bitrateIndex = 5 + i % 10;
            frame.padding = i % 3 == 0;
            frame.seed = i;
            all.push_back(frame.bytes());
        }
        return all;
    }
};

TEST_P(MpegAudioRoundTripTest, AllFramesComeOutExceptTheLastAndPerhapsTheFirst) {
    for (uint32_t rate = 0; rate < 3; ++rate) {
        const Frames in = frames(rate);
        for (const PageLayout layout : kLayouts) {
            for (const size_t framesPerPacket : {1, 3}) {
                const Outcome out =
                        play(fileOf("0055", 44100), packetsOf(in, framesPerPacket), layout);
                const size_t lost = losesTheFirst(in, out.pieces) ? 1 : 0;
                EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, lost, kKeptBack)))
                        << rate << ' ' << static_cast<int>(layout) << ' ' << framesPerPacket;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(
        Streams, MpegAudioRoundTripTest,
        ::testing::Values(MpegAudio{MpegVersion::kMpeg1, 1}, MpegAudio{MpegVersion::kMpeg1, 2},
                          MpegAudio{MpegVersion::kMpeg1, 3}, MpegAudio{MpegVersion::kMpeg2, 1},
                          MpegAudio{MpegVersion::kMpeg2, 2}, MpegAudio{MpegVersion::kMpeg2, 3},
                          MpegAudio{MpegVersion::kMpeg25, 1}, MpegAudio{MpegVersion::kMpeg25, 2},
                          MpegAudio{MpegVersion::kMpeg25, 3}),
        [](const auto& info) { return nameOf(info.param); });

TEST_F(RoundTripTest, OneMpegAudioFrameAPageLosesTheFirstFrame) {
    Frames in;
    for (uint32_t i = 0; i < kFrames; ++i) {
        MpegAudioFrame frame;
        frame.seed = i;
        in.push_back(frame.bytes());
    }
    const Outcome out = play(fileOf("0055", 44100), packetsOf(in, 1), PageLayout::kOnePacketAPage);
    EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, 1, kKeptBack)));
}

TEST_F(RoundTripTest, MpegAudioUnderTheTagOfLayersOneAndTwoIsReturnedPacketByPacket) {
    Frames in;
    for (uint32_t i = 0; i < kFrames; ++i) {
        MpegAudioFrame frame;
        frame.layer = 2;
        frame.seed = i;
        in.push_back(joined({frame.bytes(), frame.bytes()}));
    }
    for (const PageLayout layout : kLayouts) {
        const Outcome out = play(fileOf("0050", 44100), packetsOf(in, 1), layout);
        EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, 0, kKeptBack)));
    }
}

Frames ac3Frames(uint32_t fscod) {
    Frames all;
    for (uint32_t i = 0; i < kFrames; ++i) {
        Ac3Frame frame;
        frame.sampleRateCode = fscod;
        frame.frameSizeCode = 8 + i % 6 * 2;
        frame.seed = i;
        all.push_back(frame.bytes());
    }
    return all;
}

TEST_F(RoundTripTest, Ac3At48And32KilohertzComesOutFrameByFrameExceptTheLast) {
    for (const uint32_t fscod : {0U, 2U}) {
        const Frames in = ac3Frames(fscod);
        for (const PageLayout layout : kLayouts) {
            for (const auto& packets :
                 {packetsOf(in, 1), packetsOf(in, 3), packetsAcross(in, 500)}) {
                const Outcome out =
                        play(fileOf("2000", fscod == 0 ? 48000 : 32000), packets, layout);
                EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, 0, kKeptBack)))
                        << fscod << ' ' << static_cast<int>(layout);
            }
        }
    }
}

TEST_F(RoundTripTest, Ac3At44100HertzLosesEverySecondFrame) {
    Frames in;
    for (uint32_t i = 0; i < kFrames; ++i) {
        Ac3Frame frame;
        frame.sampleRateCode = 1;
        frame.seed = i;
        in.push_back(frame.bytes());
    }
    Frames expected;
    for (size_t i = 0; i + 1 < in.size(); i += 2) {
        expected.push_back(joined({in[i], head(in[i + 1], 2)}));
    }
    for (const PageLayout layout : kLayouts) {
        const Outcome out = play(fileOf("2000", 44100), packetsOf(in, 1), layout);
        EXPECT_EQ(framesOf(out.frames()), framesOf(without(expected, 0, kKeptBack)));
    }
}

TEST_F(RoundTripTest, EnhancedAc3ComesOutFrameByFrameExceptTheLast) {
    Frames in;
    for (uint32_t i = 0; i < kFrames; ++i) {
        EnhancedAc3Frame frame;
        frame.length = 64 + i * 98;
        frame.substreamId = i % 8;
        frame.bitStreamId = 11 + i % 6;
        frame.seed = i;
        in.push_back(frame.bytes());
    }
    for (const PageLayout layout : kLayouts) {
        for (const auto& packets : {packetsOf(in, 1), packetsOf(in, 3), packetsAcross(in, 700)}) {
            const Outcome out = play(fileOf("2000", 48000), packets, layout);
            EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, 0, kKeptBack)))
                    << static_cast<int>(layout);
        }
    }
}

Frames dtsFrames() {
    Frames all;
    for (uint32_t i = 0; i < kFrames; ++i) {
        const DtsForm form = i % 2 == 0 ? DtsForm::kCore16BitBigEndian : DtsForm::kHdSubstream;
        all.push_back(dtsFrame(form, 200 + i * 37, i));
    }
    return all;
}

TEST_F(RoundTripTest, DtsComesOutFrameByFrameExceptTheLastTwo) {
    // No sync word ends the last frame, and the frame before it is kept back.
    const Frames in = dtsFrames();
    for (const PageLayout layout : kLayouts) {
        for (const auto& packets : {packetsOf(in, 1), packetsOf(in, 3), packetsAcross(in, 700)}) {
            const Outcome out = play(fileOf("2001", 48000), packets, layout);
            EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, 0, kKeptBack + 1)))
                    << static_cast<int>(layout);
        }
    }
}

struct PlainCodec {
    const char* tag;
    uint16_t bitsPerSample;
};

class PlainRoundTripTest : public RoundTripTest,
                           public ::testing::WithParamInterface<PlainCodec> {};

TEST_P(PlainRoundTripTest, PacketsComeOutAsTheyWentInExceptTheLast) {
    Frames in;
    for (uint32_t i = 0; i < kFrames; ++i) {
        in.push_back(pattern(1 + i * 53, i));
    }
    for (const PageLayout layout : kLayouts) {
        const Outcome out = play(fileOf(GetParam().tag, 44100, GetParam().bitsPerSample),
                                 packetsOf(in, 1), layout);
        EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, 0, kKeptBack)));
    }
}

INSTANTIATE_TEST_SUITE_P(Streams, PlainRoundTripTest,
                         ::testing::Values(PlainCodec{"00FF", 16}, PlainCodec{"00ff", 16},
                                           PlainCodec{"0002", 4}, PlainCodec{"0160", 16},
                                           PlainCodec{"0001", 16}),
                         [](const auto& info) { return "Number" + std::to_string(info.index); });

TEST_F(RoundTripTest, PcmOf24BitsComesOutAsTheUpper16) {
    Frames in;
    Frames expected;
    for (uint32_t i = 0; i < kFrames; ++i) {
        in.push_back(pattern(3 * (1 + i * 17), i));
        Bytes samples;
        for (size_t k = 0; k < in.back().size(); k += 3) {
            append(samples, {in.back()[k + 1], in.back()[k + 2]});
        }
        expected.push_back(samples);
    }
    for (const PageLayout layout : kLayouts) {
        const Outcome out = play(fileOf("0001", 44100, 24), packetsOf(in, 1), layout);
        EXPECT_EQ(framesOf(out.frames()), framesOf(without(expected, 0, kKeptBack)));
    }
}

TEST_F(RoundTripTest, OnePacketAPageHasTheTimeOfTheGranuleOfThePageBefore) {
    const Outcome out =
            play(fileOf("2000", 48000), packetsOf(ac3Frames(0), 1), PageLayout::kOnePacketAPage);
    std::vector<int64_t> expected;
    for (size_t i = 0; i + kKeptBack < kFrames; ++i) {
        expected.push_back(static_cast<int64_t>(i * kGranulePerPage * 1000000 / 48000));
    }
    EXPECT_EQ(out.times(), expected);
}

TEST_F(RoundTripTest, AFrameThatEndsOnAnotherPageHasTheTimeOfThatPage) {
    // The unit gets the time of the piece that completes it, not that of its first bytes.
    const Frames in{ac3Frames(0)[0], ac3Frames(0)[1], ac3Frames(0)[2]};
    OgmFile file = fileOf("2000", 48000);
    const Bytes packet = audioPacket(joined({in[0], in[1], in[2]}));
    file.add(OggPage(kSerialNo).granule(1000).openPacket(head(packet, 255)));
    file.add(OggPage(kSerialNo).granule(2000).continued().packet(tail(packet, 255)));
    file.addData(kSerialNo, 3000, audioPacket({0x55}));
    OpenedFile opened = openQuietly(file);
    Outcome out;
    out.results = opened->startedTrack(0)->drain();
    EXPECT_EQ(framesOf(out.frames()), framesOf(Frames{in[0], in[1]}));
    EXPECT_EQ(out.times(), (std::vector<int64_t>{20833, 20833}));
}

TEST_F(RoundTripTest, TheFormatStaysThatOfTheExtractorAfterFramesHaveBeenRead) {
    Frames in;
    for (uint32_t i = 0; i < kFrames; ++i) {
        MpegAudioFrame frame;
        frame.samplingRateIndex = 1;
        frame.mono = true;
        in.push_back(frame.bytes());
    }
    OgmFile file = fileOf("0055", 22050);
    addPackets(file, kSerialNo, packetsOf(in, 1), PageLayout::kOnePacketAPage);
    OpenedFile opened = openQuietly(file);
    auto track = opened->startedTrack(0);
    EXPECT_FALSE(track->readAll().empty());
    const Format format;
    EXPECT_EQ(track->getFormat(format), AMEDIA_OK);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), 22050);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT), 2);
}

TEST_F(RoundTripTest, APageAfterOneOfGranuleMinusOneIsCutOutOfTheStream) {
    // The page on which a long packet continues has no granule position. The page on which it ends
    // then has a lower one, so its pieces are dropped.
    const Frames in = dtsFrames();
    const Bytes longPacket = audioPacket(in[9]);
    ASSERT_EQ(longPacket.size(), 536U);
    OgmFile file = fileOf("2001", 48000);
    file.addData(kSerialNo, 1000, audioPacket(in[8]));
    file.add(OggPage(kSerialNo).granule(kNoGranule).openPacket(head(longPacket, 255)));
    file.add(OggPage(kSerialNo).granule(2000).continued().packet(tail(longPacket, 255)));
    file.addData(kSerialNo, 3000, audioPacket(in[10]));
    file.addData(kSerialNo, 4000, audioPacket(in[11]));
    file.addData(kSerialNo, 5000, audioPacket(in[12]));
    file.addData(kSerialNo, 6000, audioPacket({0x55}));
    OpenedFile opened = openQuietly(file);
    Outcome out;
    out.results = opened->startedTrack(0)->drain();
    EXPECT_EQ(framesOf(out.frames()), framesOf(Frames{in[8], head(in[9], 252), in[10]}));
}

TEST_F(RoundTripTest, TheLastPageOfAStreamIsNotDelivered) {
    const Frames in = ac3Frames(0);
    OgmFile file = fileOf("2000", 48000);
    for (size_t i = 0; i < in.size(); ++i) {
        file.addData(kSerialNo, (i + 1) * 1536, audioPacket(in[i]));
    }
    OpenedFile opened = openQuietly(file);
    Outcome out;
    out.results = opened->startedTrack(0)->drain();
    EXPECT_EQ(framesOf(out.frames()), framesOf(without(in, 0, kKeptBack + 1)));
}

}  // namespace
}  // namespace android::ogm::test::round_trip_test
