// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaDefs.h>
#include <media/stagefright/foundation/MediaDefs.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

TEST(MediaDefs, TypesAreVariablesWithTheTextsOfThePlatform) {
    EXPECT_TRUE((std::is_same_v<decltype(android::MEDIA_MIMETYPE_AUDIO_RAW), const char*>));
    EXPECT_STREQ(android::MEDIA_MIMETYPE_VIDEO_MPEG4, "video/mp4v-es");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_VIDEO_MPEG2, "video/mpeg2");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_VIDEO_AVC, "video/avc");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_VIDEO_VP8, "video/x-vnd.on2.vp8");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_VIDEO_DIVX3, "video/divx3");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_VIDEO_MJPEG, "video/x-motion-jpeg");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_RAW, "audio/raw");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_MS_ADPCM, "audio/x-adpcm-ms");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_MPEG, "audio/mpeg");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I, "audio/mpeg-L1");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_II, "audio/mpeg-L2");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_AAC, "audio/mp4a-latm");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_AC3, "audio/ac3");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_DTS, "audio/vnd.dts");
    EXPECT_STREQ(android::MEDIA_MIMETYPE_AUDIO_WMA, "audio/x-ms-wma");
}

}  // namespace
