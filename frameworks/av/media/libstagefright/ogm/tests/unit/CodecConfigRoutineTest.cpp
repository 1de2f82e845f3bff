// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaDefs.h>

#include "ChildProcess.h"
#include "ElementaryStreams.h"
#include "Format.h"
#include "OgmFile.h"
#include "TrackDriver.h"
#include "stream/MimeTypes.h"

namespace android::ogm::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kVideo = 7;
constexpr uint32_t kAudio = 9;
constexpr size_t kEsdsHeaderSize = 25;
constexpr char kNoStartCode[] = "can't find start code for mpeg4 video";
// A search that ends takes a few microseconds.
constexpr std::chrono::milliseconds kEndlessSearch(200);

Bytes vol() {
    return VideoObjectLayer{}.bytes();
}

Bytes vop() {
    return videoObjectPlane(0);
}

/** A file of header pages only: its two streams are configured from bytes given by hand. */
class CodecConfigRoutineTest : public ::testing::Test {
  protected:
    CodecConfigRoutineTest() {
        OgmFile file;
        VideoHeader video;
        video.subtype = "FMP4";
        file.addHeader(kVideo, video);
        AudioHeader audio;
        audio.subtype = "0050";
        file.addHeader(kAudio, audio);
        mExtractor = std::make_unique<ExtractorOverBytes>(file.bytes());
        mEvents.clear();
    }

    static ByteBuffer bufferOf(const Bytes& bytes) {
        return ByteBuffer(ByteView(bytes.data(), bytes.size()));
    }
    static Bytes bytesOf(const ByteBuffer& buffer) {
        const ByteView view = buffer.view();
        return Bytes(view.data(), view.data() + view.size());
    }

    media_status_t configureVideo(const Bytes& bytes, uint32_t serialNo = kVideo) {
        ByteBuffer buffer = bufferOf(bytes);
        return (*mExtractor)->configureMpeg4Video(serialNo, &buffer);
    }
    media_status_t configureAudio(const Bytes& bytes) {
        return (*mExtractor)->configureMpegAudio(kAudio, bufferOf(bytes).view());
    }

    AMediaFormat* formatOf(uint32_t serialNo) {
        return (*mExtractor)->findStream(serialNo)->mFormat.get();
    }

    /** The configuration in the video stream's ESDS. */
    std::optional<Bytes> configuration() {
        const auto esds = test::bufferOf(formatOf(kVideo), AMEDIAFORMAT_KEY_ESDS);
        return esds ? std::optional(tail(*esds, kEsdsHeaderSize)) : std::nullopt;
    }

    EventLog mEvents;
    LogCapture mCapture{mEvents};
    std::unique_ptr<ExtractorOverBytes> mExtractor;
};

using Mpeg4VideoConfigTest = CodecConfigRoutineTest;
using MpegAudioConfigTest = CodecConfigRoutineTest;

TEST_F(Mpeg4VideoConfigTest, AVolInFrontOfAPictureBecomesTheEsds) {
    EXPECT_EQ(configureVideo(joined({vol(), vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), vol());
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("WAIT_FOR_VOL_START"), infoLine("set WAIT_FOR_VOP_START"),
                            infoLine("enter WAIT_FOR_VOP_START"),
                            infoLine("found MPEG4 video codec config (176 x 144)"),
                            infoLine("get csd success!")));
}

