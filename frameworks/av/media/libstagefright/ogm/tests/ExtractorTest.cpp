// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "PluginTest.h"
#include "ScopedProperty.h"

namespace android::ogm::test {
namespace {

using ::testing::ElementsAre;

constexpr uint32_t kVideoSerialNo = 7;
constexpr uint32_t kAudioSerialNo = 3;
constexpr uint32_t kExtensiveMetaData = 1;

class ExtractorTest : public PluginTest {
  protected:
    /** Header pages of a video and an audio stream, then a data page of each. */
    static OgmFile twoStreams() {
        OgmFile file;
        file.addHeader(kVideoSerialNo, VideoHeader());
        file.addHeader(kAudioSerialNo, AudioHeader());
        file.addData(kVideoSerialNo, 1, dataPacket(kSyncPacket, pattern(20, 1)));
        file.addData(kAudioSerialNo, 320, audioPacket(pattern(20, 2)));
        return file;
    }
};

TEST_F(ExtractorTest, OpeningAFileWithOneHeaderPageLogsAndReadsExactlyThis) {
    OgmFile file;
    file.addHeader(kVideoSerialNo, VideoHeader());
    open(file);
    const std::vector<Event> opening{
            // The header pages.
            ReadCall{0, 4, 4}, ReadCall{0, 4, 4}, ReadCall{0, 27, 27}, ReadCall{27, 1, 1},
            debugLine("currPage.mNumSegments =1, pageDataSize =53"), ReadCall{28, 53, 53},
            infoLine("Verify Header 01 76 69 64 65 6F\n"),
            infoLine("Begin parse Video stream info"), infoLine("Video - H264 Codec \n"),
            infoLine("Width = 320, Height = 240"), infoLine("FrameRate = 25"),
            infoLine("size = 53"), infoLine("default_len = 1"), infoLine("buffer_size = 0"),
            infoLine("padding = 0"), infoLine("SerialNo = 7"),
            // Both searches for the next page meet the end.
            ReadCall{81, 4, 0}, errorLine("FindPage: readSize = 0"), ReadCall{81, 4, 0},
            errorLine("FindPage: readSize = 0"),
            infoLine("Cannot find a page start,LINE:2774 from 81\n"),
            // The duration.
            infoLine("parseMaxTime: mDataSourceSize=81, searchOffset=-650439"),
            ReadCall{-650439, 4, kReadRefused}, errorLine("FindPage: readSize = -2147483648"),
            infoLine("parseMaxTime:Cannot find a page start, from -650439\n"),
            infoLine("File duration is 0 us"),
            // The extractor is freed again.
            infoLine("~OgmExtractor")};
    EXPECT_EQ(mEvents.events(), opening);
}

TEST_F(ExtractorTest, TheVerboseLogPropertyChangesNothing) {
    open(twoStreams());
    const std::vector<Event> before = mEvents.events();
    mEvents.clear();
    const ScopedProperty verbose("vendor.zor.ogm.verbose.log", "1");
    open(twoStreams());
    EXPECT_EQ(mEvents.events(), before);
}

TEST_F(ExtractorTest, AVorbisStreamBesideAVideoStreamGivesOneTrack) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addHeader(2, vorbisIdentificationHeader());
    OpenedFile opened = openQuietly(file);
    EXPECT_EQ(opened->countTracks(), 1U);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Extractor return countTrackers = 1\n")));
}

TEST_F(ExtractorTest, AFileWithATextStreamAloneHasNoTracks) {
    OgmFile file;
    file.addHeader(1, textHeader());
    OpenedFile opened = openQuietly(file);
    EXPECT_EQ(opened->countTracks(), 0U);
    EXPECT_EQ(opened->track(0), nullptr);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Extractor return countTrackers = 0\n"),
                                             infoLine("getTrack index = 0")));
}

TEST_F(ExtractorTest, ARefusedHeaderDoesNotStopTheOthers) {
    OgmFile file;
    file.addHeader(1, textHeader());
    file.addHeader(2, AudioHeader());
    EXPECT_EQ(open(file)->countTracks(), 1U);
}

TEST_F(ExtractorTest, AHeaderPageAmongTheFirst121PagesMakesATrackAfterDataPagesToo) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    for (uint64_t page = 1; page < 120; ++page) {
        file.addData(1, page, dataPacket(kPlainPacket, pattern(5, 1)));
    }
    file.addHeader(2, AudioHeader());  // the 121st
    EXPECT_EQ(open(file)->countTracks(), 2U);
}

