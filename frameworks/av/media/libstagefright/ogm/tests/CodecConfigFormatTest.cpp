// SPDX-License-Identifier: Apache-2.0
#include <media/NdkMediaFormatZor.h>
#include <media/stagefright/MediaDefs.h>

#include "ChildProcess.h"
#include "ElementaryStreams.h"
#include "PluginTest.h"

namespace android::ogm::test::codec_config_format_test {
namespace {

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;

/** Entries that are added to a stream's format while the file is opened. */
class CodecConfigFormatTest : public PluginTest {
  protected:
    static OgmFile videoFile() {
        VideoHeader header;
        header.subtype = "FMP4";
        OgmFile file;
        file.addHeader(kVideo, header);
        return file;
    }

    static OgmFile audioFile(const char* tag) {
        AudioHeader header;
        header.subtype = tag;
        OgmFile file;
        file.addHeader(kAudio, header);
        return file;
    }
};

TEST_F(CodecConfigFormatTest, BytesWithoutAStartCodeNeverLetTheFileOpen) {
    OgmFile file = videoFile();
    file.addData(kVideo, 1, dataPacket(kPlainPacket, pattern(257, 1)));
    OgmFile shorter = videoFile();
    shorter.addData(kVideo, 1, dataPacket(kPlainPacket, pattern(256, 1)));
    constexpr std::chrono::milliseconds kLimit(200);
    EXPECT_EQ(runInChild([&] { open(file); }, kLimit), outOfTime());
    EXPECT_EQ(runInChild([&] { open(shorter); }), returned());
}

TEST_F(CodecConfigFormatTest, AVolThatBreaksTheSyntaxEndsTheProcessWhileTheFileIsOpened) {
    VideoObjectLayer layer;
    layer.objectType = 0x21;
    OgmFile file = videoFile();
    file.addData(kVideo, 1, dataPacket(kSyncPacket, joined({layer.bytes(), vop(), vop()})));
    EXPECT_EQ(runInChild([&] { open(file); }),
              abortedWith("avc_utils",
                          "frameworks/av/media/libstagefright/ogm/Ogmavc_utils:542 CHECK_NE( "
                          "video_object_type_indication,0x21u) failed: 33 vs. 33"));
}

TEST_F(CodecConfigFormatTest, TheSizeOfThePictureStaysThatOfTheStreamHeader) {
    OgmFile file = videoFile();
    file.addData(kVideo, 1, dataPacket(kSyncPacket, joined({vol(), vop(), vop()})));
    const Format format = open(file).extractor.trackFormat(0);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), 320);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_HEIGHT), 240);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), MEDIA_MIMETYPE_VIDEO_MPEG4);
}

TEST_F(CodecConfigFormatTest, EveryLayerUnderEitherTagHasItsMimeType) {
    struct Row {
        uint32_t layer;
        const char* mime;
    };
    for (const char* tag : {"0050", "0055"}) {
        for (const Row& row :
             {Row{1, MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I}, Row{2, MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_II},
              Row{3, MEDIA_MIMETYPE_AUDIO_MPEG}}) {
            MpegAudioFrame frame;
            frame.layer = row.layer;
            OgmFile file = audioFile(tag);
            file.addData(kAudio, 1, audioPacket(joined({frame.bytes(), frame.bytes()})));
            const Format format = open(file).extractor.trackFormat(0);
            EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), row.mime);
            EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_MPEG_AUD_LAYER),
                      static_cast<int32_t>(row.layer));
            EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE), 8000);
            EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT), 1);
        }
    }
}

}  // namespace
}  // namespace android::ogm::test::codec_config_format_test
