// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "PluginTest.h"
#include "ScopedProperty.h"

namespace android::ogm::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

LogLine stopped(int serialNo, int selectedSerialNo) {
    return infoLine(
            formatted("trackStop:serialNo=%d, mSelectedSerialNo=%d", serialNo, selectedSerialNo));
}

class TrackLifecycleTest : public PluginTest {
  protected:
    /** A file with one video stream for each serial number, and pages enough to read of each. */
    static OgmFile streams(const std::vector<uint32_t>& serialNos) {
        OgmFile file;
        for (const uint32_t serialNo : serialNos) {
            file.addHeader(serialNo, VideoHeader());
        }
        for (uint64_t page = 1; page <= 30; ++page) {
            for (const uint32_t serialNo : serialNos) {
                file.addData(serialNo, page, dataPacket(kPlainPacket, {1, 2, 3}));
            }
        }
        return file;
    }
};

TEST_F(TrackLifecycleTest, StartIsLoggedAndLeavesARegisteredTrackAlone) {
    OpenedFile opened = open(streams({3}));
    const auto track = opened->track(0);
    mEvents.clear();
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_THAT(mEvents.events(), ElementsAre(Event(infoLine("OgmTrack:[start] mSerialNo[3]\n"))));
}

TEST_F(TrackLifecycleTest, StopIsLoggedWithTheSelectionItLeaves) {
    OpenedFile opened = open(streams({3}));
    const auto track = opened->track(0);
    mEvents.clear();
    EXPECT_EQ(track->stop(), AMEDIA_OK);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("OgmTrack:[stop] mSerialNo[3]\n"), stopped(3, -1)));
}

TEST_F(TrackLifecycleTest, ATrackDestroyedWithoutAStopStopsItself) {
    OpenedFile opened = open(streams({3}));
    auto track = opened->startedTrack(0);
    mEvents.clear();
    track.reset();
    EXPECT_THAT(
            mEvents.lines(),
            ElementsAre(infoLine("Track Type[22] destroy\n"), infoLine("~OgmTrack call stop()!"),
                        infoLine("OgmTrack:[stop] mSerialNo[3]\n"), stopped(3, -1)));
}

TEST_F(TrackLifecycleTest, AStoppedTrackIsDestroyedWithoutAnotherStop) {
    OpenedFile opened = open(streams({3}));
    auto track = opened->startedTrack(0);
    track->stop();
    mEvents.clear();
    track.reset();
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Track Type[22] destroy\n")));
}

TEST_F(TrackLifecycleTest, StoppingTheSelectedTrackSelectsTheSmallestOfTheOthers) {
    OpenedFile opened = open(streams({5, 7, 3}));
    const auto selected = opened->track(0);
    const auto seven = opened->track(1);
    const auto three = opened->track(2);
    mEvents.clear();
    selected->stop();
    three->stop();
    seven->stop();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"),
                ElementsAre(stopped(5, 3), stopped(3, 7), stopped(7, -1)));
}

TEST_F(TrackLifecycleTest, SerialNumbersAreOrderedAsUnsignedNumbers) {
    OpenedFile opened = open(streams({9, 0x80000000, 10}));
    const auto selected = opened->track(0);
    const auto large = opened->track(1);
    const auto ten = opened->track(2);
    mEvents.clear();
    selected->stop();
    ten->stop();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"),
                ElementsAre(stopped(9, 10), stopped(10, -2147483647 - 1)));
}

TEST_F(TrackLifecycleTest, StoppingAnotherTrackKeepsTheSelection) {
    OpenedFile opened = open(streams({7, 3}));
    const auto selected = opened->track(0);
    const auto other = opened->track(1);
    mEvents.clear();
    other->stop();
    other->stop();  // it is not registered any more
    EXPECT_THAT(mEvents.linesBeginning("trackStop"), ElementsAre(stopped(3, 7), stopped(3, 7)));
}

TEST_F(TrackLifecycleTest, AStartAfterAStopRegistersTheTrackAgainAndASecondOneIsAnError) {
    OpenedFile opened = open(streams({3}));
    const auto track = opened->track(0);
    track->stop();
    mEvents.clear();
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("OgmTrack:[start] mSerialNo[3]\n"),
                            infoLine("OgmTrack:[start] mSerialNo[3]\n"),
                            errorLine("[start] Error, the serialNo[3] is already started!!!")));
}

TEST_F(TrackLifecycleTest, AStartWithoutAnySelectionSelectsTheTrack) {
    OpenedFile opened = open(streams({3, 7}));
    const auto three = opened->track(0);
    const auto seven = opened->track(1);
    three->stop();
    seven->stop();  // nothing is selected now
    seven->start();
    three->start();
    mEvents.clear();
    three->stop();
    EXPECT_TRUE(mEvents.holds(stopped(3, 7)));
}

TEST_F(TrackLifecycleTest, ATrackStartedAgainGoesOnReading) {
    OpenedFile opened = open(streams({3}));
    const auto track = opened->startedTrack(0);
    ASSERT_EQ(track->read().timeUs, 0);
    track->stop();
    track->start();
    EXPECT_EQ(track->read().timeUs, 40000);
    // 30 pages, of which the last is not cut and the one before stays open.
    EXPECT_EQ(track->readAll().size(), 26U);
}

