// SPDX-License-Identifier: Apache-2.0
#include "LifecycleFixture.h"

namespace android::ogm::test::lifecycle_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(LifecycleTest, StartingATrackThatWasNeverStoppedRegistersNothing) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto track = opened->track(0);
    mEvents.clear();
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_THAT(trackLines(), ElementsAre(infoLine("OgmTrack:[start] mSerialNo[7]\n"),
                                          infoLine("OgmTrack:[start] mSerialNo[7]\n")));
    EXPECT_EQ(track->read().bytes, payload(0, 0));
}

TEST_F(LifecycleTest, StoppingTheOnlyTrackLeavesNoneSelected) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto track = opened->startedTrack(0);
    mEvents.clear();
    EXPECT_EQ(track->stop(), AMEDIA_OK);
    EXPECT_THAT(trackLines(),
                ElementsAre(infoLine("OgmTrack:[stop] mSerialNo[7]\n"), stopLine(7, -1)));
}

TEST_F(LifecycleTest, StoppingTheSelectedTrackSelectsTheSmallestSerialNumberLeft) {
    OpenedFile opened = openQuietly(fileWith({5, 7, 3}));
    auto five = opened->startedTrack(0);
    auto seven = opened->startedTrack(1);
    auto three = opened->startedTrack(2);
    EXPECT_TRUE(movesTheFile(*five));
    EXPECT_FALSE(movesTheFile(*three));
    mEvents.clear();
    five->stop();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"), ElementsAre(stopLine(5, 3)));
    EXPECT_TRUE(movesTheFile(*three));
    EXPECT_FALSE(movesTheFile(*seven));
}

TEST_F(LifecycleTest, StoppingAnotherTrackDoesNotChangeTheSelection) {
    OpenedFile opened = openQuietly(fileWith({5, 7, 3}));
    auto five = opened->startedTrack(0);
    auto seven = opened->startedTrack(1);
    auto three = opened->startedTrack(2);
    mEvents.clear();
    three->stop();
    seven->stop();
    five->stop();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"),
                ElementsAre(stopLine(3, 5), stopLine(7, 5), stopLine(5, -1)));
}

TEST_F(LifecycleTest, SerialNumbersAreComparedUnsignedAndShownSigned) {
    OpenedFile opened = openQuietly(fileWith({9, 0x80000001, 0xFFFFFFFE}));
    auto nine = opened->startedTrack(0);
    auto large = opened->startedTrack(1);
    auto largest = opened->startedTrack(2);
    mEvents.clear();
    nine->stop();
    large->stop();
    largest->stop();
    EXPECT_THAT(trackLines(),
                ElementsAre(infoLine("OgmTrack:[stop] mSerialNo[9]\n"), stopLine(9, -2147483647),
                            infoLine("OgmTrack:[stop] mSerialNo[-2147483647]\n"),
                            stopLine(-2147483647, -2), infoLine("OgmTrack:[stop] mSerialNo[-2]\n"),
                            stopLine(-2, -1)));
}

TEST_F(LifecycleTest, ATrackWithALargeSerialNumberMovesTheFileAsAnyOther) {
    OpenedFile opened = openQuietly(fileWith({0x80000001, 4}));
    auto large = opened->startedTrack(0);
    auto small = opened->startedTrack(1);
    EXPECT_TRUE(movesTheFile(*large));
    EXPECT_FALSE(movesTheFile(*small));
    EXPECT_EQ(large->read().bytes, payload(0, 1));
}

TEST_F(LifecycleTest, WithASelectedSerialNumberOfAllOnesTheNextTrackTakesItsPlace) {
    // This number also means "none".
    OpenedFile opened = openQuietly(fileWith({0xFFFFFFFF, 4}));
    auto first = opened->startedTrack(0);
    EXPECT_TRUE(movesTheFile(*first));
    auto second = opened->startedTrack(1);
    EXPECT_FALSE(movesTheFile(*first));
    EXPECT_TRUE(movesTheFile(*second));
    mEvents.clear();
    second->stop();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"), ElementsAre(stopLine(4, -1)));
    EXPECT_TRUE(movesTheFile(*first));
}

TEST_F(LifecycleTest, ARestartedTrackIsSelectedWhenNoOtherIs) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto seven = opened->startedTrack(0);
    auto three = opened->startedTrack(1);
    three->stop();
    seven->stop();
    EXPECT_EQ(three->start(), AMEDIA_OK);
    EXPECT_EQ(seven->start(), AMEDIA_OK);
    EXPECT_TRUE(movesTheFile(*three));
    EXPECT_FALSE(movesTheFile(*seven));
}

