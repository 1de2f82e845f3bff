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

TEST(Codec, NamesEachTypeThatThePluginAnnounces) {
    struct Case {
        const char* mime;
        const char* name;
        const char* suffix;
        Packaging packaging;
        const char* fourcc;
    };
    for (const Case& expected :
         {Case{"video/mp4v-es", "MPEG-4 Part 2", ".m4v", Packaging::kMpeg4, ""},
          Case{"video/divx4", "DivX 4", ".m4v", Packaging::kMpeg4, ""},
          Case{"video/divx", "DivX", ".m4v", Packaging::kMpeg4, ""},
          Case{"video/divx3", "DivX 3", ".avi", Packaging::kAvi, "DIV3"},
          Case{"video/mpeg2", "MPEG-1/2 video", ".m2v", Packaging::kRaw, ""},
          Case{"video/avc", "H.264", ".h264", Packaging::kRaw, ""},
          Case{"video/hevc", "H.265", ".h265", Packaging::kRaw, ""},
          Case{"video/x-vnd.on2.vp8", "VP8", ".ivf", Packaging::kIvf, ""},
          Case{"video/x-ms-wmv", "WMV 9", ".avi", Packaging::kAvi, "WMV3"},
          Case{"video/x-motion-jpeg", "Motion JPEG", ".mjpeg", Packaging::kRaw, ""},
          Case{"audio/raw", "PCM", ".wav", Packaging::kWav, ""},
          Case{"audio/x-adpcm-ms", "MS ADPCM", ".wav", Packaging::kAdpcmWav, ""},
          Case{"audio/mp4a-latm", "AAC", ".aac", Packaging::kBare, ""},
          Case{"audio/x-ms-wma", "WMA 1", ".wma1", Packaging::kBare, ""},
          Case{"audio/ac3", "AC-3", ".ac3", Packaging::kRaw, ""},
          Case{"audio/eac3", "E-AC-3", ".eac3", Packaging::kRaw, ""},
          Case{"audio/vnd.dts", "DTS", ".dts", Packaging::kRaw, ""},
          Case{"audio/mpeg", "MP3 (MPEG audio layer 3)", ".mp3", Packaging::kRaw, ""}}) {
        const Codec codec = codecOf(expected.mime, {});
        EXPECT_EQ(codec.name, expected.name);
        EXPECT_EQ(codec.suffix, expected.suffix) << expected.mime;
        EXPECT_EQ(codec.packaging, expected.packaging) << expected.mime;
        EXPECT_EQ(codec.fourcc, expected.fourcc) << expected.mime;
    }
}

TEST(Codec, NamesAnUnknownTypeByItself) {
    const Codec codec = codecOf("video/whatever", {});
    EXPECT_EQ(codec.name, "video/whatever");
    EXPECT_EQ(codec.suffix, ".bin");
    EXPECT_EQ(codec.packaging, Packaging::kBare);
}

}  // namespace
}  // namespace ogmprobe
