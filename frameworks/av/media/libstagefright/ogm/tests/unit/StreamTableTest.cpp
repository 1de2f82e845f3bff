// SPDX-License-Identifier: Apache-2.0
#include "stream/StreamTable.h"

#include "Format.h"
#include "LogTest.h"
#include "OgmStreamHeaders.h"

namespace android::ogm::test::stream_table_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kSerialNo = 9;
constexpr uint32_t kExtensiveMetaData = 1;

class StreamTableTest : public LogTest {
  protected:
    media_status_t add(const Bytes& packet, uint32_t serialNo = kSerialNo) {
        // A MediaBuffer cannot be deleted; release() frees it.
        auto* const buffer = new MediaBuffer(packet.size());
        std::copy(packet.begin(), packet.end(), static_cast<uint8_t*>(buffer->data()));
        const media_status_t status = mStreams.parseOgmHeader(*buffer, serialNo);
        buffer->release();
        return status;
    }

    /** A copy of the format of an entry, which must exist. */
    Format formatAt(size_t index, uint32_t flags = 0) {
        Format format;
        EXPECT_EQ(mStreams.getTrackMetaData(format.get(), index, flags), AMEDIA_OK);
        return format;
    }

    StreamTable mStreams;
};

TEST_F(StreamTableTest, AVideoHeaderIsLoggedFieldByField) {
    VideoHeader header;
    header.headerSize = 56;
    header.defaultLength = 77;
    header.bufferSize = 65536;
    header.padding = 0xFFFF;
    header.width = 0xFFFFFFFF;
    header.height = 0x80000000;
    EXPECT_EQ(add(header.bytes()), AMEDIA_OK);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("Verify Header 01 76 69 64 65 6F\n"),
                            infoLine("Begin parse Video stream info"),
                            infoLine("Video - H264 Codec \n"),
                            infoLine("Width = -1, Height = -2147483648"),
                            infoLine("FrameRate = 25"), infoLine("size = 56"),
                            infoLine("default_len = 77"), infoLine("buffer_size = 65536"),
                            infoLine("padding = 65535"), infoLine("SerialNo = 9")));
}

TEST_F(StreamTableTest, AnAudioHeaderIsLoggedFieldByField) {
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
    EXPECT_EQ(add(header.bytes(), 0xFFFFFFFE), AMEDIA_OK);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("Verify Header 01 61 75 64 69 6F\n"),
                            infoLine("Begin parse Audio stream info"),
                            infoLine("Audio - PCM Codec "), infoLine("channel count = 32770"),
                            infoLine("SampleRate = 44100"), infoLine("timeunit = 10000000"),
                            infoLine("size = 56"), infoLine("bit_per_sample = 65534"),
                            infoLine("default_len = 77"), infoLine("buffer_size = 65536"),
                            infoLine("padding = 3"), infoLine("blockalign = 65520"),
                            infoLine("avg_bytes_per_sec = 22136"),  // the low 16 bits
                            infoLine("SerialNo = -2")));
}

TEST_F(StreamTableTest, AVideoStreamHasTypeTimingAndFormat) {
    add(VideoHeader().bytes());
    ASSERT_EQ(mStreams.size(), 1U);
    EXPECT_EQ(mStreams[0].mSerialNo, kSerialNo);
    EXPECT_EQ(mStreams[0].mType, uint32_t{OGV_VIDEO_H264});
    EXPECT_EQ(mStreams[0].mTimeUnit, 400000);
    EXPECT_EQ(mStreams[0].mSampleRate, 25);
    const Format format = formatAt(0);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "video/avc");
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), 320);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_HEIGHT), 240);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_FRAME_RATE), 25);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), std::nullopt);
}

TEST_F(StreamTableTest, AnAudioStreamHasTypeTimingAndFormat) {
    AudioHeader header;
    header.channels = 0xFFFF;
    add(header.bytes());
    ASSERT_EQ(mStreams.size(), 1U);
    EXPECT_EQ(mStreams[0].mType, uint32_t{OGA_AUDIO_PCM});
    EXPECT_EQ(mStreams[0].mTimeUnit, 10000000);
    EXPECT_EQ(mStreams[0].mSampleRate, 8000);
    const Format format = formatAt(0);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "audio/raw");
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), 8000);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT), 65535);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), std::nullopt);
}

