// SPDX-License-Identifier: Apache-2.0
#include "CodecConfigFixture.h"

namespace android::ogm::test::codec_config_streams_test {
namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

/** Which streams of a file are searched, and which entries their formats get. */
using CodecConfigStreamsTest = CodecConfigFixture;

TEST_F(CodecConfigStreamsTest, TheFormatOfTheFirstStreamWithTheSerialNumberGetsTheConfiguration) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader{});  // H.264, with the same number
    VideoHeader header;
    header.subtype = "FMP4";
    file.addHeader(kVideo, header);
    file.addData(kVideo, 1, wholeConfiguration());
    collect(file);
    EXPECT_EQ(configurationAt(0), vol());
    EXPECT_EQ(esdsAt(1), std::nullopt);
}

TEST_F(CodecConfigStreamsTest, AFileWithoutDataPagesIsSearchedFromItsBeginning) {
    OgmFile file = videoFile();
    collect(file);
    const auto pages = mEvents.linesBeginning("pageOffset=");
    EXPECT_THAT(pages, ::testing::ElementsAre(pageLine(0, file.size())));
    EXPECT_EQ(mEvents.lines().back(), failure(18, -10006));
}

TEST_F(CodecConfigStreamsTest, OnlyMpeg4VideoAndMpegAudioAreSearched) {
    OgmFile file;
    uint32_t serialNo = 10;
    for (const char* fourcc : {"H264", "DIVX", "DIV3", "WMV3", "VP8F", "MJPG", "MPEG"}) {
        VideoHeader header;
        header.subtype = fourcc;
        file.addHeader(serialNo++, header);
    }
    for (const char* tag : {"0001", "0002", "00FF", "0160", "2000", "2001"}) {
        file.addHeader(serialNo++, audioHeader(tag));
    }
    file.addData(10, 1, {0x01});
    collect(file);
    EXPECT_EQ(mStreams->size(), 13U);
    EXPECT_THAT(mEvents.linesBeginning("pageOffset="), IsEmpty());
    EXPECT_THAT(mEvents.linesBeginning("collect type"), IsEmpty());
}

TEST_F(CodecConfigStreamsTest, MpegAudioIsLearntFromTheFirstPageWithTwoFrames) {
    OgmFile file = audioFile();
    const Bytes frame = MpegAudioFrame{}.bytes();
    const OggPage page = OggPage(kAudio).granule(2304).packet(audioPacket(joined({frame, frame})));
    const size_t offset = file.add(page);
    collect(file);

    const auto size = static_cast<int>(page.size() - page.bodyOffset());
    const auto said = [](std::string text) {
        return LogLine{ANDROID_LOG_INFO, "avc_utils", std::move(text)};
    };
    std::vector<Event> expected{infoLine("MPEG audio, type:1,serialNo=2")};
    addPageEvents(expected, offset, page);
    addPayloadEvents(expected, offset, page);
    expected.emplace_back(growthLine(65536));
    expected.emplace_back(said("mp3 header1: FF FB 90 40"));
    expected.emplace_back(
            said(formatted("mp3 frame size=417, frame header offset=3,buff size=%d", size)));
    expected.emplace_back(said("mp3 header2: FF FB 90 40"));
    expected.emplace_back(
            said(formatted("mp3 header3: 40 %2X %2X %2X", frame[4], frame[5], frame[6])));
    addLines(expected, {"mp3Header:fffb9040", "layer = 3\n", "parse CSD data done!"});
    EXPECT_THAT(mEvents.events(), ElementsAreArray(expected));
}

TEST_F(CodecConfigStreamsTest, AFirstPageWithLessThanTwoFramesIsCompletedByTheSecond) {
    OgmFile file = audioFile();
    const Bytes frame = MpegAudioFrame{}.bytes();
    file.addData(kAudio, 1152, audioPacket(frame));
    file.addData(kAudio, 2304, audioPacket(frame));
    collect(file);
    EXPECT_EQ(mEvents.count(warningLine("Not get mMP3Header, size:420")), 1U);
    EXPECT_TRUE(mEvents.holds(infoLine("parse CSD data done!")));
    EXPECT_EQ(int32Of(formatAt(0), AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), 3);
}

TEST_F(CodecConfigStreamsTest, MpegAudioOfTheOtherTagIsNamedByItsType) {
    OgmFile file = audioFile("0050");
    file.addData(kAudio, 1, {0x01});
    collect(file);
    EXPECT_TRUE(mEvents.holds(infoLine("MPEG audio, type:6,serialNo=2")));
    EXPECT_TRUE(mEvents.holds(errorLine("invalid size:1")));
    EXPECT_EQ(mEvents.lines().back(), failure(6, -10006));
}

TEST_F(CodecConfigStreamsTest, AudioPagesWithoutAHeaderAreSearchedUpToThe121st) {
    OgmFile file = audioFile();
    for (uint64_t i = 1; i <= kMaxPages + 9; ++i) {
        file.addData(kAudio, i, audioPacket(pattern(50, 1)));
    }
    collect(file);
    EXPECT_EQ(mEvents.linesBeginning("Not get mMP3Header, size:").size(), kMaxPages);
    EXPECT_EQ(mEvents.lines().back(), failure(1, -10001));
    EXPECT_EQ(stringOf(formatAt(0), AMEDIAFORMAT_KEY_MIME), MEDIA_MIMETYPE_AUDIO_MPEG);
}

TEST_F(CodecConfigStreamsTest, MoreThan131072BytesWithoutAHeaderAreAnErrorAndKept) {
    OgmFile file = audioFile();
    const Bytes frame = MpegAudioFrame{}.bytes();
    for (uint64_t i = 1; i <= 3; ++i) {
        file.addData(kAudio, i, audioPacket(pattern(50000, 1)));
    }
    file.addData(kAudio, 4, audioPacket(joined({frame, frame})));
    collect(file);
    EXPECT_TRUE(mEvents.holds(warningLine("Not get mMP3Header, size:100006")));
    EXPECT_EQ(mEvents.count(errorLine("findMP3Header fail size>131072, skip this buffer")), 1U);
    EXPECT_EQ(mEvents.linesBeginning("mp3 frame size=417, frame header offset=150012").size(), 1U);
    EXPECT_EQ(int32Of(formatAt(0), AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), 3);
}

TEST_F(CodecConfigStreamsTest, AStreamThatFailsDoesNotKeepTheNextFromBeingSearched) {
    OgmFile file = videoFile();
    file.addHeader(kAudio, audioHeader("0055"));
    const Bytes frame = MpegAudioFrame{}.bytes();
    file.addData(kVideo, 1, dataPacket(kSyncPacket, vol()));
    file.addData(kAudio, 1, audioPacket(joined({frame, frame})));
    collect(file);
    EXPECT_TRUE(mEvents.holds(failure(18, -10006)));
    EXPECT_TRUE(mEvents.holds(infoLine("parse CSD data done!")));
    EXPECT_EQ(int32Of(formatAt(1), AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), 3);
}

}  // namespace
}  // namespace android::ogm::test::codec_config_streams_test
