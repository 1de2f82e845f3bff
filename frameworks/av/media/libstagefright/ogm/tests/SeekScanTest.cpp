// SPDX-License-Identifier: Apache-2.0
#include <cinttypes>

#include "Microseconds.h"
#include "PluginTest.h"
#include "SeekFiles.h"

namespace android::ogm::test::seek_scan_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int64_t kLeadUs = 3 * kSecond;

/** Where the scan of a seek begins, how it steps back and when it ends. */
class SeekScanTest : public PluginTest {
  protected:
    /** Opens a file and seeks its first track; afterwards the log has only the seek. */
    void seek(const OgmFile& file, int64_t timeUs) {
        OpenedFile opened = openQuietly(file);
        seek(opened, timeUs);
    }

    ReadResult seek(OpenedFile& opened, int64_t timeUs) {
        auto track = opened->startedTrack(0);
        mEvents.clear();
        return track->readAt(timeUs);
    }

    static bool begins(const Event& event, const char* text) {
        const auto* line = std::get_if<LogLine>(&event);
        return line != nullptr && line->text.rfind(text, 0) == 0;
    }

    /** The offsets at which pages were searched for, in the order of the steps back. */
    std::vector<int64_t> landings() const {
        std::vector<int64_t> offsets;
        bool expected = false;
        for (const Event& event : mEvents.events()) {
            if (const auto* read = std::get_if<ReadCall>(&event)) {
                if (expected) {
                    offsets.push_back(read->offset);
                }
                expected = false;
            } else {
                expected = begins(event, "OgmTrack:mSerialNo") ||
                           begins(event, "seekToTime, 2449") ||
                           begins(event, "mFirstDataPageOffset = ");
            }
        }
        return offsets;
    }

    struct Round {
        int64_t offset;
        int64_t reachedUs;
        int64_t targetUs;

        bool operator==(const Round& other) const {
            return offset == other.offset && reachedUs == other.reachedUs &&
                   targetUs == other.targetUs;
        }
        friend std::ostream& operator<<(std::ostream& stream, const Round& round) {
            return stream << "{from " << round.offset << ", reached " << round.reachedUs << ", of "
                          << round.targetUs << "}";
        }
    };

    /** What the line at the end of each step back says. */
    std::vector<Round> rounds() const {
        std::vector<Round> found;
        for (const LogLine& line : mEvents.linesBeginning("mFirstDataPageOffset = ")) {
            Round round{};
            const size_t from = line.text.find("searchOffset");
            EXPECT_EQ(
                    sscanf(line.text.c_str() + from,
                           "searchOffset=%" SCNd64 ",seekTimeUs=%" SCNd64 ",seekTargetUs=%" SCNd64,
                           &round.offset, &round.reachedUs, &round.targetUs),
                    3);
            found.push_back(round);
        }
        return found;
    }

    bool scannedFromTheStart() const {
        return mEvents.holds(infoLine("has search seek point from file beginning, Exit!"));
    }
};

TEST_F(SeekScanTest, TheEstimateDividesTheDataInProportionToTheTime) {
    seek(pacedAudioFile(1000), 20 * kSecond);
    // 17 of 40 seconds of 1,024,000 bytes, counted from the first data page.
    EXPECT_TRUE(mEvents.holds(infoLine("seekToTime, 2449, searchOffset=435281")));
    EXPECT_THAT(landings(), ElementsAre(435281 - 262144));
    EXPECT_THAT(rounds(), ElementsAre(Round{435281 - 262144, 17 * kSecond, 17 * kSecond}));
    EXPECT_FALSE(scannedFromTheStart());
}

TEST_F(SeekScanTest, TheLineOfEachStepNamesTheFileToo) {
    const OgmFile file = pacedAudioFile(1000);
    seek(file, 20 * kSecond);
    EXPECT_THAT(
            mEvents.linesBeginning("mFirstDataPageOffset"),
            ElementsAre(infoLine("mFirstDataPageOffset = 81,mDataSourceSize = 1024081,mDuration "
                                 "= 40000000,searchOffset=173137,seekTimeUs=17000000,"
                                 "seekTargetUs=17000000")));
}

