// SPDX-License-Identifier: Apache-2.0
#include "codec/MpegAudioFormat.h"

#include <gtest/gtest.h>
#include <media/stagefright/MediaDefs.h>

#include "ChildProcess.h"
#include "Format.h"
#include "codec/MimeTypes.h"
#include "codec/MpegAudioHeader.h"

namespace android::ogm::test::mpeg_audio_format_test {
namespace {

// Headers of layers I to III, and of the reserved layer.
constexpr uint32_t kLayer1 = 0xFFFF9064;
constexpr uint32_t kLayer2 = 0xFFFD9064;
constexpr uint32_t kLayer3 = 0xFFFB9064;
/** Layer III of MPEG-2 at 24 kHz. */
constexpr uint32_t kMpeg2Mono = 0xFFF394C4;
constexpr uint32_t kReservedLayer = 0xFFF99064;

TEST(MpegAudioFormatTest, EachLayerHasItsMimeType) {
    struct Row {
        uint32_t header;
        int32_t layer;
        const char* mime;
    };
    for (const Row& row : {Row{kLayer1, 1, MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I},
                           Row{kLayer2, 2, MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_II},
                           Row{kLayer3, 3, MEDIA_MIMETYPE_AUDIO_MPEG}}) {
        EXPECT_EQ(mpegAudioLayer(mpegAudioLayerBits(row.header)), row.layer);
        const FormatPtr format = makeMpegAudioFormat(row.header);
        EXPECT_EQ(stringOf(format.get(), AMEDIAFORMAT_KEY_MIME), row.mime);
        EXPECT_EQ(int32Of(format.get(), AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), row.layer);
    }
}

TEST(MpegAudioFormatTest, SampleRateAndChannelsAreThoseOfTheHeader) {
    const FormatPtr stereo = makeMpegAudioFormat(kLayer3);
    EXPECT_EQ(int32Of(stereo.get(), AMEDIAFORMAT_KEY_SAMPLE_RATE), 44100);
    EXPECT_EQ(int32Of(stereo.get(), AMEDIAFORMAT_KEY_CHANNEL_COUNT), 2);
    const FormatPtr mono = makeMpegAudioFormat(kMpeg2Mono);
    EXPECT_EQ(int32Of(mono.get(), AMEDIAFORMAT_KEY_SAMPLE_RATE), 24000);
    EXPECT_EQ(int32Of(mono.get(), AMEDIAFORMAT_KEY_CHANNEL_COUNT), 1);
}

TEST(MpegAudioFormatTest, TheReservedLayerEndsTheProcess) {
    EXPECT_EQ(runInChild([] { makeMpegAudioFormat(kReservedLayer); }),
              abortedWith("OgmExtractor",
                          "frameworks/av/media/libstagefright/ogm/OgmExtractor:735 Should not be "
                          "here. "));
}

}  // namespace
}  // namespace android::ogm::test::mpeg_audio_format_test
