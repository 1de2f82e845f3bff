// SPDX-License-Identifier: Apache-2.0
#include "PluginTest.h"
#include "SeekFiles.h"

namespace android::ogm::test::fault_test {
namespace {

using ::testing::ElementsAre;

constexpr size_t kSegments = 4;
constexpr int64_t kPayload = kPageHeaderSize + kSegments;

/** What happens to a file if one of its reads fails. */
class FaultTest : public PluginTest {
  protected:
    /** Opens and starts a PCM track, without faults. Its pages have 1024 bytes and 40 ms. */
    void start(size_t pages = 60) {
        mOpened.emplace(openQuietly(pacedAudioFile(pages)));
        mTrack = (*mOpened)->startedTrack(0);
        mEvents.clear();
    }

    MemorySource& source() { return *mOpened->source; }

    /** The number of the page from which a buffer's bytes come. */
    static size_t pageOf(const ReadResult& result) {
        for (size_t page = 0; page < 200; ++page) {
            if (result.bytes == audioPayload(page)) {
                return page;
            }
        }
        return SIZE_MAX;
    }

    /** Reads `count` buffers and notes their pages and times; fails on a read without a buffer. */
    void read(size_t count) {
        for (size_t i = 0; i < count; ++i) {
            const ReadResult result = mTrack->read();
            ASSERT_EQ(result.status, AMEDIA_OK);
            mPages.push_back(pageOf(result));
            mTimes.push_back(result.timeUs.value_or(-1));
        }
    }

    static std::vector<size_t> pages(size_t first, size_t count) {
        std::vector<size_t> result;
        for (size_t i = 0; i < count; ++i) {
            result.push_back(first + i);
        }
        return result;
    }

    /** The pages and their times in a run without faults. */
    static std::vector<int64_t> timesOf(const std::vector<size_t>& pages) {
        std::vector<int64_t> times;
        times.reserve(pages.size());
        for (const size_t page : pages) {
            times.push_back(static_cast<int64_t>(page) * kPacedPageUs);
        }
        return times;
    }

