// SPDX-License-Identifier: Apache-2.0
#include "stream/Duration.h"

#include <limits>

#include "PagesTest.h"
#include "stream/HeaderPages.h"

namespace android::ogm::test::duration_test {
namespace {

using ::testing::ElementsAre;

constexpr int64_t kTailSize = 650520;
constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;

class DurationTest : public PagesTest {
  protected:
    /** The duration that is found; events before the scan are not recorded. */
    int64_t scan(const OgmFile& file, std::optional<int64_t> reportedSize = std::nullopt) {
        auto source = std::make_unique<MemorySource>(file.bytes(), &mEvents);
        source->setReportedSize(reportedSize.value_or(static_cast<int64_t>(file.size())));
        StreamTable streams;
        parseHeaderPages(openPages(std::move(source)), &streams);
        mEvents.clear();
        return parseMaxTime(*mPages, streams);
    }

    /** The same with a scan from `start` on: the source reports `start` plus the tail as its size.
     */
    int64_t scanFrom(int64_t start, const OgmFile& file) { return scan(file, start + kTailSize); }

    static OgmFile videoFile() {
        OgmFile file;
        file.addHeader(kVideo, VideoHeader());
        return file;
    }

    static OgmFile audioFile(uint64_t sampleRate) {
        AudioHeader header;
        header.samplesPerUnit = sampleRate;
        OgmFile file;
        file.addHeader(kAudio, header);
        return file;
    }
};

TEST_F(DurationTest, AFileShorterThanTheTailIsScannedFromANegativeOffsetAndHasNoDuration) {
    OgmFile file = videoFile();
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scan(file), 0);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("parseMaxTime: mDataSourceSize=110, searchOffset=-650410"),
                            errorLine("FindPage: readSize = -2147483648"),
                            infoLine("parseMaxTime:Cannot find a page start, from -650410\n"),
                            infoLine("File duration is 0 us")));
    EXPECT_EQ(mEvents.reads().back(), (ReadCall{-650410, 4, kReadRefused}));
}

TEST_F(DurationTest, AFileOfExactlyTheTailIsScannedFromItsStart) {
    OgmFile file = videoFile();
    while (file.size() + 65307 + 27 < static_cast<size_t>(kTailSize)) {
        file.add(OggPage(kVideo).granule(250).openPacket(filled(kFullPageBody, 1)));
    }
    // The last page, of segments of 255 bytes and a shorter one, fills the file to its size.
    const size_t rest = static_cast<size_t>(kTailSize) - file.size();
    const size_t segments = (rest - kPageHeaderSize + 255) / 256;
    file.add(OggPage(kVideo).granule(251).packet(filled(rest - kPageHeaderSize - segments, 1)));
    ASSERT_EQ(file.size(), static_cast<size_t>(kTailSize));
    EXPECT_EQ(scan(file), 251 * 40000);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("parseMaxTime: mDataSourceSize=650520, searchOffset=0"),
                            infoLine("File duration is 10040000 us")));
}

TEST_F(DurationTest, OnlyTheTailIsScanned) {
    OgmFile file = videoFile();
    const auto early = static_cast<int64_t>(file.addData(kVideo, 5000, {0}));
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scanFrom(early, file), 5000 * 40000);
    EXPECT_EQ(scanFrom(early + 1, file), 100 * 40000);
    EXPECT_TRUE(
            mEvents.holds(infoLine("*** Skip 28 bytes of junk from 82 to reach page start ***\n")));
}

TEST_F(DurationTest, TheScanReadsOnlyPageHeadersAndEndsAtTheEndOfTheData) {
    OgmFile file = videoFile();
    file.addData(kVideo, 100, filled(50, 1));
    scanFrom(81, file);
    EXPECT_EQ(mEvents.events(),
              (std::vector<Event>{infoLine("parseMaxTime: mDataSourceSize=650601, searchOffset=81"),
                                  ReadCall{81, 4, 4}, ReadCall{81, 27, 27}, ReadCall{108, 1, 1},
                                  ReadCall{159, 4, 0}, errorLine("FindPage: readSize = 0"),
                                  infoLine("parseMaxTime:Cannot find a page start, from 159\n"),
                                  infoLine("File duration is 4000000 us")}));
}

TEST_F(DurationTest, TheLargestTimeOfAllStreamsIsTheDuration) {
    AudioHeader audio;
    audio.samplesPerUnit = 48000;
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addHeader(kAudio, audio);
    file.addData(kVideo, 3000, {0});     // 120 s
    file.addData(kAudio, 5759040, {0});  // 119.98 s
    EXPECT_EQ(scanFrom(0, file), 120000000);
    file.addData(kAudio, 5760048, {0});
    EXPECT_EQ(scanFrom(0, file), 120001000);
}

TEST_F(DurationTest, AVideoGranuleOfAllOnesIsConvertedLikeAnyOther) {
    OgmFile file = videoFile();
    file.addData(kVideo, kNoGranule, {0});
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scanFrom(0, file), 1844674407370915161);
}