TEST_F(LifecycleTest, ARestartedTrackDoesNotTakeTheSelectionBack) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto seven = opened->startedTrack(0);
    auto three = opened->startedTrack(1);
    seven->stop();
    seven->start();
    EXPECT_TRUE(movesTheFile(*three));
    EXPECT_FALSE(movesTheFile(*seven));
}

TEST_F(LifecycleTest, ASecondStartAfterAStopIsLoggedAsAnError) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto track = opened->startedTrack(0);
    track->stop();
    mEvents.clear();
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_THAT(trackLines(),
                ElementsAre(infoLine("OgmTrack:[start] mSerialNo[7]\n"),
                            infoLine("OgmTrack:[start] mSerialNo[7]\n"), alreadyStarted(7)));
    EXPECT_EQ(track->read().bytes, payload(0, 0));
}

TEST_F(LifecycleTest, AStoppedTrackIsReadFromItsQueueAndGetsNoMore) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto first = opened->startedTrack(0);
    auto second = opened->startedTrack(1);
    EXPECT_EQ(first->read().bytes, payload(0, 0));
    first->stop();
    for (size_t i = 1; i < 9; ++i) {
        EXPECT_EQ(first->read().bytes, payload(0, i));
    }
    EXPECT_EQ(first->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(first->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(LifecycleTest, ARestartedTrackContinuesWithItsQueueAndThenFromWhereTheFileIs) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto first = opened->startedTrack(0);
    auto second = opened->startedTrack(1);
    EXPECT_EQ(first->read().bytes, payload(0, 0));
    first->stop();
    // The second track continues to the packet of 2 s; the first one loses its packets meanwhile.
    for (size_t i = 0; i < 41; ++i) {
        EXPECT_EQ(second->read().bytes, payload(1, i));
    }
    first->start();
    for (size_t i = 1; i < 9; ++i) {
        EXPECT_EQ(first->read().bytes, payload(0, i));
    }
    // The open packet is closed by the first packet after the restart.
    EXPECT_EQ(first->read().bytes, payload(0, 9));
    const ReadResult result = first->read();
    EXPECT_EQ(result.bytes, payload(0, 50));
    // The granule position of the track's latest page is the one before the stop.
    EXPECT_EQ(result.timeUs, 10 * kPacketUs);
    EXPECT_EQ(first->read().timeUs, 51 * kPacketUs);
}

TEST_F(LifecycleTest, ReadsAfterTheEndReportItAgainAndASeekBringsTheTrackBack) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto track = opened->startedTrack(0);
    const size_t count = track->readAll().size();
    // The last page has no later one, so its packet is not read; the packet before stays open.
    EXPECT_EQ(count, kPackets - 2);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    }
    EXPECT_EQ(track->readAt(0).bytes, payload(0, 0));
    EXPECT_EQ(track->readAll().size(), kPackets - 3);
}

TEST_F(LifecycleTest, TenRoundsOfStartAndStopLoseNothingThatWasNotRead) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto first = opened->track(0);
    auto second = opened->track(1);
    size_t next = 0;
    for (int round = 0; round < 10; ++round) {
        EXPECT_EQ(first->start(), AMEDIA_OK);
        EXPECT_EQ(second->start(), AMEDIA_OK);
        for (int i = 0; i < 3; ++i, ++next) {
            EXPECT_EQ(first->read().bytes, payload(0, next));
            EXPECT_EQ(second->read().bytes, payload(1, next));
        }
        EXPECT_EQ(first->stop(), AMEDIA_OK);
        EXPECT_EQ(second->stop(), AMEDIA_OK);
    }
}

TEST_F(LifecycleTest, TenRoundsOfFreshTracksOfOneExtractorContinueWithTheFile) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    for (int round = 0; round < 10; ++round) {
        auto first = opened->startedTrack(0);
        auto second = opened->startedTrack(1);
        EXPECT_EQ(first->readAt(0).bytes, payload(0, 0));
        EXPECT_EQ(second->read().bytes, payload(1, 0));
        first->stop();
        second->stop();
    }
}