TEST_F(TrackLifecycleTest, AStoppedTrackIsServedFromItsQueueAndReceivesNothing) {
    OpenedFile opened = open(streams({3}));
    const auto track = opened->startedTrack(0);
    ASSERT_EQ(track->read().status, AMEDIA_OK);  // nine packets stay in the queue
    track->stop();
    EXPECT_EQ(track->readAll().size(), 8U);
}

TEST_F(TrackLifecycleTest, ATrackStoppedStartedAndDestroyedStaysRegistered) {
    OpenedFile opened = open(streams({3, 7}));
    auto three = opened->startedTrack(0);
    const auto seven = opened->startedTrack(1);
    three->stop();
    three->start();
    mEvents.clear();
    three.reset();
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Track Type[22] destroy\n")));
    mEvents.clear();
    // The pages of the destroyed track are met and its packets dropped.
    EXPECT_THAT(seven->readAll(), ::testing::Not(IsEmpty()));
    seven->stop();
    EXPECT_TRUE(mEvents.holds(stopped(7, 3)));
}

TEST_F(TrackLifecycleTest, ASecondTrackOfOneStreamTakesOverItsPackets) {
    OpenedFile opened = open(streams({3}));
    const auto first = opened->startedTrack(0);
    const auto second = opened->startedTrack(0);
    EXPECT_EQ(second->read().status, AMEDIA_OK);
    EXPECT_EQ(first->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(TrackLifecycleTest, DestroyingOneOfTwoTracksOfAStreamUnregistersItsSerialNumber) {
    OpenedFile opened = open(streams({3}));
    auto first = opened->startedTrack(0);
    const auto second = opened->startedTrack(0);
    first.reset();
    EXPECT_EQ(second->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(TrackLifecycleTest, ATrackNeverStartedReceivesPackets) {
    OpenedFile opened = open(streams({3, 7}));
    const auto reading = opened->startedTrack(1);
    const auto waiting = opened->track(0);
    ASSERT_EQ(reading->read().status, AMEDIA_OK);
    mEvents.clear();
    waiting->start();
    ASSERT_EQ(waiting->read().status, AMEDIA_OK);
    EXPECT_THAT(mEvents.reads(), IsEmpty());  // its queue is full already
}

TEST_F(TrackLifecycleTest, TheFormatIsThatOfTheStreamWithTheDurationOfTheFile) {
    auto source = sourceOf(streams({3}));
    source->setReportedSize(650520);
    OpenedFile opened = open(std::move(source));
    const auto track = opened->track(0);
    mEvents.clear();
    const Format format;
    EXPECT_EQ(track->getFormat(format), AMEDIA_OK);
    EXPECT_EQ(format.string(AMEDIAFORMAT_KEY_MIME), "video/avc");
    EXPECT_EQ(format.int32(AMEDIAFORMAT_KEY_WIDTH), 320);
    EXPECT_EQ(format.int64(AMEDIAFORMAT_KEY_DURATION), 1200000);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("getFormat: Track type[22]")));
}

TEST_F(TrackLifecycleTest, ReadsDoNotPromiseNotToBlock) {
    OpenedFile opened = open(streams({3}));
    EXPECT_FALSE(opened->track(0)->supportsNonBlockingRead());
}

TEST_F(TrackLifecycleTest, TheVideoDumpPropertyChangesNothing) {
    const auto eventsOfAll = [this] {
        mEvents.clear();
        OpenedFile opened = open(streams({3}));
        opened->startedTrack(0)->readAll();
        return mEvents.events();
    };
    const std::vector<Event> without = eventsOfAll();
    const ScopedProperty dump("vendor.zor.ogmextractor.dump.video", "1");
    EXPECT_EQ(eventsOfAll(), without);
}

TEST_F(TrackLifecycleTest, TheBufferGroupBeginsWithOneBufferOf256BytesAndGrows) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    std::vector<Bytes> packets{dataPacket(0, pattern(10, 1)), dataPacket(0, pattern(300, 1))};
    packets.insert(packets.end(), 12, dataPacket(0, {1}));
    file.addPages(1, packets);
    OpenedFile opened = open(file);
    const auto track = opened->startedTrack(0);
    EXPECT_EQ(track->read().capacity, 256U);
    EXPECT_EQ(track->read().capacity, 450U);
}

TEST_F(TrackLifecycleTest, UpTo64BuffersAreOutAtOnce) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addPages(1, std::vector<Bytes>(80, dataPacket(0, {1})));
    OpenedFile opened = open(file);
    const auto track = opened->startedTrack(0);
    std::vector<CMediaBuffer*> kept;
    for (int i = 0; i < 64; ++i) {
        kept.push_back(track->readAndKeep());
        ASSERT_NE(kept.back(), nullptr);
    }
    std::sort(kept.begin(), kept.end());
    EXPECT_EQ(std::unique(kept.begin(), kept.end()), kept.end());
    for (CMediaBuffer* buffer : kept) {
        Track::release(buffer);
    }
}

TEST_F(TrackLifecycleTest, ManyRoundsOfStartAndStopLoseNothing) {
    OpenedFile opened = open(streams({3}));
    const auto track = opened->track(0);
    std::vector<int64_t> times;
    for (int round = 0; round < 20; ++round) {
        track->start();
        times.push_back(track->read().timeUs.value_or(-1));
        track->stop();
    }
    for (size_t i = 0; i < times.size(); ++i) {
        EXPECT_EQ(times[i], static_cast<int64_t>(i) * 40000);
    }
}

}  // namespace
}  // namespace android::ogm::test
