// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <optional>

#include "PluginTest.h"

namespace android::ogm::test {
namespace {

using ::testing::ElementsAreArray;

class StreamHeaderTest : public PluginTest {
  protected:
    /** Opens a file whose one header page holds `packet`. */
    OpenedFile openHeader(const Bytes& packet) {
        OgmFile file;
        file.addHeader(9, packet);
        return open(file);
    }

    /** Checks what was logged from the first line about the header to the search that follows. */
    void expectHeaderLines(const std::vector<LogLine>& expected) {
        std::vector<LogLine> lines = mEvents.lines();
        const auto isVerify = [](const LogLine& line) { return line.text.find("Verify") == 0; };
        const auto first = std::find_if(lines.begin(), lines.end(), isVerify);
        const auto last = std::find(first, lines.end(), errorLine("FindPage: readSize = 0"));
        EXPECT_THAT(std::vector<LogLine>(first, last), ElementsAreArray(expected));
    }

    std::optional<int32_t> frameRate(uint64_t timeUnit, uint64_t samplesPerUnit) {
        VideoHeader header;
        header.timeUnit = timeUnit;
        header.samplesPerUnit = samplesPerUnit;
        return openHeader(header.bytes())->trackFormat(0).int32(AMEDIAFORMAT_KEY_FRAME_RATE);
    }

    std::optional<int32_t> sampleRate(uint64_t timeUnit, uint64_t samplesPerUnit) {
        AudioHeader header;
        header.timeUnit = timeUnit;
        header.samplesPerUnit = samplesPerUnit;
        return openHeader(header.bytes())->trackFormat(0).int32(AMEDIAFORMAT_KEY_SAMPLE_RATE);
    }
};

TEST_F(StreamHeaderTest, AVideoHeaderIsLoggedFieldByField) {
    VideoHeader header;
    header.headerSize = 56;
    header.defaultLength = 77;
    header.bufferSize = 65536;
    header.padding = 0xFFFF;
    header.width = 720;
    header.height = 576;
    openHeader(header.bytes());
    expectHeaderLines({infoLine("Verify Header 01 76 69 64 65 6F\n"),
                       infoLine("Begin parse Video stream info"), infoLine("Video - H264 Codec \n"),
                       infoLine("Width = 720, Height = 576"), infoLine("FrameRate = 25"),
                       infoLine("size = 56"), infoLine("default_len = 77"),
                       infoLine("buffer_size = 65536"), infoLine("padding = 65535"),
                       infoLine("SerialNo = 9")});
}

TEST_F(StreamHeaderTest, AnAudioHeaderIsLoggedFieldByField) {
    AudioHeader header;
    header.headerSize = 56;
    header.samplesPerUnit = 44100;
    header.bitsPerSample = 0xFFFE;
    header.defaultLength = 77;
    header.bufferSize = 65536;
    header.padding = 3;
    header.channels = 0x8002;
    header.blockAlign = 0xFFF0;
    header.averageBytesPerSecond = 0x12345678;
    openHeader(header.bytes());
    expectHeaderLines({infoLine("Verify Header 01 61 75 64 69 6F\n"),
                       infoLine("Begin parse Audio stream info"), infoLine("Audio - PCM Codec "),
                       infoLine("channel count = 32770"), infoLine("SampleRate = 44100"),
                       infoLine("timeunit = 10000000"), infoLine("size = 56"),
                       infoLine("bit_per_sample = 65534"), infoLine("default_len = 77"),
                       infoLine("buffer_size = 65536"), infoLine("padding = 3"),
                       infoLine("blockalign = 65520"),
                       infoLine("avg_bytes_per_sec = 22136"),  // the low 16 bits
                       infoLine("SerialNo = 9")});
}

TEST_F(StreamHeaderTest, AVideoFormatHoldsTypeSizeRateAndDuration) {
    const Format format = openHeader(VideoHeader().bytes())->trackFormat(0);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "video/avc");
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), 320);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_HEIGHT), 240);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_FRAME_RATE), 25);
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_DURATION), 0);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), std::nullopt);
}

TEST_F(StreamHeaderTest, AnAudioFormatHoldsTypeRateChannelsAndDuration) {
    const Format format = openHeader(AudioHeader().bytes())->trackFormat(0);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "audio/raw");
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), 8000);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT), 1);
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_DURATION), 0);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), std::nullopt);
}

TEST_F(StreamHeaderTest, ChannelsAreUnsigned) {
    AudioHeader header;
    header.channels = 0xFFFF;
    EXPECT_EQ(openHeader(header.bytes())->trackFormat(0).int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT),
              65535);
}

