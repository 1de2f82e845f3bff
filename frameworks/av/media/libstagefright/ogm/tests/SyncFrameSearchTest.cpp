// SPDX-License-Identifier: Apache-2.0
#include <set>

#include "ElementaryStreams.h"
#include "Microseconds.h"
#include "PluginTest.h"
#include "SeekFiles.h"

namespace android::ogm::test::sync_frame_search_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int64_t kFrameUs = 100000;
constexpr uint32_t kVideoSerialNo = 1;
constexpr uint32_t kAudioSerialNo = 2;
constexpr uint64_t kAudioRate = 8000;
constexpr char kDropped[] =
        "********** Track Type[5] skip appending data because seeking*************\n";

LogLine foundAt(int64_t timeUs) {
    return infoLine(
            formatted("found I Frame after seek,timeus=%lld", static_cast<long long>(timeUs)));
}

LogLine steppedBackTo(int64_t timeUs, int left) {
    return infoLine(
            formatted("read, 1228, Can't find I frame after time %lld, leavings search "
                      "times:%d",
                      static_cast<long long>(timeUs), left));
}

const LogLine kGaveUp = infoLine("read, 1210,Can't find I frame after search 10 times");

/**
 * How the selected video track searches for a sync frame after a seek. The files are too short for
 * a duration, so each scan begins at the first page. It uses up the first page whose time is at
 * least the target less three seconds, and the search begins on the next page.
 */
class SyncFrameSearchTest : public PluginTest {
  protected:
    /** A frame per page, 100 ms apart; those at the given times in seconds are sync frames. */
    static OgmFile regularFile(size_t frames, const std::set<double>& syncTimes) {
        VideoHeader header;
        header.timeUnit = kFrameUs * 10;
        OgmFile file;
        file.addHeader(kVideoSerialNo, header);
        for (size_t i = 0; i < frames; ++i) {
            const bool sync = syncTimes.count(static_cast<double>(i) / 10) > 0;
            file.addData(kVideoSerialNo, i + 1,
                         dataPacket(sync ? kSyncPacket : kPlainPacket, payload(i)));
        }
        return file;
    }

    static Bytes payload(size_t index) { return pattern(20, static_cast<uint32_t>(index)); }

    /** Offset of a page in the regular file: 28 bytes of page header, 21 bytes of packet. */
    static int64_t regularPageOffset(size_t frame) {
        return static_cast<int64_t>(kHeaderPageSize + frame * (28 + 21));
    }

    /** Opens a file and starts its first track; replaces the previous ones. */
    MemorySource& start(const OgmFile& file) {
        mTrack.reset();
        mOpened.emplace(openQuietly(file));
        mTrack = (*mOpened)->startedTrack(0);
        return *mOpened->source;
    }

    ReadResult seek(const OgmFile& file, int64_t timeUs) {
        start(file);
        mEvents.clear();
        return mTrack->readAt(timeUs);
    }

    /** The lines of the search itself. */
    std::vector<LogLine> searchLines() const {
        std::vector<LogLine> lines;
        for (const LogLine& line : mEvents.lines()) {
            if (line.text.rfind("found I Frame", 0) == 0 || line.text.rfind("read, 1", 0) == 0) {
                lines.push_back(line);
            }
        }
        return lines;
    }

    std::optional<OpenedFile> mOpened;
    std::unique_ptr<Track> mTrack;
};

TEST_F(SyncFrameSearchTest, TheFirstSyncFrameAfterThreeSecondsBeforeTheTargetIsReadFirst) {
    const ReadResult result = seek(regularFile(300, {0, 4, 8, 12, 16}), 10 * kSecond);
    EXPECT_THAT(searchLines(), ElementsAre(foundAt(8 * kSecond)));
    EXPECT_EQ(result.timeUs, 8 * kSecond);
    EXPECT_EQ(result.isSyncFrame, 1);
    EXPECT_EQ(result.bytes, payload(80));
    EXPECT_EQ(mTrack->read().bytes, payload(81));
}

TEST_F(SyncFrameSearchTest, ASyncFrameOnThePageThatTheScanUsesUpIsNotFound) {
    EXPECT_EQ(seek(regularFile(300, {7, 9.5}), 10 * kSecond).timeUs, 9500000);
    EXPECT_EQ(seek(regularFile(300, {7.1, 9.5}), 10 * kSecond).timeUs, 7100000);
}

