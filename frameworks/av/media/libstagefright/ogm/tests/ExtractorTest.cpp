// SPDX-License-Identifier: Apache-2.0
#include "PluginTest.h"
#include "ScopedProperty.h"

namespace android::ogm::test::extractor_test {
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
            // Both searches for the next page reach the end.
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

TEST_F(ExtractorTest, AVorbisStreamWithAVideoStreamGivesOneTrack) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addHeader(2, vorbisIdentificationHeader());
    OpenedFile opened = openQuietly(file);
    EXPECT_EQ(opened->countTracks(), 1U);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Extractor return countTrackers = 1\n")));
}

TEST_F(ExtractorTest, AFileWithOnlyATextStreamHasNoTracks) {
    OgmFile file;
    file.addHeader(1, textHeader());
    OpenedFile opened = openQuietly(file);
    EXPECT_EQ(opened->countTracks(), 0U);
    EXPECT_EQ(opened->track(0), nullptr);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Extractor return countTrackers = 0\n"),
                                             infoLine("getTrack index = 0")));
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

TEST_F(ExtractorTest, ARequestForExtensiveMetaDataSetsTheThumbnailTime) {
    OpenedFile opened = openQuietly(twoStreams());
    const Format format;
    EXPECT_EQ(opened->getTrackMetaData(format, 1, kExtensiveMetaData), AMEDIA_OK);
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_THUMBNAIL_TIME), 0);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("Extractor return getTrackerMetaData index = 1\n"),
                            infoLine("getTrackMetaData mime:audio/raw"),
                            infoLine("getTrackMetaData, set thumbnail time")));
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

TEST_F(ExtractorTest, ASampleRateOf2To31OrMoreIsLoggedAsANegativeOne) {
    AudioHeader header;
    header.samplesPerUnit = 0xFFFFFFFF;
    OgmFile file;
    file.addHeader(1, header);
    const auto track = open(file)->track(0);
    EXPECT_TRUE(mEvents.holds(infoLine("getTrack: isAudio type[5],sampleRate =-1")));
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

TEST_F(ExtractorTest, EveryFormatHasTheDuration) {
    OgmFile file = twoStreams();
    file.addData(kVideoSerialNo, 3000, {0});
    auto source = sourceOf(file);
    source->setReportedSize(650520);
    OpenedFile opened = open(std::move(source));
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 120000000);
    EXPECT_EQ(opened->trackFormat(0).int64(AMEDIAFORMAT_KEY_DURATION), 120000000);
    EXPECT_EQ(opened->trackFormat(1).int64(AMEDIAFORMAT_KEY_DURATION), 120000000);
}

TEST_F(ExtractorTest, ASizeThatASourceStoresBeforeItFailsIsUsed) {
    auto source = sourceOf(twoStreams());
    source->setReportedSize(-1);
    source->setSizeStatus(-1010);
    open(std::move(source));
    EXPECT_TRUE(mEvents.holds(infoLine("parseMaxTime: mDataSourceSize=-1, searchOffset=-650521")));
}

TEST_F(ExtractorTest, TheSizeIsZeroWhenItCannotBeHad) {
    auto source = sourceOf(twoStreams());
    source->setSizeStatus(UNKNOWN_ERROR);
    OpenedFile opened = open(std::move(source));
    EXPECT_TRUE(mEvents.holds(infoLine("parseMaxTime: mDataSourceSize=0, searchOffset=-650520")));
    EXPECT_EQ(opened->countTracks(), 2U);
}

}  // namespace
}  // namespace android::ogm::test::extractor_test