TEST_F(StreamHeaderTest, WidthAndHeightAreSigned) {
    VideoHeader header;
    header.width = 0xFFFFFFFF;
    header.height = 0x80000000;
    const Format format = openHeader(header.bytes())->trackFormat(0);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), -1);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_HEIGHT), -2147483647 - 1);
    EXPECT_TRUE(mEvents.holds(infoLine("Width = -1, Height = -2147483648")));
}

TEST_F(StreamHeaderTest, TheFrameRateIsTruncated) {
    EXPECT_EQ(frameRate(400000, 1), 25);
    EXPECT_EQ(frameRate(333667, 1), 29);
}

TEST_F(StreamHeaderTest, AVideoTimeUnitOfZeroGivesAFrameRateOfZeroAndATrack) {
    EXPECT_EQ(frameRate(0, 1), 0);
    EXPECT_TRUE(mEvents.holds(infoLine("FrameRate = 0")));
}

TEST_F(StreamHeaderTest, OnlyTheLow32BitsOfTheVideoTimeUnitCount) {
    EXPECT_EQ(frameRate(0x100000000, 1), 0);
    EXPECT_EQ(frameRate(0x100000000 + 400000, 1), 25);
}

TEST_F(StreamHeaderTest, TheFrameRateProductWrapsAt32Bits) {
    // 1000 x 10,000,000 is 1,410,065,408 in 32 bits.
    EXPECT_EQ(frameRate(100000, 1000), 14100);
    // 300 x 10,000,000 is -1,294,967,296 as a signed number; the quotient is cut towards zero.
    EXPECT_EQ(frameRate(1000000, 300), -1294);
    EXPECT_EQ(frameRate(400000, 0x100000001), 25);
}

TEST_F(StreamHeaderTest, ANegativeVideoTimeUnitGivesANegativeFrameRate) {
    EXPECT_EQ(frameRate(0xFFFFFFFF - 400000 + 1, 1), -25);
}

TEST_F(StreamHeaderTest, TheMostNegativeProductDividedByMinusOneIsItself) {
    // 10,000,000 is 2^7 x 78125: with 2^24 samples only bit 31 of the product is set.
    EXPECT_EQ(frameRate(0xFFFFFFFF, 1U << 24), -2147483647 - 1);
}

TEST_F(StreamHeaderTest, TheSampleRateIsSamplesPerSecond) {
    EXPECT_EQ(sampleRate(10000000, 44100), 44100);
    EXPECT_EQ(sampleRate(20000000, 44101), 22050);
    EXPECT_EQ(sampleRate(0, 44100), 0);
}

TEST_F(StreamHeaderTest, TheSampleRateIsComputedIn64BitsAndCutTo32) {
    EXPECT_EQ(sampleRate(1, 215), -2144967296);  // 2,150,000,000
    EXPECT_EQ(sampleRate(10000000, 0xFFFFFFFF), -1);
    // The product wraps at 64 bits: 2^57 x 10,000,000 is 0 modulo 2^64.
    EXPECT_EQ(sampleRate(10000000, uint64_t{1} << 57), 0);
}

TEST_F(StreamHeaderTest, ANegativeSampleRateIsSignExtended) {
    AudioHeader header;
    header.samplesPerUnit = 0xFFFFFFFF;
    OpenedFile opened = openHeader(header.bytes());
    const auto track = opened->track(0);
    EXPECT_TRUE(mEvents.holds(infoLine("getTrack: isAudio type[5],sampleRate =-1")));
}

TEST_F(StreamHeaderTest, AVorbisHeaderIsRecognisedAndMakesNoTrack) {
    OpenedFile opened = openHeader(vorbisIdentificationHeader());
    expectHeaderLines(
            {infoLine("Verify Header 01 76 6F 72 62 69\n"), infoLine("Verify Vorbis Header\n")});
    EXPECT_EQ(opened->countTracks(), 0U);
}

TEST_F(StreamHeaderTest, TheTypeOfAVorbisPacketIsNotLookedAt) {
    Bytes packet = vorbisIdentificationHeader();
    packet[0] = 0x81;
    openHeader(packet);
    expectHeaderLines(
            {infoLine("Verify Header 81 76 6F 72 62 69\n"), infoLine("Verify Vorbis Header\n")});
}

TEST_F(StreamHeaderTest, ATextHeaderIsUnknown) {
    OpenedFile opened = openHeader(textHeader());
    expectHeaderLines({infoLine("Verify Header 01 74 65 78 74 00\n"),
                       infoLine("************* unknow header 01 74 65 78 74 00 00 00 "
                                "**************\n")});
    EXPECT_EQ(opened->countTracks(), 0U);
}

