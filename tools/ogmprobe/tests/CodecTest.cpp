// SPDX-License-Identifier: Apache-2.0
#include "codecs/Codec.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

TEST(Codec, NamesMpegAudioByItsLayerWhereThatIsKnown) {
    const Codec codec = codecOf("audio/mpeg-L1", 2);
    EXPECT_EQ(codec.name, "MP2 (MPEG audio layer 2)");
    EXPECT_EQ(codec.suffix, ".mp2");
}

TEST(Codec, NamesMpegAudioByItsMimeTypeWithoutAUsableLayer) {
    EXPECT_EQ(codecOf("audio/mpeg-L1", std::nullopt).suffix, ".mp1");
    EXPECT_EQ(codecOf("audio/mpeg-L2", std::nullopt).suffix, ".mp2");
    EXPECT_EQ(codecOf("audio/mpeg", std::nullopt).suffix, ".mp3");
    EXPECT_EQ(codecOf("audio/mpeg", 0).suffix, ".mp3");
    EXPECT_EQ(codecOf("audio/mpeg", 4).suffix, ".mp3");
}

TEST(Codec, IgnoresTheLayerForOtherTypes) {
    EXPECT_EQ(codecOf("audio/ac3", 2).suffix, ".ac3");
}

TEST(Codec, GivesTheUsualSuffixes) {
    EXPECT_EQ(codecOf("video/mp4v-es", {}).suffix, ".m4v");
    EXPECT_EQ(codecOf("video/avc", {}).suffix, ".h264");
    EXPECT_EQ(codecOf("video/mpeg2", {}).suffix, ".m2v");
    EXPECT_EQ(codecOf("video/x-motion-jpeg", {}).suffix, ".mjpeg");
    EXPECT_EQ(codecOf("audio/vnd.dts", {}).suffix, ".dts");
    EXPECT_EQ(codecOf("audio/raw", {}).suffix, ".wav");
}

TEST(Codec, NamesAnUnknownTypeByItself) {
    const Codec codec = codecOf("video/whatever", {});
    EXPECT_EQ(codec.name, "video/whatever");
    EXPECT_EQ(codec.suffix, ".bin");
    EXPECT_EQ(codec.packaging, Packaging::kBare);
}

}  // namespace
}  // namespace ogmprobe