TEST_F(SyncFrameSearchTest, ASyncFrameAtTheStartIsFoundByASeekBelowThreeSeconds) {
    EXPECT_EQ(seek(regularFile(300, {0, 2}), 2500000).timeUs, 0);
    EXPECT_THAT(searchLines(), ElementsAre(foundAt(0)));
    EXPECT_EQ(seek(regularFile(300, {0, 2}), 0).timeUs, 0);
}

TEST_F(SyncFrameSearchTest, ASyncFrameMoreThanTwoSecondsAfterTheTargetIsNotTaken) {
    const ReadResult result = seek(regularFile(300, {4.5, 12.1}), 10 * kSecond);
    EXPECT_THAT(searchLines(), ElementsAre(steppedBackTo(7 * kSecond, 9), foundAt(4500000)));
    EXPECT_EQ(result.timeUs, 4500000);
    EXPECT_EQ(result.isSyncFrame, 1);
}

TEST_F(SyncFrameSearchTest, EachStepBackIsThreeSecondsAndIsFollowedByItsOwnScan) {
    seek(regularFile(400, {0, 10.5}), 20 * kSecond);
    EXPECT_THAT(searchLines(),
                ElementsAre(steppedBackTo(17 * kSecond, 9), steppedBackTo(14 * kSecond, 8),
                            steppedBackTo(11 * kSecond, 7), foundAt(10500000)));
    // The seek itself and one for each step back.
    EXPECT_EQ(mEvents.count(infoLine("OgmTrack:mSerialNo[1] signalDiscontinuity!")), 4U);
    // Only the seek logs its beginning and end.
    EXPECT_EQ(mEvents.count(debugLine("Start seekToTime")), 1U);
    EXPECT_EQ(mEvents.count(debugLine("End seekToTime")), 1U);
}

TEST_F(SyncFrameSearchTest, WithoutSyncFramesTenStepsBackAreMadeAndThenTheTargetIsTaken) {
    const ReadResult result = seek(regularFile(600, {}), 40 * kSecond);
    std::vector<LogLine> expected;
    for (int step = 1; step <= 10; ++step) {
        expected.push_back(steppedBackTo((40 - 3 * step) * kSecond, 10 - step));
    }
    expected.push_back(kGaveUp);
    expected.push_back(steppedBackTo(40 * kSecond, -1));
    EXPECT_EQ(searchLines(), expected);
    // The page at 37 s is used up by the last scan.
    EXPECT_EQ(result.timeUs, 37100000);
    EXPECT_EQ(result.isSyncFrame, 0);
    EXPECT_EQ(result.bytes, payload(371));
    EXPECT_EQ(mTrack->read().bytes, payload(372));
}

TEST_F(SyncFrameSearchTest, AfterTheLastStepBackNoFrameIsExamined) {
    // The sync frame is too far from all eleven times searched for, but not from the target.
    const ReadResult result = seek(regularFile(600, {42.1}), 40 * kSecond);
    EXPECT_EQ(result.timeUs, 37100000);
    EXPECT_EQ(mEvents.linesBeginning("found I Frame").size(), 0U);
}

TEST_F(SyncFrameSearchTest, TheEndOfTheFileEndsTheSearch) {
    // No sync frame, and no frame more than two seconds after the target.
    const ReadResult result = seek(regularFile(195, {}), 18 * kSecond);
    EXPECT_THAT(searchLines(), IsEmpty());
    EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.lines().back(), errorLine("return EOS !"));
}

TEST_F(SyncFrameSearchTest, ASyncFrameIsStillFoundAfterTheEndOfTheFileWasReached) {
    // Filling the queue at 18.6 s reaches the end; the last packet but one is not returned.
    const ReadResult result = seek(regularFile(195, {18.9}), 17 * kSecond);
    EXPECT_THAT(searchLines(), ElementsAre(foundAt(18900000)));
    EXPECT_EQ(result.timeUs, 18900000);
}

TEST_F(SyncFrameSearchTest, AfterTheEndOfTheFileWasReachedOnlyOneStepBackIsMade) {
    // There are frames more than two seconds after the target, but the end came with them.
    const ReadResult result = seek(regularFile(195, {0}), 17 * kSecond);
    EXPECT_THAT(searchLines(), ElementsAre(steppedBackTo(14 * kSecond, 9)));
    // The cursor stays where that step has left it: after the page at 11 s.
    EXPECT_EQ(result.timeUs, 11100000);
    EXPECT_EQ(result.isSyncFrame, 0);
}