TEST_F(StreamHeaderTest, ATheoraHeaderMakesNoTrack) {
    OpenedFile opened = openHeader(theoraIdentificationHeader());
    expectHeaderLines({infoLine("Verify Header 80 74 68 65 6F 72\n"),
                       infoLine("************* unknow header 80 74 68 65 6f 72 61 00 "
                                "**************\n")});
    EXPECT_EQ(opened->countTracks(), 0U);
}

TEST_F(StreamHeaderTest, AVideoHeaderOfAnotherPacketTypeIsUnknown) {
    VideoHeader header;
    header.packetType = 3;
    EXPECT_EQ(openHeader(header.bytes())->countTracks(), 0U);
    EXPECT_TRUE(mEvents.holds(
            infoLine("************* unknow header 03 76 69 64 65 6f 00 00 **************\n")));
}

TEST_F(StreamHeaderTest, OnlyFiveCharactersOfTheStreamTypeCount) {
    VideoHeader header;
    header.streamType = "videoXYZ";
    EXPECT_EQ(openHeader(header.bytes())->countTracks(), 1U);
}

TEST_F(StreamHeaderTest, AnUnknownVideoCodecMakesNoTrack) {
    VideoHeader header;
    header.subtype = "XVID";
    OpenedFile opened = openHeader(header.bytes());
    expectHeaderLines({infoLine("Verify Header 01 76 69 64 65 6F\n"),
                       infoLine("Begin parse Video stream info"),
                       errorLine("unknow video codec: 58564944"),
                       errorLine("invalid video codec")});
    EXPECT_EQ(opened->countTracks(), 0U);
}

TEST_F(StreamHeaderTest, AnUnknownAudioCodecMakesNoTrack) {
    AudioHeader header;
    header.subtype = "674F";
    OpenedFile opened = openHeader(header.bytes());
    expectHeaderLines({infoLine("Verify Header 01 61 75 64 69 6F\n"),
                       infoLine("Begin parse Audio stream info"),
                       errorLine("unknown audio codec:36373446"),
                       errorLine("invalid audio codec")});
    EXPECT_EQ(opened->countTracks(), 0U);
}

TEST_F(StreamHeaderTest, ATruncatedVideoHeaderHasZerosInPlaceOfWhatIsMissing) {
    // Cut within the width: 0x0240 loses its high byte.
    VideoHeader header;
    header.width = 0x0240;
    const Format format = openHeader(head(header.bytes(), 46))->trackFormat(0);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), 0x40);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_HEIGHT), 0);
}

TEST_F(StreamHeaderTest, ATruncatedAudioHeaderHasZerosInPlaceOfWhatIsMissing) {
    const Format format = openHeader(head(AudioHeader().bytes(), 17))->trackFormat(0);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "audio/raw");
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), 0);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT), 0);
}

TEST_F(StreamHeaderTest, ATruncatedSubtypeIsAnUnknownCodec) {
    openHeader(head(VideoHeader().bytes(), 11));
    EXPECT_TRUE(mEvents.holds(errorLine("unknow video codec: 48320000")));
}

TEST_F(StreamHeaderTest, AnEmptyHeaderPacketIsUnknown) {
    openHeader({});
    expectHeaderLines({infoLine("Verify Header 00 00 00 00 00 00\n"),
                       infoLine("************* unknow header 00 00 00 00 00 00 00 00 "
                                "**************\n")});
}

TEST_F(StreamHeaderTest, TheBitsPerSampleOfTheLastAcceptedHeaderCountForAllTracks) {
    // A PCM track of 16 bits becomes one of 8 bits when a later header says so, video or audio.
    AudioHeader pcm;
    pcm.bitsPerSample = 16;
    VideoHeader video;
    video.bitsPerSample = 8;
    VideoHeader refused;
    refused.subtype = "XVID";
    refused.bitsPerSample = 24;
    OgmFile file;
    file.addHeader(1, pcm);
    file.addHeader(2, video);
    file.addHeader(3, refused);
    for (uint64_t i = 1; i <= 3; ++i) {
        file.addData(1, i * 8, audioPacket({0x80, 0x00}));
    }
    OpenedFile opened = open(file);
    const auto results = opened->startedTrack(0)->drain();
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].bytes, (Bytes{0x00, 0x00, 0x00, 0x80}));
}

}  // namespace
}  // namespace android::ogm::test