TEST_F(StreamTableTest, ANegativeSampleRateIsSignExtended) {
    AudioHeader header;
    header.samplesPerUnit = 0xFFFFFFFF;
    add(header.bytes());
    EXPECT_EQ(mStreams[0].mSampleRate, -1);
}

TEST_F(StreamTableTest, AVorbisHeaderIsRecognisedAndMakesNoTrack) {
    Bytes packet = vorbisIdentificationHeader();
    EXPECT_EQ(add(packet), AMEDIA_OK);
    packet[0] = 0x81;  // the type of the packet is ignored
    EXPECT_EQ(add(packet), AMEDIA_OK);
    EXPECT_EQ(mStreams.size(), 0U);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Verify Header 01 76 6F 72 62 69\n"),
                                             infoLine("Verify Vorbis Header\n"),
                                             infoLine("Verify Header 81 76 6F 72 62 69\n"),
                                             infoLine("Verify Vorbis Header\n")));
}

struct Unknown {
    const char* name;
    Bytes packet;
    const char* verified;
    const char* named;
};

std::ostream& operator<<(std::ostream& stream, const Unknown& unknown) {
    return stream << unknown.name;
}

Bytes videoOfPacketType(uint8_t packetType) {
    VideoHeader header;
    header.packetType = packetType;
    return header.bytes();
}

class UnknownHeaderTest : public StreamTableTest, public ::testing::WithParamInterface<Unknown> {};

TEST_P(UnknownHeaderTest, MakesNoTrackAndIsLoggedWithItsFirstBytes) {
    EXPECT_EQ(add(GetParam().packet), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mStreams.size(), 0U);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine(formatted("Verify Header %s\n", GetParam().verified)),
                            infoLine(formatted("************* unknow header %s **************\n",
                                               GetParam().named))));
}

INSTANTIATE_TEST_SUITE_P(
        Headers, UnknownHeaderTest,
        ::testing::Values(Unknown{"Text", textHeader(), "01 74 65 78 74 00",
                                  "01 74 65 78 74 00 00 00"},
                          Unknown{"Theora", theoraIdentificationHeader(), "80 74 68 65 6F 72",
                                  "80 74 68 65 6f 72 61 00"},
                          Unknown{"VideoOfAnotherPacketType", videoOfPacketType(3),
                                  "03 76 69 64 65 6F", "03 76 69 64 65 6f 00 00"},
                          Unknown{"Empty", {}, "00 00 00 00 00 00", "00 00 00 00 00 00 00 00"}),
        ::testing::PrintToStringParamName());

TEST_F(StreamTableTest, OnlyFiveCharactersOfTheStreamTypeAreCompared) {
    VideoHeader header;
    header.streamType = "videoXYZ";
    EXPECT_EQ(add(header.bytes()), AMEDIA_OK);
    EXPECT_EQ(mStreams.size(), 1U);
}

TEST_F(StreamTableTest, AnUnknownVideoCodecMakesNoTrack) {
    VideoHeader header;
    header.subtype = "XVID";
    EXPECT_EQ(add(header.bytes()), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mStreams.size(), 0U);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Verify Header 01 76 69 64 65 6F\n"),
                                             infoLine("Begin parse Video stream info"),
                                             errorLine("unknow video codec: 58564944"),
                                             errorLine("invalid video codec")));
}

TEST_F(StreamTableTest, AnUnknownAudioCodecMakesNoTrack) {
    AudioHeader header;
    header.subtype = "674F";
    EXPECT_EQ(add(header.bytes()), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mStreams.size(), 0U);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Verify Header 01 61 75 64 69 6F\n"),
                                             infoLine("Begin parse Audio stream info"),
                                             errorLine("unknown audio codec:36373446"),
                                             errorLine("invalid audio codec")));
}

