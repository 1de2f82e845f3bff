// SPDX-License-Identifier: Apache-2.0
#include <cctype>

#include "PluginTest.h"

namespace android::ogm::test {
namespace {

/** One row of a codec table, with the platform's text for the MIME type. */
struct Codec {
    const char* id;
    int type;
    const char* mimeType;
    const char* message;  // null for none
};

std::ostream& operator<<(std::ostream& stream, const Codec& codec) {
    return stream << codec.id;
}

std::string idOf(const ::testing::TestParamInfo<Codec>& info) {
    return info.param.id;
}

/** The one line between "Begin parse ..." and the next that every stream logs. */
std::vector<LogLine> linesBetween(const EventLog& events, const std::string& first,
                                  const std::string& next) {
    std::vector<LogLine> between;
    bool inside = false;
    for (const LogLine& line : events.lines()) {
        if (line.text.find(next) == 0) {
            inside = false;
        }
        if (inside) {
            between.push_back(line);
        }
        inside = inside || line.text == first;
    }
    return between;
}

std::vector<LogLine> messageOf(const Codec& codec) {
    return codec.message != nullptr ? std::vector{infoLine(codec.message)} : std::vector<LogLine>{};
}

class VideoCodecTest : public PluginTest, public ::testing::WithParamInterface<Codec> {};

TEST_P(VideoCodecTest, HasItsMimeTypeItsStreamTypeAndItsMessage) {
    VideoHeader header;
    header.subtype = GetParam().id;
    OgmFile file;
    file.addHeader(1, header);
    OpenedFile opened = open(file);
    ASSERT_EQ(opened->countTracks(), 1U);
    EXPECT_EQ(opened->trackFormat(0).string(AMEDIAFORMAT_KEY_MIME), GetParam().mimeType);
    EXPECT_EQ(linesBetween(mEvents, "Begin parse Video stream info", "Width = "),
              messageOf(GetParam()));
    const auto track = opened->track(0);
    EXPECT_TRUE(mEvents.holds(infoLine(formatted(
            "getTrack: isVideo type[%d],frameRate =25, TimeUnit=400000", GetParam().type))));
}

constexpr char kMpeg4Message[] = "Video - MP4 Codec \n";
constexpr char kMpegMessage[] = "Video - MPEG Codec \n";
constexpr char kAvcMessage[] = "Video - H264 Codec \n";

constexpr Codec mpeg4(const char* id) {
    return {id, 18, "video/mp4v-es", kMpeg4Message};
}
constexpr Codec mpeg(const char* id) {
    return {id, 19, "video/mpeg2", kMpegMessage};
}
constexpr Codec avc(const char* id) {
    return {id, 22, "video/avc", kAvcMessage};
}

INSTANTIATE_TEST_SUITE_P(
        Mpeg4, VideoCodecTest,
        ::testing::Values(mpeg4("3IV2"), mpeg4("3iv2"), mpeg4("BLZ0"), mpeg4("DIGI"), mpeg4("DIV1"),
                          mpeg4("div1"), mpeg4("DX50"), mpeg4("dx50"), mpeg4("DXGM"), mpeg4("EM4A"),
                          mpeg4("EPHV"), mpeg4("FMP4"), mpeg4("fmp4"), mpeg4("FVFW"), mpeg4("HDX4"),
                          mpeg4("hdx4"), mpeg4("M4CC"), mpeg4("M4S2"), mpeg4("m4s2"), mpeg4("MP4S"),
                          mpeg4("mp4s"), mpeg4("MP4V"), mpeg4("mp4v"), mpeg4("MVXM"), mpeg4("RMP4"),
                          mpeg4("SEDG"), mpeg4("SMP4"), mpeg4("UMP4"), mpeg4("WV1F")),
        idOf);

INSTANTIATE_TEST_SUITE_P(Mpeg, VideoCodecTest,
                         ::testing::Values(mpeg("MPEG"), mpeg("mpeg"), mpeg("mpg1"), mpeg("mpg2"),
                                           mpeg("EM2V")),
                         idOf);

INSTANTIATE_TEST_SUITE_P(Avc, VideoCodecTest,
                         ::testing::Values(avc("H264"), avc("h264"), avc("x264"), avc("avc1"),
                                           avc("davc"), avc("vssh")),
                         idOf);

INSTANTIATE_TEST_SUITE_P(
        Others, VideoCodecTest,
        ::testing::Values(Codec{"DIVX", 23, "video/divx4", "Video - DIVX Codec \n"},
                          Codec{"divx", 23, "video/divx4", "Video - DIVX Codec \n"},
                          Codec{"DIV3", 23, "video/divx3", nullptr},
                          Codec{"div3", 23, "video/divx3", nullptr},
                          Codec{"WMV3", 24, "video/x-ms-wmv", "Video - WMV3 Codec \n"},
                          Codec{"wmv3", 24, "video/x-ms-wmv", "Video - WMV3 Codec \n"},
                          Codec{"VP8F", 25, "video/x-vnd.on2.vp8", "Video - VP8 Codec \n"},
                          Codec{"vp8f", 25, "video/x-vnd.on2.vp8", "Video - VP8 Codec \n"},
                          Codec{"MJPG", 26, "video/x-motion-jpeg", "Video - MJPG Codec \n"}),
        idOf);

/** The four characters of an identifier as the hexadecimal number that they make. */
std::string valueOf(const char* id) {
    std::string value;
    for (const char* c = id; *c != '\0'; ++c) {
        value += formatted("%02X", static_cast<unsigned>(*c));
    }
    return value;
}

class UnknownVideoCodecTest : public PluginTest,
                              public ::testing::WithParamInterface<const char*> {};

TEST_P(UnknownVideoCodecTest, MakesNoTrackAndIsNamedByItsValue) {
    VideoHeader header;
    header.subtype = GetParam();
    OgmFile file;
    file.addHeader(1, header);
    EXPECT_EQ(open(file)->countTracks(), 0U);
    EXPECT_EQ(linesBetween(mEvents, "Begin parse Video stream info", "FindPage"),
              (std::vector{errorLine("unknow video codec: " + valueOf(GetParam())),
                           errorLine("invalid video codec")}));
}

INSTANTIATE_TEST_SUITE_P(Ids, UnknownVideoCodecTest,
                         ::testing::Values("XVID", "xvid", "MP43", "mjpg", "mpg3", "Divx", "DIV2",
                                           "DIV4", "X264", "AVC1", "ephv", "wmv1", "VP80", "MPG2",
                                           "dxgm", "blz0"));

class AudioCodecTest : public PluginTest, public ::testing::WithParamInterface<Codec> {};

TEST_P(AudioCodecTest, HasItsMimeTypeItsStreamTypeAndItsMessage) {
    AudioHeader header;
    header.subtype = GetParam().id;
    OgmFile file;
    file.addHeader(1, header);
    OpenedFile opened = open(file);
    ASSERT_EQ(opened->countTracks(), 1U);
    EXPECT_EQ(opened->trackFormat(0).string(AMEDIAFORMAT_KEY_MIME), GetParam().mimeType);
    EXPECT_EQ(linesBetween(mEvents, "Begin parse Audio stream info", "channel count = "),
              messageOf(GetParam()));
    const auto track = opened->track(0);
    EXPECT_TRUE(mEvents.holds(
            infoLine(formatted("getTrack: isAudio type[%d],sampleRate =8000", GetParam().type))));
}

INSTANTIATE_TEST_SUITE_P(
        Tags, AudioCodecTest,
        ::testing::Values(Codec{"0001", 5, "audio/raw", "Audio - PCM Codec "},
                          Codec{"0002", 9, "audio/x-adpcm-ms", "Audio - ADPCM Codec "},
                          Codec{"0050", 6, "audio/mpeg-L1", "Audio - Mpeg Layer-1/2"},
                          Codec{"0055", 1, "audio/mpeg", "Audio - MP3 Codec "},
                          Codec{"00FF", 3, "audio/mp4a-latm", "Audio - AAC Codec \n"},
                          Codec{"00ff", 3, "audio/mp4a-latm", "Audio - AAC Codec \n"},
                          Codec{"0160", 4, "audio/x-ms-wma", "Audio - WMA_V1 Codec \n"},
                          Codec{"2000", 7, "audio/ac3", "Audio - AC3 Codec "},
                          Codec{"2001", 8, "audio/vnd.dts", "Audio - DTS Codec "}),
        idOf);

class UnknownAudioCodecTest : public PluginTest,
                              public ::testing::WithParamInterface<const char*> {};

TEST_P(UnknownAudioCodecTest, MakesNoTrackAndIsNamedByItsValue) {
    AudioHeader header;
    header.subtype = GetParam();
    OgmFile file;
    file.addHeader(1, header);
    EXPECT_EQ(open(file)->countTracks(), 0U);
    EXPECT_EQ(linesBetween(mEvents, "Begin parse Audio stream info", "FindPage"),
              (std::vector{errorLine("unknown audio codec:" + valueOf(GetParam())),
                           errorLine("invalid audio codec")}));
}

INSTANTIATE_TEST_SUITE_P(Ids, UnknownAudioCodecTest,
                         ::testing::Values("0000", "0003", "0051", "00Ff", "00fF", "0161", "0162",
                                           "2002", "674F", "FFFE"));

TEST_F(PluginTest, TheTwoCaseVariantsOfOneCodecOnAFileAreTwoTracks) {
    VideoHeader upper;
    upper.subtype = "DIV3";
    VideoHeader lower;
    lower.subtype = "div3";
    OgmFile file;
    file.addHeader(1, upper);
    file.addHeader(2, lower);
    EXPECT_EQ(open(file)->countTracks(), 2U);
}

}  // namespace
}  // namespace android::ogm::test
