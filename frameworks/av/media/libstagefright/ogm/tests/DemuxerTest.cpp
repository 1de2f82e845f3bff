// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <chrono>
#include <optional>

#include "ChildProcess.h"
#include "PluginTest.h"

namespace android::ogm::test::demuxer_test {
namespace {

using ::testing::ElementsAre;

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;

const LogLine kEndOfStream = errorLine("return EOS !");
const LogLine kGranuleFails = infoLine("getNextGranulePosition fail, return -10006");
const std::vector<Event> kReadBegins{infoLine("getFormat: Track type[22]"),
                                     infoLine("begin read mime:video/avc")};

Bytes frame(uint32_t index, size_t size = 3) {
    return dataPacket(kPlainPacket, pattern(size, index));
}

/** Demultiplexing, observed while the video track of a file is read. */
class DemuxerTest : public PluginTest {
  protected:
    /** A file with a video header page; data pages begin at 81. */
    static OgmFile videoFile() {
        OgmFile file;
        file.addHeader(kVideo, VideoHeader());
        return file;
    }

    /** A file with a video and an audio header page; data pages begin at 162. */
    static OgmFile videoAndAudioFile() {
        OgmFile file = videoFile();
        file.addHeader(kAudio, AudioHeader());
        return file;
    }

    std::unique_ptr<Track> startedVideo(std::unique_ptr<MemorySource> source) {
        mOpened.emplace(open(std::move(source)));
        auto track = (*mOpened)->startedTrack(0);
        mEvents.clear();
        return track;
    }

    std::unique_ptr<Track> startedVideo(const OgmFile& file) {
        return startedVideo(sourceOf(file));
    }

    static std::vector<Bytes> payloads(const std::vector<ReadResult>& results) {
        std::vector<Bytes> all;
        all.reserve(results.size());
        for (const ReadResult& result : results) {
            all.push_back(result.bytes);
        }
        return all;
    }

    /** The frames that the file's video track returns, without their header byte. */
    std::vector<Bytes> framesOf(const OgmFile& file) {
        return payloads(startedVideo(file)->drain());
    }

    std::optional<OpenedFile> mOpened;
};

TEST_F(DemuxerTest, TheFirstReadsOfAFileWithThreePagesLogAndReadExactlyThis) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {dataPacket(kSyncPacket, {1, 2, 3}), frame(2), frame(3)});
    auto track = startedVideo(file);

    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    const std::vector<Event> endOfGranules{
            ReadCall{177, 4, 0}, errorLine("FindPage: readSize = 0"),
            errorLine("getNextGranulePosition: Cannot find a page start,LINE:2175 from "
                      "0x000000B1\n"),
            kGranuleFails};
    EXPECT_EQ(mEvents.events(),
              joinedEvents(
                      {kReadBegins,
                       {// The first page is positioned at, its successor looked up, its packet cut.
                        ReadCall{81, 4, 4}, ReadCall{81, 27, 27}, ReadCall{108, 1, 1},
                        ReadCall{113, 4, 4}, ReadCall{113, 27, 27}, ReadCall{140, 1, 1},
                        ReadCall{109, 4, 4},
                        infoLine("mTimeUnit, timeUs = 0, size = 4,mPreGranulePosition:0,"
                                 "mCurrentPageSamplesOut:0\n"),
                        infoLine("packet info:isVideo:1,index:0,GranulePosition:0,serialNo:1,"
                                 "timeUs:0"),
                        infoLine("Track Tyep[22] resizing mPacketBuff to size 65536"),
                        // The second page.
                        ReadCall{113, 4, 4}, ReadCall{113, 27, 27}, ReadCall{140, 1, 1},
                        ReadCall{145, 4, 4}, ReadCall{145, 27, 27}, ReadCall{172, 1, 1},
                        ReadCall{141, 4, 4},
                        infoLine("mTimeUnit, timeUs = 40000, size = 4,mPreGranulePosition:1,"
                                 "mCurrentPageSamplesOut:0\n"),
                        infoLine("NumOfVPackets:2,mPacketsQue size:1"),
                        infoLine("packet info:isVideo:1,index:1,GranulePosition:1,serialNo:1,"
                                 "timeUs:40000"),
                        // The third has no successor.
                        ReadCall{145, 4, 4}, ReadCall{145, 27, 27}, ReadCall{172, 1, 1}},
                       endOfGranules,
                       {kEndOfStream}}));

