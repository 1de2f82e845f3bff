// SPDX-License-Identifier: Apache-2.0
#include "stream/CodecConfig.h"

#include <media/stagefright/MediaDefs.h>

#include "ChildProcess.h"
#include "ElementaryStreams.h"
#include "Format.h"
#include "LogTest.h"
#include "Views.h"
#include "codec/MimeTypes.h"

namespace android::ogm::test::codec_config_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr size_t kEsdsHeaderSize = 25;
constexpr char kNoStartCode[] = "can't find start code for mpeg4 video";
// A search that ends takes a few microseconds.
constexpr std::chrono::milliseconds kEndlessSearch(100);

/** Completes a format from bytes that a test provides. */
class CodecConfigRoutineTest : public LogTest {
  protected:
    media_status_t configureVideo(const Bytes& bytes) {
        ByteBuffer buffer(viewOf(bytes));
        return configureMpeg4Video(&buffer, mFormat.get());
    }
    media_status_t configureAudio(const Bytes& bytes) {
        const ByteBuffer buffer(viewOf(bytes));
        return configureMpegAudio(buffer.view(), mFormat.get());
    }

    /** The configuration in the ESDS. */
    std::optional<Bytes> configuration() {
        const auto esds = mFormat.buffer(AMEDIAFORMAT_KEY_ESDS);
        return esds ? std::optional(tail(*esds, kEsdsHeaderSize)) : std::nullopt;
    }

    Format mFormat;
};

using Mpeg4VideoConfigTest = CodecConfigRoutineTest;
using MpegAudioConfigTest = CodecConfigRoutineTest;

TEST_F(Mpeg4VideoConfigTest, AVolBeforeAPictureBecomesTheEsds) {
    EXPECT_EQ(configureVideo(joined({vol(), vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), vol());
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("WAIT_FOR_VOL_START"), infoLine("set WAIT_FOR_VOP_START"),
                            infoLine("enter WAIT_FOR_VOP_START"),
                            infoLine("found MPEG4 video codec config (176 x 144)"),
                            infoLine("get csd success!")));
}

TEST_F(Mpeg4VideoConfigTest, TheEsdsHoldsTheConfigurationAfterItsHeaders) {
    const Bytes config = vol();
    const auto n = static_cast<uint8_t>(config.size());
    EXPECT_EQ(configureVideo(joined({config, vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(mFormat.buffer(AMEDIAFORMAT_KEY_ESDS),
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

TEST_F(Mpeg4VideoConfigTest, BytesBeforeTheVolAreRemovedFromTheBuffer) {
    ByteBuffer buffer(
            viewOf(joined({{0x08}, visualObjectSequence(), visualObject(), vol(), vop(), vop()})));
    EXPECT_EQ(configureMpeg4Video(&buffer, mFormat.get()), AMEDIA_OK);
    EXPECT_EQ(configuration(), vol());
    EXPECT_EQ(bytesOf(buffer), joined({vol(), vop(), vop()}));
    EXPECT_EQ(mEvents.count(infoLine("WAIT_FOR_VOL_START")), 3U);
}

TEST_F(Mpeg4VideoConfigTest, BytesFromTheVolToThePictureStayInTheEsds) {
    const Bytes userData = joined({{0x00, 0x00, 0x01, 0xB2}, pattern(20, 1)});
    EXPECT_EQ(configureVideo(joined({vol(), userData, vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), joined({vol(), userData}));
    EXPECT_EQ(mEvents.count(infoLine("enter WAIT_FOR_VOP_START")), 2U);
}

TEST_F(Mpeg4VideoConfigTest, BytesBeforeAVolThatIsTheFirstChunkStayInTheEsds) {
    // An encoder that writes nothing before the VOL except the packet's header byte.
    EXPECT_EQ(configureVideo(joined({{0x08}, vol(), vop(), vop()})), AMEDIA_OK);
    EXPECT_EQ(configuration(), joined({{0x08}, vol()}));
}

TEST_F(Mpeg4VideoConfigTest, TheSizeOfThePictureIsLoggedAndNotStored) {
    EXPECT_EQ(configureVideo(joined({vol(), vop(), vop()})), AMEDIA_OK);
    EXPECT_TRUE(mEvents.holds(infoLine("found MPEG4 video codec config (176 x 144)")));
    EXPECT_EQ(mFormat.int32(AMEDIAFORMAT_KEY_WIDTH), std::nullopt);
    EXPECT_EQ(mFormat.int32(AMEDIAFORMAT_KEY_HEIGHT), std::nullopt);
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
    EXPECT_EQ(configuration()->size(), 16361U);
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

TEST_F(MpegAudioConfigTest, FourBytesAreSearchedForAHeader) {
    EXPECT_EQ(configureAudio(pattern(4, 1)), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines().back(), warningLine("Not get mMP3Header, size:4"));
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
        EXPECT_EQ(mFormat.string(AMEDIAFORMAT_KEY_MIME), row.mime);
        EXPECT_EQ(mFormat.int32(AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), static_cast<int32_t>(row.layer));
        EXPECT_TRUE(mEvents.holds(infoLine(formatted("mp3Header:%x", frame.header()))));
        EXPECT_EQ(mEvents.lines().back(),
                  infoLine(formatted("layer = %d\n", static_cast<int>(row.layer))));
    }
}

TEST_F(MpegAudioConfigTest, SampleRateAndChannelCountStayThoseOfTheStreamHeader) {
    EXPECT_EQ(configureAudio(joined({MpegAudioFrame{}.bytes(), MpegAudioFrame{}.bytes()})),
              AMEDIA_OK);
    EXPECT_EQ(mFormat.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), std::nullopt);
    EXPECT_EQ(mFormat.int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT), std::nullopt);
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

TEST_F(MpegAudioConfigTest, AFailureLeavesTheFormatAsItWas) {
    EXPECT_EQ(configureAudio(pattern(1000, 1)), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mFormat.text(), Format().text());
}

}  // namespace
}  // namespace android::ogm::test::codec_config_test