TEST_F(SyncFrameSearchTest, ASeekToTheEndOfTheFileSearchesNothing) {
    EXPECT_EQ(seek(pacedVideoFile(1000, 10), 40 * kSecond).status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_THAT(searchLines(), IsEmpty());
}

TEST_F(SyncFrameSearchTest, AReplacedTrackDropsPacketsThatAreTooLate) {
    start(regularFile(400, {28}));
    EXPECT_EQ(mTrack->readAt(30 * kSecond).timeUs, 28 * kSecond);
    // All packets go to the new track, so the queued ones are not replaced.
    const auto replacement = (*mOpened)->startedTrack(0);
    EXPECT_EQ(mTrack->readAt(10 * kSecond).status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(SyncFrameSearchTest, TheCodedPictureTypeDecidesWhatASyncFrameIs) {
    VideoHeader header;
    header.subtype = "mpg2";
    header.timeUnit = kFrameUs * 10;
    OgmFile file;
    file.addHeader(kVideoSerialNo, header);
    for (uint32_t i = 0; i < 200; ++i) {
        file.addData(kVideoSerialNo, i + 1,
                     dataPacket(kPlainPacket, mpeg2Picture(i % 30 == 0 ? 1 : 2, 40, i)));
    }
    const ReadResult result = seek(file, 10 * kSecond);
    EXPECT_THAT(searchLines(), ElementsAre(foundAt(9 * kSecond)));
    EXPECT_EQ(result.timeUs, 9 * kSecond);
}

TEST_F(SyncFrameSearchTest, TheSearchLooksAtTimesBeforeTheyAreCorrectedForReordering) {
    VideoHeader header;
    header.subtype = "mpg2";
    header.timeUnit = kFrameUs * 10;
    OgmFile file;
    file.addHeader(kVideoSerialNo, header);
    for (uint32_t i = 0; i < 200; ++i) {
        const uint32_t type = i == 60 ? 1 : (i % 3 == 0 ? 2 : 3);
        file.addData(kVideoSerialNo, i + 1, dataPacket(kPlainPacket, mpeg2Picture(type, 40, i)));
    }
    // In the file the sync frame is two seconds after the target; it is shown 0.2 s later.
    const ReadResult result = seek(file, 4 * kSecond);
    EXPECT_THAT(searchLines(), ElementsAre(foundAt(6 * kSecond)));
    EXPECT_EQ(result.timeUs, 6200000);
    EXPECT_EQ(mTrack->read().timeUs, 6000000);
    EXPECT_EQ(mTrack->read().timeUs, 6100000);
    EXPECT_EQ(mTrack->read().timeUs, 6500000);
}

TEST_F(SyncFrameSearchTest, AFrameThatBeganBeforeTheLandingPlaceIsNotSeen) {
    VideoHeader header;
    header.timeUnit = kFrameUs * 10;
    const Bytes divided = dataPacket(kSyncPacket, pattern(509, 999));
    OgmFile file;
    file.addHeader(kVideoSerialNo, header);
    for (uint32_t i = 0; i < 200; ++i) {
        if (i == 70) {
            file.add(OggPage(kVideoSerialNo).granule(70).openPacket(head(divided, 255)));
            file.add(OggPage(kVideoSerialNo).granule(71).continued().packet(tail(divided, 255)));
        } else {
            file.addData(kVideoSerialNo, i + 1,
                         dataPacket(i == 90 ? kSyncPacket : kPlainPacket, payload(i)));
        }
    }
    const ReadResult result = seek(file, 10 * kSecond);
    EXPECT_EQ(result.timeUs, 9 * kSecond);
    EXPECT_EQ(result.bytes, payload(90));
}

TEST_F(SyncFrameSearchTest, AFailedReadEndsTheSearchAndTheRead) {
    MemorySource& source = start(regularFile(300, {0, 8}));
    // The payload of the frame at 7.5 s.
    source.setFault(faultAtOffset(regularPageOffset(75) + 28, 0));
    const ReadResult result = mTrack->readAt(10 * kSecond);
    EXPECT_EQ(result.status, AMEDIA_ERROR_IO);
    EXPECT_FALSE(result.hasBuffer);
    const std::vector<LogLine> lines = mEvents.lines();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[lines.size() - 2], infoLine("Cannot read page payload, size 21\n"));
    EXPECT_EQ(lines.back(), errorLine("Read Data fail,return ERROR_IO"));
    EXPECT_THAT(mEvents.linesBeginning("after seek"), IsEmpty());

    // The queued packets are returned as they are, and the packet is read again.
    source.clearFault();
    for (size_t frame = 71; frame < 80; ++frame) {
        EXPECT_EQ(mTrack->read().bytes, payload(frame));
    }
}

TEST_F(SyncFrameSearchTest, AFailedScanIsNoFailedRead) {
    // The scan cannot get past the page at 5 s, so the search cannot either.
    start(regularFile(300, {0, 8})).setFault(faultAtOffset(regularPageOffset(50), 0));
    EXPECT_EQ(mTrack->readAt(10 * kSecond).status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.count(infoLine("after seek to 10000000 us mime:video/avc")), 1U);
}

/** A video and an audio track, the video track selected. */
class SeekingFlagTest : public SyncFrameSearchTest {
  protected:
    static constexpr int64_t kVideoPageSize = kPageHeaderSize + 1 + 21;
    static constexpr int64_t kAudioPageSize = kPageHeaderSize + 1 + 23;

    static OgmFile twoTracks() {
        VideoHeader video;
        video.timeUnit = kFrameUs * 10;
        OgmFile file;
        file.addHeader(kVideoSerialNo, video);
        file.addHeader(kAudioSerialNo, AudioHeader());
        for (size_t i = 0; i < 300; ++i) {
            file.addData(kVideoSerialNo, i + 1,
                         dataPacket(i % 40 == 0 ? kSyncPacket : kPlainPacket, payload(i)));
            file.addData(kAudioSerialNo, (i + 1) * kAudioRate / 10, audioPacket(payload(i + 1000)));
        }
        return file;
    }

    static int64_t videoPayloadOffset(int64_t frame) {
        return 2 * static_cast<int64_t>(kHeaderPageSize) +
               frame * (kVideoPageSize + kAudioPageSize) + 28;
    }
};

TEST_F(SeekingFlagTest, AfterAFailedSearchAudioIsDroppedUntilTheNextSeekOfTheSelectedTrack) {
    OpenedFile opened = openQuietly(twoTracks());
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    opened.source->setFault(faultAtOffset(videoPayloadOffset(75), 0));
    EXPECT_EQ(video->readAt(10 * kSecond).status, AMEDIA_ERROR_IO);
    opened.source->clearFault();

    mEvents.clear();
    EXPECT_EQ(video->read().timeUs, 7100000);
    EXPECT_GT(mEvents.count(infoLine(kDropped)), 0U);
    // A seek of the other track changes nothing: the rest of the audio is dropped.
    EXPECT_EQ(audio->readAt(0).status, AMEDIA_ERROR_END_OF_STREAM);

    EXPECT_EQ(video->readAt(10 * kSecond).timeUs, 8 * kSecond);
    mEvents.clear();
    EXPECT_EQ(audio->read().status, AMEDIA_OK);
    EXPECT_EQ(mEvents.count(infoLine(kDropped)), 0U);
}

TEST_F(SeekingFlagTest, AnotherTrackReachesTheFailureThatEndedTheSearch) {
    OpenedFile opened = openQuietly(twoTracks());
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    ASSERT_EQ(audio->read().status, AMEDIA_OK);
    ASSERT_EQ(audio->read().status, AMEDIA_OK);
    opened.source->setFault(faultAtOffset(videoPayloadOffset(75), -5));
    EXPECT_EQ(video->readAt(10 * kSecond).status, AMEDIA_ERROR_IO);
    // The seek dropped its queue; the failing packet comes first.
    EXPECT_EQ(audio->read().status, AMEDIA_ERROR_IO);
}

TEST_F(SeekingFlagTest, TheSearchPassesOverAnyNumberOfOtherTracksPages) {
    VideoHeader header;
    header.timeUnit = kFrameUs * 10;
    OgmFile file;
    file.addHeader(kVideoSerialNo, header);
    file.addHeader(kAudioSerialNo, AudioHeader());
    file.addData(kVideoSerialNo, 1, dataPacket(kSyncPacket, payload(0)));
    for (size_t i = 0; i < 200; ++i) {
        file.addData(kAudioSerialNo, (i + 1) * kAudioRate / 100, audioPacket(payload(i + 1000)));
    }
    for (size_t i = 1; i < 30; ++i) {
        file.addData(kVideoSerialNo, i + 1, dataPacket(kPlainPacket, payload(i)));
    }
    // The last page of a stream would end all reading there.
    file.addData(kAudioSerialNo, 201 * kAudioRate / 100, audioPacket(payload(2000)));
    OpenedFile opened = openQuietly(file);
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    mEvents.clear();
    EXPECT_EQ(video->readAt(0).bytes, payload(0));
    EXPECT_EQ(mEvents.count(infoLine(kDropped)), 200U);
}

}  // namespace
}  // namespace android::ogm::test::sync_frame_search_test