    // Two packets are queued now; the first is complete.
    mEvents.clear();
    const ReadResult result = track->read();
    EXPECT_EQ(result.bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(mEvents.events(),
              joinedEvents({kReadBegins,
                            endOfGranules,
                            {infoLine("after read mime:video/avc IsIFrame:1, timeUs:0, "
                                      "size:3")}}));
}

TEST_F(DemuxerTest, TheLastPageOfAStreamIsNeverCut) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0), frame(1), frame(2), frame(3)});
    EXPECT_THAT(framesOf(file), ElementsAre(pattern(3, 0), pattern(3, 1)));
}

TEST_F(DemuxerTest, APacketThatEndsOnTheNextPageIsJoined) {
    const Bytes packet = frame(9, 299);
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0)});
    file.add(OggPage(kVideo).granule(2).packet(frame(1)).openPacket(head(packet, 255)));
    file.add(OggPage(kVideo).granule(3).continued().packet(tail(packet, 255)).packet(frame(2)));
    file.addPages(kVideo, {frame(3), frame(4)}, 4);
    EXPECT_THAT(framesOf(file),
                ElementsAre(pattern(3, 0), pattern(3, 1), pattern(299, 9), pattern(3, 2)));
}

TEST_F(DemuxerTest, PagesOfAStreamThatIsNotReadAreCutWithoutAGranuleLookUp) {
    OgmFile file = videoAndAudioFile();
    file.add(OggPage(kAudio).granule(320).packet(filled(5, 1)).packet(filled(6, 1)));
    file.addPages(kVideo, {frame(0), frame(1)});
    startedVideo(file)->read();
    std::vector<ReadCall> reads = mEvents.reads();
    reads.resize(6);
    // The page at 162 has two packets; the next page begins at 202.
    EXPECT_THAT(reads, ElementsAre(ReadCall{162, 4, 4}, ReadCall{162, 27, 27}, ReadCall{189, 2, 2},
                                   ReadCall{191, 5, 5}, ReadCall{196, 6, 6}, ReadCall{202, 4, 4}));
}

TEST_F(DemuxerTest, JunkBetweenTwoPagesIsSkippedAndCounted) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0)});
    file.addJunk(5);
    file.addPages(kVideo, {frame(1), frame(2), frame(3)}, 2);
    const LogLine skip = infoLine("*** Skip 5 bytes of junk from 113 to reach page start ***\n");
    auto track = startedVideo(file);
    track->read();
    EXPECT_EQ(mEvents.count(skip), 2U);  // once for the granule, once for the page itself
    EXPECT_THAT(payloads(track->drain()), ElementsAre(pattern(3, 0), pattern(3, 1)));
}

TEST_F(DemuxerTest, AfterSkippedJunkTheGranuleLookUpContinuesThatManyBytesTooEarly) {
    OgmFile file = videoAndAudioFile();
    file.addPages(kVideo, {frame(0)});               // 162 to 194
    file.addJunk(5);                                 // 194 to 199
    file.addPages(kAudio, {filled(4, 1)});           // 199 to 231
    file.addPages(kVideo, {frame(1), frame(2)}, 2);  // 231
    startedVideo(file)->read();
    // The audio page is 5 bytes late, so the search for the next page begins 5 bytes before its
    // end.
    EXPECT_TRUE(
            mEvents.holds(infoLine("*** Skip 5 bytes of junk from 194 to reach page start ***\n")));
    EXPECT_TRUE(
            mEvents.holds(infoLine("*** Skip 5 bytes of junk from 226 to reach page start ***\n")));
}

