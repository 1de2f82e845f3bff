// SPDX-License-Identifier: Apache-2.0
#include <limits>
#include <optional>

#include "PluginTest.h"

namespace android::ogm::test {
namespace {

using ::testing::ElementsAre;

constexpr int64_t kTailSize = 650520;
constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;

/**
 * A small file is scanned from `start` on when its source claims to be `start` and the length of
 * the tail long.
 */
class DurationTest : public PluginTest {
  protected:
    OpenedFile openScanned(const OgmFile& file, int64_t start = 0) {
        auto source = sourceOf(file);
        source->setReportedSize(start + kTailSize);
        return open(std::move(source));
    }

    std::optional<int64_t> scannedDuration(const OgmFile& file, int64_t start = 0) {
        return openScanned(file, start)->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION);
    }

    /** The lines that were logged from the beginning of the scan to its end. */
    std::vector<LogLine> scanLines() {
        std::vector<LogLine> lines;
        for (const LogLine& line : mEvents.lines()) {
            const bool begins = line.text.find("parseMaxTime: mDataSourceSize") == 0;
            if (begins || !lines.empty()) {
                lines.push_back(line);
            }
            if (line.text.find("File duration") == 0) {
                break;
            }
        }
        return lines;
    }

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
    OpenedFile opened = open(file);
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
    EXPECT_THAT(scanLines(),
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
    // The last page brings the file to its size: segments of 255 bytes and one shorter.
    const size_t rest = static_cast<size_t>(kTailSize) - file.size();
    const size_t segments = (rest - kPageHeaderSize + 255) / 256;
    file.add(OggPage(kVideo).granule(251).packet(filled(rest - kPageHeaderSize - segments, 1)));
    ASSERT_EQ(file.size(), static_cast<size_t>(kTailSize));
    EXPECT_EQ(open(file)->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 251 * 40000);
    EXPECT_THAT(scanLines(),
                ElementsAre(infoLine("parseMaxTime: mDataSourceSize=650520, searchOffset=0"),
                            infoLine("File duration is 10040000 us")));
}

TEST_F(DurationTest, OnlyTheTailIsScanned) {
    OgmFile file = videoFile();
    const auto early = static_cast<int64_t>(file.addData(kVideo, 5000, {0}));
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scannedDuration(file, early), 5000 * 40000);
    EXPECT_EQ(scannedDuration(file, early + 1), 100 * 40000);
    EXPECT_TRUE(
            mEvents.holds(infoLine("*** Skip 28 bytes of junk from 82 to reach page start ***\n")));
}

TEST_F(DurationTest, TheScanReadsPageHeadersAloneAndEndsAtTheEndOfTheData) {
    OgmFile file = videoFile();
    file.addData(kVideo, 100, filled(50, 1));
    openScanned(file, 81);
    const std::vector<Event> scan{infoLine("parseMaxTime: mDataSourceSize=650601, searchOffset=81"),
                                  ReadCall{81, 4, 4},
                                  ReadCall{81, 27, 27},
                                  ReadCall{108, 1, 1},
                                  ReadCall{159, 4, 0},
                                  errorLine("FindPage: readSize = 0"),
                                  infoLine("parseMaxTime:Cannot find a page start, from 159\n"),
                                  infoLine("File duration is 4000000 us"),
                                  infoLine("~OgmExtractor")};
    std::vector<Event> events = mEvents.events();
    ASSERT_GE(events.size(), scan.size());
    events.erase(events.begin(), events.end() - static_cast<ptrdiff_t>(scan.size()));
    EXPECT_EQ(events, scan);
}

TEST_F(DurationTest, TheLargestTimeOfAllStreamsIsTheDuration) {
    AudioHeader audio;
    audio.samplesPerUnit = 48000;
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addHeader(kAudio, audio);
    file.addData(kVideo, 3000, {0});     // 120 s
    file.addData(kAudio, 5759040, {0});  // 119.98 s
    EXPECT_EQ(scannedDuration(file), 120000000);
    file.addData(kAudio, 5760048, {0});
    EXPECT_EQ(scannedDuration(file), 120001000);
}

TEST_F(DurationTest, TheDurationStandsInEveryTrackFormat) {
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addHeader(kAudio, AudioHeader());
    file.addData(kVideo, 3000, {0});
    OpenedFile opened = openScanned(file);
    EXPECT_EQ(opened->trackFormat(0).int64(AMEDIAFORMAT_KEY_DURATION), 120000000);
    EXPECT_EQ(opened->trackFormat(1).int64(AMEDIAFORMAT_KEY_DURATION), 120000000);
}

TEST_F(DurationTest, AVideoGranuleOfAllOnesIsConvertedLikeAnyOther) {
    OgmFile file = videoFile();
    file.addData(kVideo, kNoGranule, {0});
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scannedDuration(file), 1844674407370915161);
}