TEST_F(ExtractorTest, AHeaderPageAfterTheFirst121PagesMakesNoTrack) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    for (uint64_t page = 1; page < 121; ++page) {
        file.addData(1, page, dataPacket(kPlainPacket, pattern(5, 1)));
    }
    file.addHeader(2, AudioHeader());  // the 122nd
    EXPECT_EQ(open(file)->countTracks(), 1U);
    EXPECT_TRUE(mEvents.linesBeginning("Cannot find a page start,LINE:2774").empty());
}

TEST_F(ExtractorTest, TheFirstDataPageIsTheFirstThatBeginsNoStream) {
    const OgmFile file = twoStreams();
    open(file);
    EXPECT_THAT(mEvents.linesBeginning("mFirstDataPageOffset"),
                ElementsAre(infoLine("mFirstDataPageOffset = 162")));
}

TEST_F(ExtractorTest, WithJunkInFrontTheFirstDataPageOffsetIsWhereTheJunkBegins) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addJunk(9);
    file.addData(1, 1, dataPacket(kSyncPacket, pattern(20, 1)));
    open(file);
    const LogLine skip = infoLine("*** Skip 9 bytes of junk from 81 to reach page start ***\n");
    EXPECT_THAT(mEvents.linesBeginning("mFirstDataPageOffset"),
                ElementsAre(infoLine("mFirstDataPageOffset = 81")));
    EXPECT_EQ(mEvents.count(skip), 2U);  // each of the two searches says so
}

TEST_F(ExtractorTest, TheFirstDataPageCountsAtOffsetZeroToo) {
    OgmFile file;
    file.addData(1, 1, {1});
    file.addData(1, 2, {2});
    open(file);
    EXPECT_THAT(mEvents.linesBeginning("mFirstDataPageOffset"),
                ElementsAre(infoLine("mFirstDataPageOffset = 0")));
}

TEST_F(ExtractorTest, TheBodyOfAHeaderPageBehindJunkIsReadWithoutTheSkip) {
    OgmFile file;
    file.addJunk(5);
    file.addHeader(1, VideoHeader());
    OpenedFile opened = open(file);
    const std::vector<ReadCall> reads = mEvents.reads();
    EXPECT_NE(std::find(reads.begin(), reads.end(), ReadCall{28, 53, 53}), reads.end());
    EXPECT_EQ(opened->countTracks(), 0U);  // the five bytes too early hold no header
}

TEST_F(ExtractorTest, AHeaderPageWithoutItsWholeBodyEndsTheHeaderPages) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    const size_t second = file.addHeader(2, AudioHeader());
    file.addHeader(3, AudioHeader());
    auto source = sourceOf(file);
    source->setFault(faultAtOffset(static_cast<int64_t>(second) + 28, 52));
    OpenedFile opened = open(std::move(source));
    EXPECT_TRUE(mEvents.holds(errorLine("Cannot read page data, size 53\n")));
    EXPECT_TRUE(mEvents.linesBeginning("Cannot find a page start,LINE:2774").empty());
    EXPECT_EQ(opened->countTracks(), 1U);
}

TEST_F(ExtractorTest, AHeaderPageThatCannotBeReadEndsTheHeaderPages) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addJunk(2);
    file.add(OggPage(2).version(1));
    file.addHeader(3, AudioHeader());
    OpenedFile opened = open(file);
    EXPECT_TRUE(mEvents.holds(infoLine("Cannot read a page header, at 83\n")));
    EXPECT_EQ(opened->countTracks(), 1U);
}

TEST_F(ExtractorTest, WhereTwoStreamsCarryOneSerialNumberBothAreListed) {
    OgmFile file;
    file.addHeader(5, VideoHeader());
    file.addHeader(5, AudioHeader());
    EXPECT_EQ(open(file)->countTracks(), 2U);
}

TEST_F(ExtractorTest, TheFileFormatIsOgmVideoEvenWithoutVideo) {
    OgmFile file;
    file.addHeader(1, AudioHeader());
    const Format format = open(file)->fileFormat();
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "video/ogm");
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_DURATION), 0);
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), 0);
}

TEST_F(ExtractorTest, TheFlagsAllowPausingAndSeeking) {
    EXPECT_EQ(open(twoStreams())->flags(), 15U);
}

TEST_F(ExtractorTest, NameAndContentProtectionAreThoseOfThePlatform) {
    OpenedFile opened = open(twoStreams());
    EXPECT_STREQ(opened->name(), "<unspecified>");
    EXPECT_EQ(opened->setMediaCas(), AMEDIA_ERROR_INVALID_OPERATION);
}