TEST_F(DemuxerTest, EveryReadAtTheEndOfTheDataReportsItAgain) {
    OgmFile file = videoAndAudioFile();
    file.addPages(kAudio, {filled(4, 1)});  // 162 to 194; not read, so no look-up from here
    auto track = startedVideo(file);
    const std::vector<Event> end{ReadCall{194, 4, 0}, errorLine("FindPage: readSize = 0"),
                                 infoLine("Cannot find a page start,LINE:2222 from 0x000000C2\n"),
                                 kEndOfStream};
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.events(), joinedEvents({kReadBegins,
                                              {ReadCall{162, 4, 4}, ReadCall{162, 27, 27},
                                               ReadCall{189, 1, 1}, ReadCall{190, 4, 4}},
                                              end}));
    // The position has moved by the size of the page, and moves again.
    mEvents.clear();
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.events(),
              joinedEvents({kReadBegins,
                            {ReadCall{226, 4, 0}, errorLine("FindPage: readSize = 0"),
                             infoLine("Cannot find a page start,LINE:2222 from 0x000000E2\n"),
                             kEndOfStream}}));
}

TEST_F(DemuxerTest, AFailedSearchWhilePositioningPositionsAtTheEnd) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0), frame(1)});
    auto source = sourceOf(file);
    MemorySource& faulty = *source;
    auto track = startedVideo(std::move(source));
    faulty.setFault(faultAtOffset(81, kReadRefused));
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.events(),
              joinedEvents({kReadBegins,
                            {ReadCall{81, 4, kReadRefused},
                             errorLine("FindPage: readSize = -2147483648"),
                             infoLine("Seek to file end\n"), ReadCall{145, 4, 0},
                             errorLine("FindPage: readSize = 0"),
                             infoLine("Cannot find a page start,LINE:2222 from 0x00000091\n"),
                             kEndOfStream}}));
}

TEST_F(DemuxerTest, WithoutADataPageTheHeaderPagesAreReadAgainAndAgain) {
    // The offset of the first data page stays 0, which means "not positioned".
    const OgmFile file = videoFile();
    auto track = startedVideo(file);
    for (int round = 0; round < 2; ++round) {
        mEvents.clear();
        EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
        EXPECT_EQ(mEvents.reads()[0], (ReadCall{0, 4, 4})) << round;
        EXPECT_EQ(mEvents.reads()[1], (ReadCall{0, 27, 27})) << round;
        EXPECT_TRUE(mEvents.holds(kGranuleFails)) << round;
    }
}

TEST_F(DemuxerTest, APageThatCannotBeReadTakesOverTheLacingOfTheOneBefore) {
    OgmFile file = videoAndAudioFile();
    file.add(OggPage(kAudio).granule(1).packet(filled(5, 1)));  // 162 to 195
    file.add(OggPage(kAudio).version(1).packet(filled(9, 1)));  // 195 to 232
    auto track = startedVideo(file);
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.events(),
              joinedEvents(
                      {kReadBegins,
                       {ReadCall{162, 4, 4}, ReadCall{162, 27, 27}, ReadCall{189, 1, 1},
                        ReadCall{190, 5, 5}, ReadCall{195, 4, 4}, ReadCall{195, 27, 27},
                        infoLine("Version Error, verison should be 0 but 1\n"), ReadCall{223, 5, 5},
                        // The status is added like a size: 195 - 10002.
                        ReadCall{-9807, 4, kReadRefused},
                        errorLine("FindPage: readSize = -2147483648"),
                        infoLine("Cannot find a page start,LINE:2222 from 0xFFFFD9B1\n"),
                        kEndOfStream}}));
}

TEST_F(DemuxerTest, ADamagedPageHeaderBeforeTheEndOfTheFileIsReadAgainForever) {
    // Its status, -10002, leads back to a place from which reading reaches it again.
    OgmFile file = videoAndAudioFile();
    for (int page = 1; page <= 40; ++page) {
        file.addPages(kAudio, {filled(255, 1), filled(255, 1)}, page);
    }
    OgmFile damaged = file;
    damaged.add(OggPage(kAudio).version(1).packet(filled(255, 1)));
    constexpr std::chrono::milliseconds kLimit(200);
    const auto readVideo = [this](const OgmFile& bytes) { startedVideo(bytes)->read(); };
    EXPECT_EQ(runInChild([&] { readVideo(damaged); }, kLimit), outOfTime());
    EXPECT_EQ(runInChild([&] { readVideo(file); }), returned());
}