TEST_F(DurationTest, AnAudioGranuleOfAllOnesIsConvertedLikeAnyOther) {
    OgmFile file = audioFile(44100);
    file.addData(kAudio, kNoGranule, {0});
    EXPECT_EQ(scanFrom(0, file), 418293516410624);
}

TEST_F(DurationTest, TimesAreComparedAsSignedNumbers) {
    // At one sample per second this granule position gives a time whose top bit is set.
    OgmFile file = audioFile(1);
    file.addData(kAudio, 10000000000000, {0});
    file.addData(kAudio, 7, {0});
    EXPECT_EQ(scanFrom(0, file), 7000000);
}

TEST_F(DurationTest, WithoutASampleRateAnAudioTimeIsZero) {
    OgmFile file = audioFile(0);
    file.addData(kAudio, 44100, {0});
    EXPECT_EQ(scanFrom(0, file), 0);
}

TEST_F(DurationTest, AVideoTimeUnitIsUsedWithAll64Bits) {
    VideoHeader header;
    header.timeUnit = 0x100000000;
    OgmFile file;
    file.addHeader(kVideo, header);
    file.addData(kVideo, 10, {0});
    EXPECT_EQ(scanFrom(0, file), 0x100000000);
}

TEST_F(DurationTest, PagesOfStreamsWithoutTrackAreLoggedAndPassedOver) {
    OgmFile file = videoFile();
    file.addData(0xFFFFFFFE, 99999, {0});
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scanFrom(81, file), 4000000);
    EXPECT_EQ(
            mEvents.count(errorLine("parseMaxTime: This logic stream[-2] is not exist in mTracks")),
            1U);
}

TEST_F(DurationTest, JunkIsSkippedAndCounted) {
    OgmFile file = videoFile();
    file.addJunk(6);
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scanFrom(81, file), 4000000);
    EXPECT_TRUE(
            mEvents.holds(infoLine("*** Skip 6 bytes of junk from 81 to reach page start ***\n")));
}

TEST_F(DurationTest, APageThatCannotBeReadEndsTheScanWithTheDurationSoFar) {
    OgmFile file = videoFile();
    file.addData(kVideo, 100, {0});
    file.add(OggPage(kVideo).granule(9999).flags(0x40));
    file.addData(kVideo, 200, {0});
    EXPECT_EQ(scanFrom(81, file), 4000000);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("parseMaxTime: mDataSourceSize=650601, searchOffset=81"),
                           infoLine("Flag only bits 0-2 are defined in version 0\n"),
                           infoLine("parseMaxTime:Cannot read a page header, at 110\n"),
                           infoLine("File duration is 4000000 us")}));
}

TEST_F(DurationTest, OfTwoStreamsWithOneSerialNumberTheFirstOneIsUsed) {
    OgmFile file;
    file.addHeader(5, VideoHeader());
    file.addHeader(5, AudioHeader());
    file.addData(5, 8000, {0});
    EXPECT_EQ(scanFrom(0, file), 8000 * 40000);
}

TEST_F(DurationTest, ASizeSoNegativeThatTheTailBeginsAfterItGivesNoScan) {
    EXPECT_EQ(scan(videoFile(), std::numeric_limits<int64_t>::min()), 0);
    EXPECT_EQ(mEvents.events(),
              (std::vector<Event>{infoLine("parseMaxTime: mDataSourceSize=-9223372036854775808, "
                                           "searchOffset=9223372036854125288"),
                                  infoLine("File duration is 0 us")}));
}

TEST_F(DurationTest, ASizeOfZeroGivesNoDuration) {
    OgmFile file = videoFile();
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scan(file, 0), 0);
}

using LogicStreamTypeTest = LogTest;

TEST_F(LogicStreamTypeTest, TypesOneToNineAreAudioAnd16To26AreVideo) {
    for (uint32_t type = 1; type <= 9; ++type) {
        EXPECT_EQ(getLogicStrmType(type), LogicStreamType::kAudio) << type;
    }
    for (uint32_t type = 16; type <= 26; ++type) {
        EXPECT_EQ(getLogicStrmType(type), LogicStreamType::kVideo) << type;
    }
    EXPECT_TRUE(mEvents.events().empty());
}

class UnknownLogicTypeTest : public LogTest, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(UnknownLogicTypeTest, IsLoggedAsAnError) {
    EXPECT_EQ(getLogicStrmType(GetParam()), LogicStreamType::kUnknown);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{errorLine(formatted("getLogicStrmType:[%d]unknow LOGIC STREAM TYPE!",
                                               static_cast<int>(GetParam())))}));
}

INSTANTIATE_TEST_SUITE_P(Types, UnknownLogicTypeTest,
                         ::testing::Values(0U, 10U, 15U, 27U, 30U, 0xFFFFFFFFU));

}  // namespace
}  // namespace android::ogm::test::duration_test