TEST_F(Mpeg4VideoConfigTest, TheEsdsHoldsTheConfigurationBehindItsHeaders) {
    const Bytes config = vol();
    const auto n = static_cast<uint8_t>(config.size());
    EXPECT_EQ(configureVideo(joined({config, vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(test::bufferOf(formatOf(kVideo), AMEDIAFORMAT_KEY_ESDS),
              joined({{0x03, 0x80, static_cast<uint8_t>(22 + n), 0x00, 0x00, 0x00},
                      {0x04, 0x80, static_cast<uint8_t>(16 + n), 0x40},
                      filled(12, 0),
                      {0x05, 0x80, n},
                      config}));
}

TEST_F(Mpeg4VideoConfigTest, AGroupOfPicturesEndsTheConfigurationToo) {
    EXPECT_EQ(configureVideo(joined({vol(), groupOfVop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), vol());
}

TEST_F(Mpeg4VideoConfigTest, WhatPrecedesTheVolIsRemovedFromTheBuffer) {
    ByteBuffer buffer =
            bufferOf(joined({{0x08}, visualObjectSequence(), visualObject(), vol(), vop(), vop()}));
    EXPECT_EQ((*mExtractor)->configureMpeg4Video(kVideo, &buffer), AMEDIA_OK);
    EXPECT_EQ(configuration(), vol());
    EXPECT_EQ(bytesOf(buffer), joined({vol(), vop(), vop()}));
    EXPECT_EQ(mEvents.count(infoLine("WAIT_FOR_VOL_START")), 3u);
}

TEST_F(Mpeg4VideoConfigTest, WhatFollowsTheVolUpToThePictureStaysInTheEsds) {
    const Bytes userData = joined({{0x00, 0x00, 0x01, 0xB2}, pattern(20, 1)});
    EXPECT_EQ(configureVideo(joined({vol(), userData, vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), joined({vol(), userData}));
    EXPECT_EQ(mEvents.count(infoLine("enter WAIT_FOR_VOP_START")), 2u);
}

TEST_F(Mpeg4VideoConfigTest, BytesInFrontOfAVolThatIsTheFirstChunkStayInTheEsds) {
    // The packet header byte of an encoder that writes nothing in front of the VOL.
    EXPECT_EQ(configureVideo(joined({{0x08}, vol(), vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), joined({{0x08}, vol()}));
}

TEST_F(Mpeg4VideoConfigTest, TheSizeOfThePictureIsLoggedAndNotStored) {
    EXPECT_EQ(configureVideo(joined({vol(), vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(int32Of(formatOf(kVideo), AMEDIAFORMAT_KEY_WIDTH), 320);
    EXPECT_EQ(int32Of(formatOf(kVideo), AMEDIAFORMAT_KEY_HEIGHT), 240);
}

TEST_F(Mpeg4VideoConfigTest, EveryCodeFrom20To2FIsAVolAndNoOther) {
    for (uint32_t code = 0; code < 0x100; ++code) {
        VideoObjectLayer layer;
        layer.startCode = static_cast<uint8_t>(code);
        const bool isVol = code >= 0x20 && code < 0x30;
        EXPECT_EQ(configureVideo(joined({layer.bytes(), vop(), vop()})),
                  isVol ? AMEDIA_OK : AMEDIA_ERROR_UNSUPPORTED)
                << code;
    }
}

TEST_F(Mpeg4VideoConfigTest, AStartCodeWithNothingInItIsPassedOver) {
    EXPECT_EQ(configureVideo(joined({{0x00, 0x00, 0x01}, vol(), vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), vol());
}

TEST_F(Mpeg4VideoConfigTest, AChunkWhoseEndIsMissingNeedsMoreBytes) {
    struct Case {
        Bytes bytes;
        size_t volStates;
        size_t vopStates;
    };
    for (const Case& incomplete :
         {Case{vol(), 0, 0}, Case{joined({vol(), vop()}), 1, 0}, Case{visualObjectSequence(), 0, 0},
          Case{joined({visualObjectSequence(), vol()}), 1, 0},
          Case{joined({vol(), groupOfVop()}), 1, 0},
          Case{joined({vol(), visualObject(), vop()}), 1, 1}}) {
        mEvents.clear();
        EXPECT_EQ(configureVideo(incomplete.bytes), AMEDIA_ERROR_UNSUPPORTED);
        EXPECT_EQ(mEvents.count(infoLine("WAIT_FOR_VOL_START")), incomplete.volStates);
        EXPECT_EQ(mEvents.count(infoLine("enter WAIT_FOR_VOP_START")), incomplete.vopStates);
        EXPECT_EQ(configuration(), std::nullopt);
    }
}

TEST_F(Mpeg4VideoConfigTest, UpTo257BytesWithoutAStartCodeAreRefused) {
    for (const size_t size : {0, 1, 2, 3, 4, 100, 256, 257}) {
        mEvents.clear();
        EXPECT_EQ(configureVideo(pattern(size, 1)), AMEDIA_ERROR_MALFORMED) << size;
        EXPECT_THAT(mEvents.lines(), ElementsAre(errorLine(kNoStartCode))) << size;
    }
}

TEST_F(Mpeg4VideoConfigTest, TheSearchOf258BytesWithoutAStartCodeDoesNotEnd) {
    EXPECT_EQ(runInChild([this] { configureVideo(pattern(258, 1)); }, kEndlessSearch), outOfTime());
    EXPECT_EQ(runInChild([this] { configureVideo(pattern(257, 1)); }, kEndlessSearch), returned());
}

TEST_F(Mpeg4VideoConfigTest, AStartCodeIsFoundAtPosition255AndNeverAt256) {
    const Bytes rest = joined({vol(), vop(), vop()});
    EXPECT_EQ(configureVideo(joined({pattern(255, 1), rest})), AMEDIA_OK);
    EXPECT_EQ(configuration(), joined({pattern(255, 1), vol()}));
    const Bytes tooFar = joined({pattern(256, 1), rest});
    EXPECT_EQ(runInChild([&] { configureVideo(tooFar); }, kEndlessSearch), outOfTime());
}

TEST_F(Mpeg4VideoConfigTest, AStartCodeInTheLastThreeBytesIsFoundAndHasNoEnd) {
    EXPECT_EQ(configureVideo({0x08, 0x00, 0x00, 0x01}), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(configureVideo({0x00, 0x00, 0x01}), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(Mpeg4VideoConfigTest, AStreamWithoutATrackIsRefused) {
    EXPECT_EQ(configureVideo(joined({vol(), vop(), vop()}), 12345), AMEDIA_ERROR_MALFORMED);
    EXPECT_THAT(mEvents.lines(), ElementsAre(errorLine("There is no serialNo[12345] in tracks")));
}

TEST_F(Mpeg4VideoConfigTest, AVolThatBreaksTheSyntaxEndsTheProcess) {
    VideoObjectLayer layer;
    layer.shape = 2;
    const Bytes bytes = joined({layer.bytes(), vop(), vop()});
    EXPECT_EQ(runInChild([&] { configureVideo(bytes); }),
              abortedWith("avc_utils",
                          "frameworks/av/media/libstagefright/ogm/Ogmavc_utils:573 CHECK_EQ( "
                          "video_object_layer_shape,0x00u) failed: 2 vs. 0"));
}

TEST_F(Mpeg4VideoConfigTest, AConfigurationOfMoreThan16361BytesEndsTheProcess) {
    const auto withUserData = [](size_t size) {
        const Bytes userData = joined({{0x00, 0x00, 0x01, 0xB2}, pattern(size - 4, 1)});
        return joined({vol(), userData, vop(), vop()});
    };
    const size_t most = 16361 - vol().size();
    EXPECT_EQ(configureVideo(withUserData(most)), AMEDIA_OK);
    EXPECT_EQ(configuration()->size(), 16361u);
    const Bytes tooLong = withUserData(most + 1);
    EXPECT_EQ(runInChild([&] { configureVideo(tooLong); }),
              abortedWith("avc_utils",
                          "frameworks/av/media/libstagefright/ogm/Ogmavc_utils:768 CHECK_LE( "
                          "size,0x3fff) failed: 16384 vs. 16383"));
}

TEST_F(MpegAudioConfigTest, FewerThanFourBytesAreAnInvalidSize) {
    for (size_t size = 0; size < 4; ++size) {
        mEvents.clear();
        EXPECT_EQ(configureAudio(pattern(size, 1)), AMEDIA_ERROR_MALFORMED);
        EXPECT_THAT(mEvents.lines(),
                    ElementsAre(errorLine(formatted("invalid size:%d", static_cast<int>(size)))));
    }
}

TEST_F(MpegAudioConfigTest, TwoFramesGiveLayerAndMimeType) {
    struct Row {
        uint32_t layer;
        const char* mime;
    };
    for (const Row& row :
         {Row{1, MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I}, Row{2, MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_II},
          Row{3, MEDIA_MIMETYPE_AUDIO_MPEG}}) {
        MpegAudioFrame frame;
        frame.layer = row.layer;
        mEvents.clear();
        EXPECT_EQ(configureAudio(joined({frame.bytes(), frame.bytes()})), AMEDIA_OK);
        EXPECT_EQ(stringOf(formatOf(kAudio), AMEDIAFORMAT_KEY_MIME), row.mime);
        EXPECT_EQ(int32Of(formatOf(kAudio), AMEDIAFORMAT_KEY_MPEG_AUD_LAYER),
                  static_cast<int32_t>(row.layer));
        EXPECT_TRUE(mEvents.holds(infoLine(formatted("mp3Header:%x", frame.header()))));
        EXPECT_EQ(mEvents.lines().back(),
                  infoLine(formatted("layer = %d\n", static_cast<int>(row.layer))));
    }
}

TEST_F(MpegAudioConfigTest, SampleRateAndChannelCountStayThoseOfTheStreamHeader) {
    EXPECT_EQ(configureAudio(joined({MpegAudioFrame{}.bytes(), MpegAudioFrame{}.bytes()})),
              AMEDIA_OK);
    EXPECT_EQ(int32Of(formatOf(kAudio), AMEDIAFORMAT_KEY_SAMPLE_RATE), 8000);
    EXPECT_EQ(int32Of(formatOf(kAudio), AMEDIAFORMAT_KEY_CHANNEL_COUNT), 1);
}

TEST_F(MpegAudioConfigTest, PacketHeadersOfThreeBytesBetweenTheFramesDoNoHarm) {
    const Bytes header{0x00, 0x40, 0x04};
    EXPECT_EQ(configureAudio(
                      joined({header, MpegAudioFrame{}.bytes(), header, MpegAudioFrame{}.bytes()})),
              AMEDIA_OK);
}

TEST_F(MpegAudioConfigTest, LessThanTwoFramesNeedMoreBytes) {
    const Bytes frame = MpegAudioFrame{}.bytes();
    EXPECT_EQ(configureAudio(frame), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines().back(), warningLine("Not get mMP3Header, size:417"));
    EXPECT_EQ(configureAudio(head(joined({frame, frame}), 833)), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines().back(), infoLine("buff size < frame size!"));
    EXPECT_EQ(configureAudio(joined({frame, frame})), AMEDIA_OK);
}

TEST_F(MpegAudioConfigTest, FewerThanFourBytesOfTheSecondHeaderNeedMoreBytes) {
    const Bytes frames = joined({MpegAudioFrame{}.bytes(), MpegAudioFrame{}.bytes()});
    for (const size_t bytes : {2, 3}) {
        mEvents.clear();
        EXPECT_EQ(configureAudio(head(frames, 417 + bytes)), AMEDIA_ERROR_MALFORMED);
        EXPECT_THAT(mEvents.lines(), Contains(infoLine("mp3Header:fffb9040")));
        EXPECT_EQ(mEvents.lines().back(), warningLine("not found mMP3Header,skip"));
    }
}

TEST_F(MpegAudioConfigTest, ASecondHeaderThatDoesNotDecodeIsNoFrame) {
    for (const uint8_t bitrate : {0x00, 0xF0}) {
        mEvents.clear();
        const Bytes second = joined({{0xFF, 0xFB, bitrate, 0x40}, pattern(500, 1)});
        EXPECT_EQ(configureAudio(joined({MpegAudioFrame{}.bytes(), second})),
                  AMEDIA_ERROR_MALFORMED);
        EXPECT_EQ(mEvents.lines().back(), infoLine("GetMPEGAudioFrameSize fail, skip this buffer"));
    }
}

TEST_F(MpegAudioConfigTest, AFailedSearchOfMoreThan131072BytesIsAnError) {
    EXPECT_EQ(configureAudio(pattern(131072, 1)), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines().back(), warningLine("Not get mMP3Header, size:131072"));
    EXPECT_EQ(configureAudio(pattern(131073, 1)), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines().back(),
              errorLine("findMP3Header fail size>131072, skip this buffer"));
}

TEST_F(MpegAudioConfigTest, AFailureLeavesTheFormatOfTheStreamHeader) {
    EXPECT_EQ(configureAudio(pattern(1000, 1)), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(stringOf(formatOf(kAudio), AMEDIAFORMAT_KEY_MIME), MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I);
    EXPECT_EQ(int32Of(formatOf(kAudio), AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), std::nullopt);
}

}  // namespace
}  // namespace android::ogm::test