    std::optional<OpenedFile> mOpened;
    std::unique_ptr<Track> mTrack;
    std::vector<size_t> mPages;
    std::vector<int64_t> mTimes;
};

TEST_F(FaultTest, AFailedPayloadReadIsReportedToATrackWithNothingQueued) {
    for (const ssize_t fault : {ssize_t{-5}, ssize_t{0}, ssize_t{992}}) {
        start();
        source().setFault(faultOnHit(pageOffset(0) + kPayload, 1, fault));
        EXPECT_EQ(mTrack->read().status, AMEDIA_ERROR_IO);
        EXPECT_EQ(mEvents.lines().back(), infoLine("Cannot read page payload, size 993\n"));
        // The packet is read again. So its page is entered again, and its own granule position is
        // then also that of the page before.
        read(3);
        EXPECT_EQ(mPages, pages(0, 3));
        EXPECT_THAT(mTimes, ElementsAre(kPacedPageUs, kPacedPageUs, 2 * kPacedPageUs));
        mPages.clear();
        mTimes.clear();
    }
}

TEST_F(FaultTest, AFailedPayloadReadIsHiddenByAQueueThatIsNotEmpty) {
    start();
    source().setFault(faultOnHit(pageOffset(12) + kPayload, 1, 0));
    read(30);
    EXPECT_EQ(mPages, pages(0, 30));
    std::vector<int64_t> times = timesOf(mPages);
    times[12] = 13 * kPacedPageUs;  // its page was entered twice
    EXPECT_EQ(mTimes, times);
}

TEST_F(FaultTest, AFailedReadOfALaterPacketOfAPageChangesNoTime) {
    OgmFile file;
    file.addHeader(1, AudioHeader());
    for (uint32_t i = 0; i < 20; ++i) {
        file.add(OggPage(1)
                         .granule((i + 1) * kPacedSamples)
                         .packet(audioPacket(pattern(20, 2 * i)))
                         .packet(audioPacket(pattern(20, 2 * i + 1))));
    }
    OpenedFile opened = openQuietly(file);
    auto track = opened->startedTrack(0);
    const int64_t pageSize = kPageHeaderSize + 2 + 23 + 23;
    opened.source->setFault(faultOnHit(kHeaderPageSize + 7 * pageSize + 29 + 23, 1, 0));
    for (uint32_t i = 0; i < 20; ++i) {
        const ReadResult result = track->read();
        EXPECT_EQ(result.bytes, pattern(20, i));
        EXPECT_EQ(result.timeUs, i / 2 * kPacedPageUs);
    }
    EXPECT_EQ(mEvents.count(infoLine("Cannot read page payload, size 23\n")), 1U);
}

TEST_F(FaultTest, APayloadThatNeverComesEndsTheTrackWithAnErrorOnceItsQueueIsEmpty) {
    start();
    source().setFault(faultAtOffset(pageOffset(12) + kPayload, -5));
    read(11);
    EXPECT_EQ(mPages, pages(0, 11));
    for (int i = 0; i < 3; ++i) {
        const ReadResult result = mTrack->read();
        EXPECT_EQ(result.status, AMEDIA_ERROR_IO);
        EXPECT_FALSE(result.hasBuffer);
    }
    source().clearFault();
    EXPECT_EQ(pageOf(mTrack->read()), 11U);
}

TEST_F(FaultTest, AFailedSearchForTheNextPageSkipsAPage) {
    start();
    // This place is read first for the granule position of page 12, then for page 12 itself.
    source().setFault(faultOnHit(pageOffset(12), 3, 0));
    read(30);
    std::vector<size_t> expected = pages(0, 12);
    for (const size_t page : pages(13, 18)) {
        expected.push_back(page);
    }
    EXPECT_EQ(mPages, expected);
    // The page after the gap is assumed to begin at the time at which the page before it ends.
    std::vector<int64_t> times = timesOf(expected);
    times[12] = 12 * kPacedPageUs;
    EXPECT_EQ(mTimes, times);
    EXPECT_EQ(mEvents.count(errorLine("FindPage: readSize = 0")), 1U);
    EXPECT_EQ(mEvents.count(infoLine(formatted("Cannot find a page start,LINE:2222 from 0x%08X\n",
                                               static_cast<unsigned>(pageOffset(12))))),
              1U);
}

TEST_F(FaultTest, AShortSearchForTheNextPageSkipsAPageAndReportsHowMuchItGot) {
    start();
    source().setFault(faultOnHit(pageOffset(12), 3, 3));
    read(13);
    EXPECT_EQ(mPages.back(), 13U);
    EXPECT_EQ(mEvents.count(errorLine("FindPage: readSize = 3")), 1U);
}

TEST_F(FaultTest, ARefusedSearchForTheNextPageLogsTheStatus) {
    start();
    source().setFault(faultOnHit(pageOffset(12), 3, kReadRefused));
    read(13);
    EXPECT_EQ(mPages.back(), 13U);
    EXPECT_EQ(mEvents.count(errorLine("FindPage: readSize = -2147483648")), 1U);
}

TEST_F(FaultTest, AFailedScanForTheNextGranuleIsRepeatedAndCostsNothing) {
    for (const size_t hit : {1U, 2U}) {  // the search for the next page, and its header
        start();
        source().setFault(faultOnHit(pageOffset(12), hit, 0));
        read(30);
        EXPECT_EQ(mPages, pages(0, 30));
        // The search failed before the page was entered.
        EXPECT_EQ(mTimes, timesOf(mPages));
        EXPECT_EQ(mEvents.count(infoLine("getNextGranulePosition fail, return -10006")), 1U);
        mPages.clear();
        mTimes.clear();
    }
}

TEST_F(FaultTest, AFailedHeaderOfTheNextGranuleNamesItsPlace) {
    start();
    source().setFault(faultOnHit(pageOffset(12), 2, 26));
    read(5);
    const auto offset = static_cast<unsigned>(pageOffset(12));
    EXPECT_EQ(
            mEvents.count(infoLine(formatted("failed to read 27 bytesat offset 0x%08x\n", offset))),
            1U);
    EXPECT_EQ(mEvents.count(errorLine(formatted(
                      "getNextGranulePosition:Cannot read a page header, at 0x%08X\n", offset))),
              1U);
}

/**
 * The status of a page header that cannot be read becomes the size of the page. The packet is cut
 * with the lacing table of the page before, and the next page is searched about 10,000 bytes back.
 */
TEST_F(FaultTest, AFailedPageHeaderSendsTheTrackBackInTheFile) {
    for (const ssize_t fault : {kReadRefused, ssize_t{0}, ssize_t{26}}) {
        start();
        source().setFault(faultOnHit(pageOffset(12), 4, fault));
        read(30);
        std::vector<size_t> expected = pages(0, 13);
        // The search begins in page 2. Page 3 is earlier than page 12, so its packet is dropped.
        for (const size_t page : pages(4, 17)) {
            expected.push_back(page);
        }
        EXPECT_EQ(mPages, expected);
        EXPECT_EQ(mTimes, timesOf(expected));
        const int64_t back = fault < 0 ? -10001 : -10007;
        const int64_t from = pageOffset(12) + back;
        EXPECT_EQ(mEvents.count(infoLine(formatted("*** Skip %lld bytes of junk from %lld to reach "
                                                   "page start ***\n",
                                                   static_cast<long long>(pageOffset(3) - from),
                                                   static_cast<long long>(from)))),
                  2U);  // for the granule position, and for the page
        mPages.clear();
        mTimes.clear();
    }
}

TEST_F(FaultTest, AFailedLacingTableSendsTheTrackBackInTheFile) {
    for (const ssize_t fault : {kReadRefused, ssize_t{0}, ssize_t{3}}) {
        start();
        source().setFault(faultOnHit(pageOffset(12) + 27, 2, fault));
        read(30);
        std::vector<size_t> expected = pages(0, 13);
        for (const size_t page : pages(4, 17)) {
            expected.push_back(page);
        }
        EXPECT_EQ(mPages, expected);
        EXPECT_EQ(mTimes, timesOf(expected));
        EXPECT_EQ(mEvents.count(infoLine("failed to read segments lace length data\n")), 1U);
        mPages.clear();
        mTimes.clear();
    }
}

TEST_F(FaultTest, ASourceThatReturnsNothingMoreLeavesWhatIsQueuedAndThenTheEnd) {
    start();
    read(5);
    source().setFault([](const ReadRequest&) { return std::optional<ssize_t>(0); });
    // Ten were queued at the last read; the last of them stays open.
    read(8);
    EXPECT_EQ(mPages, pages(0, 13));
    EXPECT_EQ(mTrack->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mTrack->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(FaultTest, ASeekBringsATrackBackFromAnyFailure) {
    for (int64_t hit = 1; hit <= 4; ++hit) {
        for (const ssize_t fault : {ssize_t{-5}, ssize_t{0}, ssize_t{2}}) {
            start();
            source().setFault(faultOnHit(pageOffset(12), static_cast<size_t>(hit), fault));
            read(20);
            source().clearFault();
            const ReadResult result = mTrack->readAt(0);
            EXPECT_EQ(pageOf(result), 0U);
            EXPECT_EQ(result.timeUs, 0);
            mPages.clear();
            mTimes.clear();
            read(20);
            EXPECT_EQ(mPages, pages(1, 20));
            EXPECT_EQ(mTimes, timesOf(mPages));
            mPages.clear();
            mTimes.clear();
        }
    }
}

TEST_F(FaultTest, AFailedHeaderAfterASeekToTheStartEndsTheStreamUntilTheNextSeek) {
    start();
    read(1);
    // The failed header leaves a negative size, so the search begins before the start of the file.
    source().setFault(faultOnHit(pageOffset(0), 2, 0));
    const ReadResult result = mTrack->readAt(0);
    EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
    source().clearFault();
    EXPECT_EQ(pageOf(mTrack->readAt(0)), 0U);
}

TEST_F(FaultTest, AFailedSearchAfterASeekGoesToTheEndOfTheFile) {
    start();
    source().setFault(faultOnHit(pageOffset(0), 1, 0));
    EXPECT_EQ(mTrack->readAt(0).status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.count(infoLine("Seek to file end\n")), 1U);
}

/** Which tracks a file has when one of the first reads fails. */
class OpeningFaultTest : public PluginTest {
  protected:
    // Each header page takes two searches, its header, its lacing table and its body.
    static constexpr size_t kReadsPerHeader = 5;

    size_t tracksWithFault(size_t read, ssize_t result, Lasting lasting) {
        auto source = sourceOf(oneVideoOneAudioFile());
        source->setFault(faultyRead(read, result, lasting));
        return open(std::move(source))->countTracks();
    }
};

TEST_F(OpeningFaultTest, AFailureOfAHeaderPageLeavesTheTracksBeforeIt) {
    for (const ssize_t result : {ssize_t{-5}, ssize_t{0}, ssize_t{3}}) {
        for (size_t header = 0; header < 2; ++header) {
            const size_t first = header * kReadsPerHeader;
            // The result of the first search is not used, only that of the second.
            EXPECT_EQ(tracksWithFault(first, result, Lasting::kOnce), 2U) << result;
            for (size_t read = first + 1; read < first + kReadsPerHeader; ++read) {
                const bool isWholeLacing = read == first + 3 && result == 3;
                EXPECT_EQ(tracksWithFault(read, result, Lasting::kOnce), isWholeLacing ? 2 : header)
                        << read << " gives " << result;
            }
            for (size_t read = first; read < first + kReadsPerHeader; ++read) {
                EXPECT_EQ(tracksWithFault(read, result, Lasting::kFromThenOn), header)
                        << read << " gives " << result;
            }
        }
    }
}

TEST_F(OpeningFaultTest, AFailureAfterTheHeaderPagesLeavesBothTracks) {
    auto healthy = sourceOf(oneVideoOneAudioFile());
    MemorySource& counter = *healthy;
    OpenedFile opened = open(std::move(healthy));
    for (size_t read = 2 * kReadsPerHeader; read < counter.readCount(); read += 3) {
        EXPECT_EQ(tracksWithFault(read, 0, Lasting::kOnce), 2U) << read;
        EXPECT_EQ(tracksWithFault(read, -5, Lasting::kFromThenOn), 2U) << read;
    }
}

TEST_F(OpeningFaultTest, AFileThatCannotBeReadHasNoTracksAndNoDuration) {
    auto source = sourceOf(oneVideoOneAudioFile());
    source->setFault(faultyRead(0, kReadRefused, Lasting::kFromThenOn));
    OpenedFile opened = open(std::move(source));
    EXPECT_EQ(opened->countTracks(), 0U);
    EXPECT_EQ(opened->track(0), nullptr);
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
}

/** What a wrong size of the file does to its packets. */
class FileSizeTest : public PluginTest {
  protected:
    static constexpr size_t kPages = 40;

    std::unique_ptr<MemorySource> pacedSource() { return sourceOf(pacedAudioFile(kPages)); }

    size_t packetsOf(std::unique_ptr<MemorySource> source) {
        OpenedFile opened = open(std::move(source));
        return opened->startedTrack(0)->drain().size();
    }
};

TEST_F(FileSizeTest, ARefusedSizeIsZeroAndNoPacketLiesWithinIt) {
    auto source = pacedSource();
    source->setSizeStatus(-1010);
    OpenedFile opened = open(std::move(source));
    EXPECT_EQ(opened->countTracks(), 1U);
    auto track = opened->startedTrack(0);
    mEvents.clear();
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.lines().back(), errorLine("return EOS !"));
    EXPECT_EQ(track->readAt(0).status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(track->readAt(5000000).status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(FileSizeTest, ASizeOfMinusOneIsTakenAsItIs) {
    auto source = pacedSource();
    source->setReportedSize(-1);
    EXPECT_EQ(packetsOf(std::move(source)), 0U);
}

TEST_F(FileSizeTest, ASizeThatIsTooSmallEndsTheTrackAtThatSize) {
    // The start of a packet may be at the reported size, but not after it.
    auto source = pacedSource();
    source->setReportedSize(pageOffset(20) + kPayload);
    EXPECT_EQ(packetsOf(std::move(source)), 20U);

    source = pacedSource();
    source->setReportedSize(pageOffset(20) + kPayload - 1);
    EXPECT_EQ(packetsOf(std::move(source)), 19U);
}

TEST_F(FileSizeTest, ASizeThatIsTooLargeChangesNoPacket) {
    auto source = pacedSource();
    source->setReportedSize(600000);
    EXPECT_EQ(packetsOf(std::move(source)), kPages - 2);

    source = pacedSource();
    source->setReportedSize(INT64_MAX);
    EXPECT_EQ(packetsOf(std::move(source)), kPages - 2);
}

TEST_F(FileSizeTest, ASizeThatIsTooLargeSendsASeekToTheEndPastTheFile) {
    auto source = pacedSource();
    source->setReportedSize(kDurationTail + 81);
    OpenedFile opened = open(std::move(source));
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), kPages * kPacedPageUs);
    auto track = opened->startedTrack(0);
    mEvents.clear();
    EXPECT_EQ(track->readAt(60000000).status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.reads().front(), (ReadCall{kDurationTail + 81, 4, 0}));
    EXPECT_EQ(track->readAt(0).bytes, audioPayload(0));
}

TEST_F(FileSizeTest, AFileOfTheGreatestSizeIsSearchedForItsDurationInVain) {
    auto source = pacedSource();
    source->setReportedSize(INT64_MAX);
    OpenedFile opened = open(std::move(source));
    EXPECT_EQ(opened->fileFormat().int64(AMEDIAFORMAT_KEY_DURATION), 0);
    auto track = opened->startedTrack(0);
    EXPECT_EQ(track->readAt(0).bytes, audioPayload(0));
}

}  // namespace
}  // namespace android::ogm::test::fault_test