TEST_F(LifecycleTest, ABadIndexGivesNoTrackAndChangesNothing) {
    OpenedFile opened = openQuietly(fileWith({7}));
    EXPECT_EQ(opened->track(1), nullptr);
    EXPECT_EQ(opened->track(SIZE_MAX), nullptr);
    auto track = opened->startedTrack(0);
    EXPECT_EQ(opened->track(1), nullptr);
    EXPECT_TRUE(movesTheFile(*track));
    EXPECT_EQ(opened->track(size_t{1} << 32), nullptr);
    Format format;
    EXPECT_EQ(opened->getTrackMetaData(format, 1), AMEDIA_ERROR_UNKNOWN);
}

TEST_F(LifecycleTest, FreeingATrackStopsItFirst) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto first = opened->startedTrack(0);
    auto second = opened->startedTrack(1);
    first->read();
    mEvents.clear();
    first.reset();
    EXPECT_THAT(trackLines(),
                ElementsAre(infoLine("Track Type[5] destroy\n"), infoLine("~OgmTrack call stop()!"),
                            infoLine("OgmTrack:[stop] mSerialNo[7]\n"), stopLine(7, 3)));
    EXPECT_TRUE(movesTheFile(*second));
}

TEST_F(LifecycleTest, FreeingAStoppedTrackDoesNotStopItAgain) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto track = opened->startedTrack(0);
    track->stop();
    mEvents.clear();
    track.reset();
    EXPECT_THAT(trackLines(), ElementsAre(infoLine("Track Type[5] destroy\n")));
}

TEST_F(LifecycleTest, ATrackThatIsNeverStartedIsRegisteredAndFreedLikeAnyOther) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto first = opened->track(0);
    auto second = opened->startedTrack(1);
    EXPECT_FALSE(movesTheFile(*second));
    // Its packets are queued meanwhile. One packet of the second track has been read already.
    EXPECT_EQ(second->readAll().size(), kPackets - 3);
    EXPECT_EQ(first->start(), AMEDIA_OK);
    EXPECT_EQ(first->read().bytes, payload(0, 0));
    first.reset();
    EXPECT_TRUE(movesTheFile(*second));
}

TEST_F(LifecycleTest, NothingButFreesHappensToTracksThatWereOnlyMade) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto first = opened->track(0);
    auto second = opened->track(1);
    mEvents.clear();
    second.reset();
    first.reset();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"), ElementsAre(stopLine(3, 7), stopLine(7, -1)));
    EXPECT_THAT(mEvents.reads(), IsEmpty());
}

TEST_F(LifecycleTest, ASecondTrackOfAnIndexTakesThePacketsOfTheFirst) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto first = opened->startedTrack(0);
    EXPECT_EQ(first->read().bytes, payload(0, 0));
    auto second = opened->startedTrack(0);
    // The first track gets ten packets. The next page starts the second track's clock, and its
    // packet is dropped.
    const ReadResult result = second->read();
    EXPECT_EQ(result.bytes, payload(0, 11));
    EXPECT_EQ(result.timeUs, 11 * kPacketUs);
    // The first track still has what had been queued for it.
    for (size_t i = 1; i < 9; ++i) {
        EXPECT_EQ(first->read().bytes, payload(0, i));
    }
    EXPECT_EQ(first->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(LifecycleTest, BothTracksOfAnIndexMoveTheFileButOnlyTheSecondIsReset) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto first = opened->startedTrack(0);
    first->read();
    auto second = opened->startedTrack(0);
    second->read();
    mEvents.clear();
    EXPECT_EQ(first->readAt(0).bytes, payload(0, 1));
    EXPECT_TRUE(mEvents.holds(debugLine("Start seekToTime")));
    EXPECT_EQ(mEvents.count(resetLine(7)), 1U);
    EXPECT_EQ(second->read().bytes, payload(0, 0));
}

TEST_F(LifecycleTest, StoppingTheFirstTrackOfAnIndexUnregistersTheSecond) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto first = opened->startedTrack(0);
    auto second = opened->startedTrack(0);
    auto other = opened->startedTrack(1);
    EXPECT_EQ(second->read().bytes, payload(0, 0));
    mEvents.clear();
    first.reset();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"), ElementsAre(stopLine(7, 3)));
    EXPECT_FALSE(movesTheFile(*second));
    EXPECT_TRUE(movesTheFile(*other));
    // Its queue was not reset, but gets nothing more.
    while (second->read().status == AMEDIA_OK) {
    }
    EXPECT_EQ(other->readAt(0).status, AMEDIA_OK);
    EXPECT_EQ(second->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

}  // namespace
}  // namespace android::ogm::test::lifecycle_test