TEST_F(DurationTest, AnAudioGranuleOfAllOnesIsConvertedLikeAnyOther) {
    OgmFile file = audioFile(44100);
    file.addData(kAudio, kNoGranule, {0});
    EXPECT_EQ(scannedDuration(file), 418293516410624);
}

TEST_F(DurationTest, TimesAreComparedAsSignedNumbers) {
    // At one sample a second this granule position gives a time with the top bit set.
    OgmFile file = audioFile(1);
    file.addData(kAudio, 10000000000000, {0});
    file.addData(kAudio, 7, {0});
    EXPECT_EQ(scannedDuration(file), 7000000);
}

TEST_F(DurationTest, WithoutASampleRateAnAudioTimeIsZero) {
    OgmFile file = audioFile(0);
    file.addData(kAudio, 44100, {0});
    EXPECT_EQ(scannedDuration(file), 0);
}

TEST_F(DurationTest, AVideoTimeUnitCountsWithAll64Bits) {
    VideoHeader header;
    header.timeUnit = 0x100000000;
    OgmFile file;
    file.addHeader(kVideo, header);
    file.addData(kVideo, 10, {0});
    EXPECT_EQ(scannedDuration(file), 0x100000000);
}

TEST_F(DurationTest, PagesOfStreamsWithoutTrackAreLoggedAndPassedOver) {
    OgmFile file = videoFile();
    file.addData(0xFFFFFFFE, 99999, {0});
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scannedDuration(file, 81), 4000000);
    EXPECT_EQ(
            mEvents.count(errorLine("parseMaxTime: This logic stream[-2] is not exist in mTracks")),
            1U);
}

TEST_F(DurationTest, JunkIsSkippedAndCounted) {
    OgmFile file = videoFile();
    file.addJunk(6);
    file.addData(kVideo, 100, {0});
    EXPECT_EQ(scannedDuration(file, 81), 4000000);
    EXPECT_TRUE(
            mEvents.holds(infoLine("*** Skip 6 bytes of junk from 81 to reach page start ***\n")));
}

TEST_F(DurationTest, APageThatCannotBeReadEndsTheScanWithWhatWasFound) {
    OgmFile file = videoFile();
    file.addData(kVideo, 100, {0});
    file.add(OggPage(kVideo).granule(9999).flags(0x40));
    file.addData(kVideo, 200, {0});
    EXPECT_EQ(scannedDuration(file, 81), 4000000);
    EXPECT_EQ(scanLines(),
              (std::vector{infoLine("parseMaxTime: mDataSourceSize=650601, searchOffset=81"),
                           infoLine("Flag only bits 0-2 are defined in version 0\n"),
                           infoLine("parseMaxTime:Cannot read a page header, at 110\n"),
                           infoLine("File duration is 4000000 us")}));
}

TEST_F(DurationTest, WhereTwoStreamsCarryOneSerialNumberTheFirstOneCounts) {
    OgmFile file;
    file.addHeader(5, VideoHeader());
    file.addHeader(5, AudioHeader());
    file.addData(5, 8000, {0});
    EXPECT_EQ(scannedDuration(file), 8000 * 40000);
}

TEST_F(DurationTest, ASizeSoNegativeThatTheTailBeginsAfterItGivesNoScan) {
    auto source = sourceOf(videoFile());
    source->setReportedSize(std::numeric_limits<int64_t>::min());
    open(std::move(source));
    EXPECT_EQ(scanLines(),
              (std::vector{infoLine("parseMaxTime: mDataSourceSize=-9223372036854775808, "
                                    "searchOffset=9223372036854125288"),
                           infoLine("File duration is 0 us")}));
}

TEST_F(DurationTest, ASizeThatASourceStoresBeforeItFailsIsTakenAllTheSame) {
    auto source = sourceOf(videoFile());
    source->setReportedSize(-1);
    source->setSizeStatus(-1010);
    open(std::move(source));
    EXPECT_THAT(scanLines(),
                ElementsAre(infoLine("parseMaxTime: mDataSourceSize=-1, searchOffset=-650521"),
                            errorLine("FindPage: readSize = -2147483648"),
                            infoLine("parseMaxTime:Cannot find a page start, from -650521\n"),
                            infoLine("File duration is 0 us")));
}

TEST_F(DurationTest, ASizeOfZeroGivesNoDuration) {
    OgmFile file = videoFile();
    file.addData(kVideo, 100, {0});
    auto source = sourceOf(file);
    source->setReportedSize(0);
    EXPECT_EQ(open(std::move(source))->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
}

}  // namespace
}  // namespace android::ogm::test