TEST_F(ExtractorTest, ATrackIndexEqualToTheCountHasNoFormat) {
    OpenedFile opened = openQuietly(twoStreams());
    const Format format;
    EXPECT_EQ(opened->getTrackMetaData(format, 2), AMEDIA_ERROR_UNKNOWN);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("Extractor return getTrackerMetaData index = 2\n"),
                            errorLine("getTrackMetaData,invalid index[2]")));
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), std::nullopt);
}

TEST_F(ExtractorTest, ATrackFormatIsCopiedWithItsMimeType) {
    OpenedFile opened = openQuietly(twoStreams());
    const Format format;
    EXPECT_EQ(opened->getTrackMetaData(format, 0), AMEDIA_OK);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "video/avc");
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), std::nullopt);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("Extractor return getTrackerMetaData index = 0\n"),
                            infoLine("getTrackMetaData mime:video/avc")));
}

TEST_F(ExtractorTest, OnlyTheFirstRequestForExtensiveMetaDataSetsTheThumbnailTime) {
    OpenedFile opened = openQuietly(twoStreams());
    const Format first;
    const Format second;
    EXPECT_EQ(opened->getTrackMetaData(first, 1, kExtensiveMetaData), AMEDIA_OK);
    EXPECT_EQ(opened->getTrackMetaData(second, 0, kExtensiveMetaData), AMEDIA_OK);
    EXPECT_EQ(first.int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), 0);
    EXPECT_EQ(second.int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), std::nullopt);
    EXPECT_EQ(opened->trackFormat(1).int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), 0);
    EXPECT_EQ(mEvents.count(infoLine("getTrackMetaData, set thumbnail time")), 1U);
    EXPECT_EQ(firstEvents(3),
              (std::vector<Event>{infoLine("Extractor return getTrackerMetaData index = 1\n"),
                                  infoLine("getTrackMetaData mime:audio/raw"),
                                  infoLine("getTrackMetaData, set thumbnail time")}));
}

TEST_F(ExtractorTest, OtherFlagBitsDoNotSetTheThumbnailTime) {
    OpenedFile opened = openQuietly(twoStreams());
    const Format format;
    EXPECT_EQ(opened->getTrackMetaData(format, 0, ~kExtensiveMetaData), AMEDIA_OK);
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), std::nullopt);
}

TEST_F(ExtractorTest, GettingAVideoTrackLogsItsTiming) {
    OpenedFile opened = openQuietly(twoStreams());
    const auto track = opened->track(0);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("getTrack index = 0"),
                            infoLine("getTrack: isVideo type[22],frameRate =25, TimeUnit=400000"),
                            infoLine("getTrack mSerialNo = 7")));
}

TEST_F(ExtractorTest, GettingAnAudioTrackLogsItsSampleRate) {
    OpenedFile opened = openQuietly(twoStreams());
    const auto track = opened->track(1);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("getTrack index = 1"),
                                             infoLine("getTrack: isAudio type[5],sampleRate =8000"),
                                             infoLine("getTrack mSerialNo = 3")));
}

TEST_F(ExtractorTest, GettingAnMpegAudioTrackSwitchesItsFramingOn) {
    AudioHeader mp3;
    mp3.subtype = "0055";
    OgmFile file;
    file.addHeader(1, mp3);
    OpenedFile opened = openQuietly(file);
    const auto track = opened->track(0);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("getTrack index = 0"),
                                             LogLine{ANDROID_LOG_ERROR, "OgmEsqueue",
                                                     "set  mDequeueMpegAudioOgm :1\n"},
                                             infoLine("getTrack: isAudio type[1],sampleRate =8000"),
                                             infoLine("getTrack mSerialNo = 1")));
}

TEST_F(ExtractorTest, TheFirstTrackCreatedIsTheSelectedOneAndLaterOnesAreNot) {
    OpenedFile opened = open(twoStreams());
    const auto first = opened->track(0);
    const auto second = opened->track(1);
    mEvents.clear();
    second->stop();
    EXPECT_TRUE(mEvents.holds(infoLine("trackStop:serialNo=3, mSelectedSerialNo=7")));
}

TEST_F(ExtractorTest, DestroyingTheExtractorLogsIt) {
    {
        OpenedFile opened = open(twoStreams());
        mEvents.clear();
    }
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("~OgmExtractor")));
}

TEST_F(ExtractorTest, TheSizeIsZeroWhenItCannotBeHad) {
    auto source = sourceOf(twoStreams());
    source->setSizeStatus(UNKNOWN_ERROR);
    OpenedFile opened = open(std::move(source));
    EXPECT_TRUE(mEvents.holds(infoLine("parseMaxTime: mDataSourceSize=0, searchOffset=-650520")));
    EXPECT_EQ(opened->countTracks(), 2U);
}

}  // namespace
}  // namespace android::ogm::test
