// SPDX-License-Identifier: Apache-2.0
#include "stream/Codecs.h"

#include <ostream>
#include <string_view>

#include "Format.h"
#include "LogTest.h"
#include "Views.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test::codecs_test {
namespace {

/** One row of a codec table, with the platform's text for the MIME type. */
struct Codec {
    const char* id;
    uint32_t type;
    const char* mimeType;
    const char* message;  // null for none
};

std::ostream& operator<<(std::ostream& stream, const Codec& codec) {
    return stream << codec.id;
}

std::string idOf(const ::testing::TestParamInfo<Codec>& info) {
    return info.param.id;
}

/** The four characters of an identifier as a number. */
uint32_t valueOf(std::string_view id) {
    return viewOf(bytesOf(id)).u32be(0);
}

class CodecsTest : public LogTest {
  protected:
    void expectMapped(uint32_t type, const Codec& codec) {
        EXPECT_EQ(type, codec.type);
        EXPECT_EQ(mFormat.string(AMEDIAFORMAT_KEY_MIME), codec.mimeType);
        EXPECT_EQ(mEvents.lines(), codec.message != nullptr ? std::vector{infoLine(codec.message)}
                                                            : std::vector<LogLine>{});
    }

    void expectRefused(uint32_t type, const LogLine& line) {
        EXPECT_EQ(type, 30U);
        EXPECT_EQ(mFormat.text(), Format().text());
        EXPECT_EQ(mEvents.lines(), std::vector{line});
    }

    const Format mFormat;
};

TEST_F(CodecsTest, ASmallUnknownValueIsPaddedWithBlanks) {
    mapVideoCodec(mFormat.get(), 0x1A);
    mapAudioCodec(mFormat.get(), 0);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("unknow video codec:   1A"),
                                            errorLine("unknown audio codec:   0")}));
}

class KnownVideoCodecTest : public CodecsTest, public ::testing::WithParamInterface<Codec> {};

TEST_P(KnownVideoCodecTest, HasItsMimeTypeItsStreamTypeAndItsMessage) {
    expectMapped(mapVideoCodec(mFormat.get(), valueOf(GetParam().id)), GetParam());
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
        Mpeg4, KnownVideoCodecTest,
        ::testing::Values(mpeg4("3IV2"), mpeg4("3iv2"), mpeg4("BLZ0"), mpeg4("DIGI"), mpeg4("DIV1"),
                          mpeg4("div1"), mpeg4("DX50"), mpeg4("dx50"), mpeg4("DXGM"), mpeg4("EM4A"),
                          mpeg4("EPHV"), mpeg4("FMP4"), mpeg4("fmp4"), mpeg4("FVFW"), mpeg4("HDX4"),
                          mpeg4("hdx4"), mpeg4("M4CC"), mpeg4("M4S2"), mpeg4("m4s2"), mpeg4("MP4S"),
                          mpeg4("mp4s"), mpeg4("MP4V"), mpeg4("mp4v"), mpeg4("MVXM"), mpeg4("RMP4"),
                          mpeg4("SEDG"), mpeg4("SMP4"), mpeg4("UMP4"), mpeg4("WV1F")),
        idOf);

INSTANTIATE_TEST_SUITE_P(Mpeg, KnownVideoCodecTest,
                         ::testing::Values(mpeg("MPEG"), mpeg("mpeg"), mpeg("mpg1"), mpeg("mpg2"),
                                           mpeg("EM2V")),
                         idOf);

INSTANTIATE_TEST_SUITE_P(Avc, KnownVideoCodecTest,
                         ::testing::Values(avc("H264"), avc("h264"), avc("x264"), avc("avc1"),
                                           avc("davc"), avc("vssh")),
                         idOf);

INSTANTIATE_TEST_SUITE_P(
        Others, KnownVideoCodecTest,
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

class UnknownVideoCodecTest : public CodecsTest,
                              public ::testing::WithParamInterface<const char*> {};

TEST_P(UnknownVideoCodecTest, LeavesTheFormatUntouchedAndIsNamedByItsValue) {
    const uint32_t value = valueOf(GetParam());
    expectRefused(mapVideoCodec(mFormat.get(), value),
                  errorLine(formatted("unknow video codec: %08X", value)));
}

INSTANTIATE_TEST_SUITE_P(Ids, UnknownVideoCodecTest,
                         ::testing::Values("XVID", "xvid", "MP43", "mjpg", "mpg3", "Divx", "DIV2",
                                           "DIV4", "X264", "AVC1", "ephv", "wmv1", "VP80", "MPG2",
                                           "dxgm", "blz0"));

class KnownAudioCodecTest : public CodecsTest, public ::testing::WithParamInterface<Codec> {};

TEST_P(KnownAudioCodecTest, HasItsMimeTypeItsStreamTypeAndItsMessage) {
    expectMapped(mapAudioCodec(mFormat.get(), valueOf(GetParam().id)), GetParam());
}

INSTANTIATE_TEST_SUITE_P(
        Tags, KnownAudioCodecTest,
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

class UnknownAudioCodecTest : public CodecsTest,
                              public ::testing::WithParamInterface<const char*> {};

TEST_P(UnknownAudioCodecTest, LeavesTheFormatUntouchedAndIsNamedByItsValue) {
    const uint32_t value = valueOf(GetParam());
    expectRefused(mapAudioCodec(mFormat.get(), value),
                  errorLine(formatted("unknown audio codec:%08X", value)));
}

INSTANTIATE_TEST_SUITE_P(Ids, UnknownAudioCodecTest,
                         ::testing::Values("0000", "0003", "0051", "00Ff", "00fF", "0161", "0162",
                                           "2002", "674F", "FFFE"));

}  // namespace
}  // namespace android::ogm::test::codecs_test