TEST_F(SeekScanTest, FromTheMiddleOfAPageTheNextOneIsSearchedForByteByByte) {
    // From the estimate of 327,679 the scan steps back to 262,143, 82 bytes before page 256.
    seek(pacedAudioFile(1000), 15796797);
    EXPECT_TRUE(mEvents.holds(infoLine("seekToTime, 2449, searchOffset=327679")));
    EXPECT_THAT(landings(), ElementsAre(262143));
    const std::vector<ReadCall> reads = mEvents.reads();
    ASSERT_GT(reads.size(), 85U);
    for (int64_t i = 0; i <= 82; ++i) {
        EXPECT_EQ(reads[static_cast<size_t>(i)], (ReadCall{262143 + i, 4, 4}));
    }
    EXPECT_EQ(reads[83], (ReadCall{pageOffset(256), 27, 27}));
    EXPECT_EQ(reads[84], (ReadCall{pageOffset(256) + 27, 4, 4}));
    EXPECT_TRUE(mEvents.holds(
            infoLine("*** Skip 82 bytes of junk from 262143 to reach page start ***\n")));
}

TEST_F(SeekScanTest, TheScanReadsPageHeadersAndNoPayload) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    auto track = opened->startedTrack(0);
    mEvents.clear();
    track->readAt(20 * kSecond);
    const std::vector<Event> events = mEvents.events();
    const auto end = std::find(events.begin(), events.end(), Event(debugLine("End seekToTime")));
    std::vector<ReadCall> expected;
    const auto add = [&](size_t page) {
        expected.push_back({pageOffset(page), 4, 4});
        expected.push_back({pageOffset(page), 27, 27});
        expected.push_back({pageOffset(page) + 27, 4, 4});
    };
    // Each page is entered, then its successor is read for the next granule position.
    for (size_t page = 169; page <= 425; ++page) {
        add(page);
        add(page + 1);
    }
    std::vector<ReadCall> reads;
    for (auto event = events.begin(); event != end; ++event) {
        if (const auto* read = std::get_if<ReadCall>(&*event)) {
            reads.push_back(*read);
        }
    }
    EXPECT_EQ(reads, expected);
}

TEST_F(SeekScanTest, WithAnUnknownDurationTheEstimateIsTheFirstDataPage) {
    seek(pacedAudioFile(250), 8 * kSecond);
    EXPECT_THAT(mEvents.linesBeginning("seekToTime, 2449"), IsEmpty());
    EXPECT_THAT(landings(), ElementsAre(0));
    EXPECT_THAT(rounds(), ElementsAre(Round{0, 5 * kSecond, 5 * kSecond}));
    EXPECT_TRUE(scannedFromTheStart());
}

TEST_F(SeekScanTest, WithAnUnknownDurationAndLongHeadersTheScanBeginsAmongTheHeaders) {
    Bytes longHeader = AudioHeader().bytes();
    longHeader.resize(60000);
    OgmFile file;
    for (const uint32_t serialNo : {1U, 2U}) {
        file.addHeader(serialNo, longHeader);
    }
    const int64_t firstData = static_cast<int64_t>(file.size());
    for (size_t i = 0; i < 250; ++i) {
        file.addData(1, (i + 1) * kPacedSamples, audioPacket(audioPayload(i)));
    }
    OpenedFile opened = openQuietly(file);
    const ReadResult result = seek(opened, 8 * kSecond);
    EXPECT_THAT(landings(), ElementsAre(firstData - 65536));
    EXPECT_THAT(rounds(), ElementsAre(Round{firstData - 65536, 5 * kSecond, 5 * kSecond}));
    EXPECT_FALSE(scannedFromTheStart());
    EXPECT_EQ(result.bytes, audioPayload(126));
}

/** 250 pages of 64 bytes, then 250 pages of 4096 bytes, 40 ms each: the estimate is too late. */
OgmFile lateEstimateFile() {
    OgmFile file;
    file.addHeader(kPacedSerialNo, AudioHeader());
    for (size_t i = 0; i < 500; ++i) {
        file.addData(kPacedSerialNo, (i + 1) * kPacedSamples,
                     audioPacket(audioPayload(i, i < 250 ? 64 : 4096)));
    }
    return file;
}

TEST_F(SeekScanTest, AScanThatBeginsTooLateStepsBackUntilItReachesTheStartOfTheFile) {
    OpenedFile opened = openQuietly(lateEstimateFile());
    const ReadResult result = seek(opened, 8 * kSecond);
    // A quarter of the data lies 6.8 s after a quarter of the time.
    EXPECT_TRUE(mEvents.holds(infoLine("seekToTime, 2449, searchOffset=260081")));
    EXPECT_THAT(landings(), ElementsAre(194545, 129009, 63473, 0));
    EXPECT_THAT(rounds(),
                ElementsAre(Round{194545, 11800000, 5000000}, Round{129009, 11160000, 5000000},
                            Round{63473, 10520000, 5000000}, Round{0, 5000000, 5000000}));
    EXPECT_TRUE(scannedFromTheStart());
    EXPECT_EQ(result.bytes, audioPayload(126, 64));
}