TEST_F(StreamTableTest, MissingFieldsOfAHeaderThatIsCutOffAreZero) {
    VideoHeader video;
    video.width = 0x0240;
    // The cut is within the width, which loses its high byte.
    EXPECT_EQ(add(head(video.bytes(), 46)), AMEDIA_OK);
    EXPECT_EQ(add(head(AudioHeader().bytes(), 17)), AMEDIA_OK);
    EXPECT_EQ(formatAt(0).int32(AMEDIAFORMAT_KEY_WIDTH), 0x40);
    EXPECT_EQ(formatAt(0).int32(AMEDIAFORMAT_KEY_HEIGHT), 0);
    EXPECT_EQ(formatAt(1).string(AMEDIAFORMAT_KEY_MIME), "audio/raw");
    EXPECT_EQ(formatAt(1).int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), 0);
    EXPECT_EQ(formatAt(1).int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT), 0);
    // The cut is within the subtype.
    EXPECT_EQ(add(head(VideoHeader().bytes(), 11)), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mEvents.count(errorLine("unknow video codec: 48320000")), 1U);
}

TEST_F(StreamTableTest, TheBitsPerSampleAreThoseOfTheHeaderAcceptedLast) {
    AudioHeader pcm;
    pcm.bitsPerSample = 16;
    VideoHeader video;
    video.bitsPerSample = 8;
    VideoHeader refused;
    refused.subtype = "XVID";
    refused.bitsPerSample = 24;
    EXPECT_EQ(mStreams.bitsPerSample(), 0);
    add(pcm.bytes());
    EXPECT_EQ(mStreams.bitsPerSample(), 16);
    add(video.bytes());
    EXPECT_EQ(mStreams.bitsPerSample(), 8);
    add(refused.bytes());
    EXPECT_EQ(mStreams.bitsPerSample(), 8);
}

TEST_F(StreamTableTest, OfTwoStreamsWithOneSerialNumberTheFirstIsFoundAndBothAreListed) {
    add(VideoHeader().bytes());
    add(AudioHeader().bytes());
    EXPECT_EQ(mStreams.size(), 2U);
    EXPECT_EQ(mStreams.find(kSerialNo), &mStreams[0]);
    EXPECT_EQ(mStreams.find(3), nullptr);
    EXPECT_EQ(mStreams.mimeOf(kSerialNo), "video/avc");
    EXPECT_EQ(mStreams.mimeOf(3), "");
}

TEST_F(StreamTableTest, TheDurationGoesIntoAllFormats) {
    add(VideoHeader().bytes());
    add(AudioHeader().bytes());
    mStreams.setDuration(7000);
    EXPECT_EQ(formatAt(0).int64(AMEDIAFORMAT_KEY_DURATION), 7000);
    EXPECT_EQ(formatAt(1).int64(AMEDIAFORMAT_KEY_DURATION), 7000);
}

TEST_F(StreamTableTest, AFormatIsCopiedWithTheDuration) {
    add(VideoHeader().bytes());
    const Format format;
    EXPECT_EQ(mStreams.copyFormat(kSerialNo, 7000, format.get()), AMEDIA_OK);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "video/avc");
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_DURATION), 7000);
    EXPECT_EQ(formatAt(0).int64(AMEDIAFORMAT_KEY_DURATION), 7000);
}

TEST_F(StreamTableTest, AStreamThatIsNotThereHasNoFormat) {
    const Format format;
    EXPECT_EQ(mStreams.copyFormat(kSerialNo, 7000, format.get()), AMEDIA_ERROR_MALFORMED);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
    EXPECT_EQ(mStreams.getTrackMetaData(format.get(), 0, 0), AMEDIA_ERROR_UNKNOWN);
    EXPECT_THAT(mEvents.lines(), ElementsAre(errorLine("getTrackMetaData,invalid index[0]")));
    EXPECT_EQ(format.text(), Format().text());
}

TEST_F(StreamTableTest, OnlyTheFirstRequestForExtensiveMetaDataSetsTheThumbnailTime) {
    add(VideoHeader().bytes());
    add(AudioHeader().bytes());
    EXPECT_EQ(formatAt(0, ~kExtensiveMetaData).int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME),
              std::nullopt);
    mEvents.clear();
    EXPECT_EQ(formatAt(1, kExtensiveMetaData).int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), 0);
    EXPECT_EQ(formatAt(0, kExtensiveMetaData).int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), std::nullopt);
    // The entry stays in the stream's own format.
    EXPECT_EQ(formatAt(1).int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), 0);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("getTrackMetaData mime:audio/raw"),
                                             infoLine("getTrackMetaData, set thumbnail time"),
                                             infoLine("getTrackMetaData mime:video/avc"),
                                             infoLine("getTrackMetaData mime:audio/raw")));
}

}  // namespace
}  // namespace android::ogm::test::stream_table_test
