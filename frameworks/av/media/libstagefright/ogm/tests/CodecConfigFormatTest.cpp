// SPDX-License-Identifier: Apache-2.0
#include "ChildProcess.h"
#include "CodecConfigFixture.h"

namespace android::ogm::test {
namespace {

using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

/** What a stream's format gains while the file is opened. */
using CodecConfigFormatTest = CodecConfigFixture;

TEST_F(CodecConfigFormatTest, BytesWithoutAStartCodeNeverLetTheFileOpen) {
    OgmFile file = videoFile();
    file.addData(kVideo, 1, dataPacket(kPlainPacket, pattern(257, 1)));
    OgmFile shorter = videoFile();
    shorter.addData(kVideo, 1, dataPacket(kPlainPacket, pattern(256, 1)));
    constexpr std::chrono::milliseconds kLimit(300);
    EXPECT_EQ(runInChild([&] { open(file); }, kLimit), outOfTime());
    EXPECT_EQ(runInChild([&] { open(shorter); }, kLimit), returned());
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

TEST_F(CodecConfigFormatTest, TheFormatOfTheFirstStreamWithTheSerialNumberGetsTheConfiguration) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader{});  // H.264, under the same number
    VideoHeader header;
    header.subtype = "FMP4";
    file.addHeader(kVideo, header);
    file.addData(kVideo, 1, wholeConfiguration());
    const OpenedFile opened = open(file);
    EXPECT_EQ(configurationOf(opened, 0), vol());
    EXPECT_EQ(esdsOf(opened, 1), std::nullopt);
}

TEST_F(CodecConfigFormatTest, TheSizeOfThePictureStaysThatOfTheStreamHeader) {
    OgmFile file = videoFile();
    file.addData(kVideo, 1, wholeConfiguration());
    const Format format = open(file).extractor.trackFormat(0);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), 320);
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_HEIGHT), 240);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), MEDIA_MIMETYPE_VIDEO_MPEG4);
}

TEST_F(CodecConfigFormatTest, AFileWithoutDataPagesIsSearchedFromItsBeginning) {
    OgmFile file = videoFile();
    const OpenedFile opened = open(file);
    const auto pages = mEvents.linesBeginning("pageOffset=");
    EXPECT_THAT(pages, ::testing::ElementsAre(pageLine(0, file.size())));
    EXPECT_EQ(mEvents.lines().back(), failure(18, -10006));
}

TEST_F(CodecConfigFormatTest, OnlyMpeg4VideoAndMpegAudioAreSearched) {
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
    EXPECT_EQ(open(file).extractor.countTracks(), 13u);
    EXPECT_THAT(mEvents.linesBeginning("pageOffset="), IsEmpty());
    EXPECT_THAT(mEvents.linesBeginning("collect type"), IsEmpty());
}

TEST_F(CodecConfigFormatTest, MpegAudioIsLearntFromTheFirstPageWithTwoFrames) {
    OgmFile file = audioFile();
    const Bytes frame = MpegAudioFrame{}.bytes();
    const OggPage page = OggPage(kAudio).granule(2304).packet(audioPacket(joined({frame, frame})));
    const size_t offset = file.add(page);
    const OpenedFile opened = open(file);

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
    EXPECT_THAT(audioEvents(), ElementsAreArray(expected));
}

TEST_F(CodecConfigFormatTest, AFirstPageWithLessThanTwoFramesIsCompletedByTheSecond) {
    OgmFile file = audioFile();
    const Bytes frame = MpegAudioFrame{}.bytes();
    file.addData(kAudio, 1152, audioPacket(frame));
    file.addData(kAudio, 2304, audioPacket(frame));
    const OpenedFile opened = open(file);
    EXPECT_EQ(mEvents.count(warningLine("Not get mMP3Header, size:420")), 1u);
    EXPECT_TRUE(mEvents.holds(infoLine("parse CSD data done!")));
    EXPECT_EQ(opened.extractor.trackFormat(0).int32(AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), 3);
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

TEST_F(CodecConfigFormatTest, MpegAudioOfTheOtherTagIsNamedByItsType) {
    OgmFile file = audioFile("0050");
    file.addData(kAudio, 1, {0x01});
    const OpenedFile opened = open(file);
    EXPECT_TRUE(mEvents.holds(infoLine("MPEG audio, type:6,serialNo=2")));
    EXPECT_TRUE(mEvents.holds(errorLine("invalid size:1")));
    EXPECT_EQ(mEvents.lines().back(), failure(6, -10006));
}

TEST_F(CodecConfigFormatTest, AudioPagesWithoutAHeaderAreSearchedUpToThe121st) {
    OgmFile file = audioFile();
    for (uint64_t i = 1; i <= kMaxPages + 9; ++i) {
        file.addData(kAudio, i, audioPacket(pattern(50, 1)));
    }
    const OpenedFile opened = open(file);
    EXPECT_EQ(mEvents.linesBeginning("Not get mMP3Header, size:").size(), kMaxPages);
    EXPECT_EQ(mEvents.lines().back(), failure(1, -10001));
    EXPECT_EQ(opened.extractor.trackFormat(0).string(AMEDIAFORMAT_KEY_MIME),
              MEDIA_MIMETYPE_AUDIO_MPEG);
}

TEST_F(CodecConfigFormatTest, MoreThan131072BytesWithoutAHeaderAreAnErrorAndKept) {
    OgmFile file = audioFile();
    const Bytes frame = MpegAudioFrame{}.bytes();
    for (uint64_t i = 1; i <= 3; ++i) {
        file.addData(kAudio, i, audioPacket(pattern(50000, 1)));
    }
    file.addData(kAudio, 4, audioPacket(joined({frame, frame})));
    const OpenedFile opened = open(file);
    EXPECT_TRUE(mEvents.holds(warningLine("Not get mMP3Header, size:100006")));
    EXPECT_EQ(mEvents.count(errorLine("findMP3Header fail size>131072, skip this buffer")), 1u);
    EXPECT_EQ(mEvents.linesBeginning("mp3 frame size=417, frame header offset=150012").size(), 1u);
    EXPECT_EQ(opened.extractor.trackFormat(0).int32(AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), 3);
}

TEST_F(CodecConfigFormatTest, AStreamThatFailsDoesNotKeepTheNextFromBeingSearched) {
    OgmFile file = videoFile();
    file.addHeader(kAudio, audioHeader("0055"));
    const Bytes frame = MpegAudioFrame{}.bytes();
    file.addData(kVideo, 1, dataPacket(kSyncPacket, vol()));
    file.addData(kAudio, 1, audioPacket(joined({frame, frame})));
    const OpenedFile opened = open(file);
    EXPECT_TRUE(mEvents.holds(failure(18, -10006)));
    EXPECT_TRUE(mEvents.holds(infoLine("parse CSD data done!")));
    EXPECT_EQ(opened.extractor.trackFormat(1).int32(AMEDIAFORMAT_KEY_MPEG_AUD_LAYER), 3);
}

}  // namespace
}  // namespace android::ogm::test