/**
 * 200 pages of 4096 bytes. The first one lasts about 10 s, the others 1 ms, the last one until 12
 * s. So the estimate for each time from 8 s on is after the first page.
 */
OgmFile leapingFile() {
    OgmFile file;
    file.addHeader(kPacedSerialNo, microsecondAudio());
    for (size_t i = 0; i < 200; ++i) {
        const int64_t endUs =
                i < 199 ? 10 * kSecond + static_cast<int64_t>(i + 1) * 1000 : 12 * kSecond;
        file.addData(kPacedSerialNo, static_cast<uint64_t>(endUs),
                     audioPacket(audioPayload(i, 4096)));
    }
    return file;
}

TEST_F(SeekScanTest, ReachingOneMicrosecondMoreStepsBackAgain) {
    seek(leapingFile(), 8071999 + kLeadUs);
    EXPECT_THAT(rounds(),
                ElementsAre(Round{288985, 10072000, 8071999}, Round{223449, 10056000, 8071999}));
}

TEST_F(SeekScanTest, AStepThatCannotReadLeavesTheTimeOfTheStepBefore) {
    OpenedFile opened = openQuietly(leapingFile());
    // The second step lands on page 55 and reads page 56 for the next granule position.
    opened.source->setFault(faultAtOffset(pageOffset(56, 4096), 0));
    const ReadResult result = seek(opened, 8071999 + kLeadUs);
    EXPECT_THAT(rounds(),
                ElementsAre(Round{288985, 10072000, 8071999}, Round{223449, 10072000, 8071999},
                            Round{157913, 10040000, 8071999}));
    EXPECT_TRUE(mEvents.holds(infoLine("getNextGranulePosition fail, return -10006")));
    EXPECT_EQ(result.bytes, audioPayload(41, 4096));
}

TEST_F(SeekScanTest, AStepWhoseFirstReadFailsEndsTheScanThere) {
    OpenedFile opened = openQuietly(pacedAudioFile(1000));
    opened.source->setFault(faultAtOffset(pageOffset(170), 0));
    const ReadResult result = seek(opened, 20 * kSecond);
    EXPECT_THAT(rounds(), ElementsAre(Round{435281 - 262144, 0, 17 * kSecond}));
    EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(SeekScanTest, AnEstimatePastAllPagesEndsAtTheEndOfTheFile) {
    const OgmFile file = pacedAudioFile(300);
    auto source = sourceOf(file);
    source->setReportedSize(kDurationTail + 300000);
    OpenedFile opened = open(std::move(source));
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 12 * kSecond);
    const ReadResult result = seek(opened, 11800000);
    const int64_t estimate =
            81 + static_cast<int64_t>(kDurationTail + 300000 - 81) * 8800000 / 12000000;
    EXPECT_THAT(landings(), ElementsAre(estimate - 262144));
    EXPECT_THAT(rounds(), ElementsAre(Round{estimate - 262144, 0, 8800000}));
    EXPECT_TRUE(mEvents.holds(infoLine("Seek to file end\n")));
    EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(SeekScanTest, ASmallerSizeThanTheFileHasMovesTheEstimateForward) {
    const OgmFile file = pacedAudioFile(1000);
    auto source = sourceOf(file);
    source->setReportedSize(kDurationTail + 81);
    OpenedFile opened = open(std::move(source));
    // The search for the duration stops at the reported size: page 635 is the last it reads.
    const int64_t durationUs = 636 * kPacedPageUs;
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), durationUs);
    const ReadResult result = seek(opened, 20 * kSecond);
    const int64_t estimate = 81 + static_cast<int64_t>(kDurationTail) * 17000000 / durationUs;
    EXPECT_THAT(landings(), ElementsAre(estimate - 262144));
    EXPECT_EQ(result.bytes, audioPayload(426));
}

TEST_F(SeekScanTest, WithoutASizeTheDurationIsUnknownAndTheScanBeginsAtTheStart) {
    auto source = sourceOf(pacedAudioFile(1000));
    source->setSizeStatus(-1010);
    OpenedFile opened = open(std::move(source));
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
    const ReadResult result = seek(opened, 20 * kSecond);
    EXPECT_THAT(rounds(), ElementsAre(Round{0, 17 * kSecond, 17 * kSecond}));
    // No packet begins within a file of size 0.
    EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
}

}  // namespace
}  // namespace android::ogm::test::seek_scan_test