TEST_F(DemuxerTest, AShortLacingReadKeepsTheRestOfTheTableBefore) {
    OgmFile file = videoAndAudioFile();
    file.add(OggPage(kAudio).granule(1).packet(filled(3, 1)).packet(filled(5, 1)));
    const auto second = static_cast<int64_t>(
            file.add(OggPage(kAudio).granule(2).packet(filled(7, 1)).packet(filled(9, 1))));
    auto source = sourceOf(file);
    source->setFault(faultOnHit(second + 27, 2, 1));  // the first is that of opening the file
    auto track = startedVideo(std::move(source));
    track->read();
    const std::vector<ReadCall> reads = mEvents.reads();
    ASSERT_GE(reads.size(), 10U);
    EXPECT_THAT(std::vector<ReadCall>(reads.begin() + 5, reads.begin() + 10),
                ElementsAre(ReadCall{second, 4, 4}, ReadCall{second, 27, 27},
                            ReadCall{second + 27, 2, 1}, ReadCall{second + 29, 7, 7},
                            ReadCall{second + 36, 5, 5}));
}

TEST_F(DemuxerTest, APacketThatBeginsAfterTheReportedSizeEndsTheStream) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0), frame(1)});
    auto source = sourceOf(file);
    source->setReportedSize(108);
    auto track = startedVideo(std::move(source));
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.events(),
              joinedEvents({kReadBegins,
                            {ReadCall{81, 4, 4}, ReadCall{81, 27, 27}, ReadCall{108, 1, 1},
                             ReadCall{113, 4, 4}, ReadCall{113, 27, 27}, ReadCall{140, 1, 1},
                             kEndOfStream}}));
}

TEST_F(DemuxerTest, APacketThatBeginsAtTheReportedSizeIsRead) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0), frame(1)});
    auto source = sourceOf(file);
    source->setReportedSize(109);
    auto track = startedVideo(std::move(source));
    track->read();
    EXPECT_EQ(mEvents.reads()[6], (ReadCall{109, 4, 4}));
}

TEST_F(DemuxerTest, APacketCutOffIsAnIoErrorAndIsTriedAgain) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0), frame(1), frame(2), frame(3)});
    auto source = sourceOf(file);
    source->setFault(faultOnHit(109, 1, 2));
    auto track = startedVideo(std::move(source));
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_IO);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("getFormat: Track type[22]"),
                                            infoLine("begin read mime:video/avc"),
                                            infoLine("Cannot read page payload, size 4\n")}));
    EXPECT_THAT(payloads(track->drain()), ElementsAre(pattern(3, 0), pattern(3, 1)));
}

TEST_F(DemuxerTest, APageWhoseFirstPacketFailsIsLookedAheadOfAgain) {
    OgmFile file = videoFile();
    file.addPages(kVideo, {frame(0), frame(1)});
    auto source = sourceOf(file);
    source->setFault(faultAtOffset(109, 0));
    auto track = startedVideo(std::move(source));
    track->read();
    mEvents.clear();
    track->read();
    EXPECT_THAT(mEvents.reads(), ElementsAre(ReadCall{113, 4, 4}, ReadCall{113, 27, 27},
                                             ReadCall{140, 1, 1}, ReadCall{109, 4, 0}));
}

TEST_F(DemuxerTest, ForEachPageTheNextGranuleIsLookedUpOnlyOnce) {
    OgmFile file = videoFile();
    file.add(OggPage(kVideo).granule(3).packet(frame(0)).packet(frame(1)).packet(frame(2)));
    file.addPages(kVideo, {frame(3)}, 4);
    startedVideo(file)->read();
    const std::vector<ReadCall> reads = mEvents.reads();
    const auto next = static_cast<int64_t>(81 + 27 + 3 + 12);
    EXPECT_EQ(std::count(reads.begin(), reads.end(), ReadCall{next, 4, 4}), 2);
}

}  // namespace
}  // namespace android::ogm::test::demuxer_test
