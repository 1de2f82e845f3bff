// SPDX-License-Identifier: Apache-2.0
#include "LifecycleFixture.h"

namespace android::ogm::test::freed_track_test {
namespace {

using ::testing::ElementsAre;

/** A track that was stopped, started again and freed: its serial number stays registered. */
class FreedTrackTest : public LifecycleTest {
  protected:
    /** Makes a track, stops it, starts it again and frees it. */
    void leaveRegistered(OpenedFile& opened, size_t index) {
        auto track = opened->startedTrack(index);
        track->stop();
        track->start();
        mEvents.clear();
        track.reset();
        EXPECT_THAT(trackLines(), ElementsAre(infoLine("Track Type[5] destroy\n")));
    }
};

TEST_F(FreedTrackTest, IsNotResetByASeekAndHasNoTimeInItsScan) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto other = opened->startedTrack(0);
    leaveRegistered(opened, 1);
    EXPECT_EQ(other->read().bytes, payload(0, 0));
    mEvents.clear();
    // If its time were 0, the scan would continue to the end of the file.
    EXPECT_EQ(other->readAt(5000000).bytes, payload(0, 51));
    EXPECT_EQ(mEvents.count(resetLine(7)), 1U);
    EXPECT_EQ(mEvents.count(resetLine(3)), 0U);
}

TEST_F(FreedTrackTest, LeavesItsPagesReadAndItsPacketsDropped) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto other = opened->startedTrack(0);
    leaveRegistered(opened, 1);
    mEvents.clear();
    other->read();
    constexpr int64_t kHeaders = 81 + 81;
    constexpr int64_t kPage = 51;
    const auto header = [](int64_t page) {
        const int64_t offset = kHeaders + page * kPage;
        return std::vector<ReadCall>{{offset, 4, 4}, {offset, 27, 27}, {offset + 27, 1, 1}};
    };
    const auto packet = [](int64_t page) {
        return std::vector<ReadCall>{{kHeaders + page * kPage + 28, 23, 23}};
    };
    std::vector<ReadCall> expected;
    // Each page of either stream looks past the next one for its stream's next granule position.
    for (const auto& reads : {header(0), header(1), header(2), packet(0), header(1), header(2),
                              header(3), packet(1), header(2), header(3), header(4), packet(2)}) {
        expected.insert(expected.end(), reads.begin(), reads.end());
    }
    std::vector<ReadCall> reads = mEvents.reads();
    reads.resize(expected.size());
    EXPECT_EQ(reads, expected);
    // Nothing is logged about packets of the freed track.
    EXPECT_EQ(mEvents.linesBeginning("packet info:").size(), 10U);
}

TEST_F(FreedTrackTest, EndsTheReadsOfOtherTracksAtTheLastPageOfItsStream) {
    OgmFile file;
    file.addHeader(7, AudioHeader());
    file.addHeader(3, AudioHeader());
    for (size_t i = 0; i < 20; ++i) {
        file.addData(7, (i + 1) * 320, audioPacket(payload(0, i)));
        if (i == 2 || i == 3) {
            file.addData(3, (i + 1) * 320, audioPacket(payload(1, i)));
        }
    }
    OpenedFile opened = openQuietly(file);
    auto other = opened->startedTrack(0);
    leaveRegistered(opened, 1);
    mEvents.clear();
    EXPECT_EQ(other->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_THAT(mEvents.linesBeginning("getNextGranulePosition"),
                ElementsAre(errorLine(formatted("getNextGranulePosition: Cannot find a page "
                                                "start,LINE:2175 from 0x%08zX\n",
                                                file.size())),
                            infoLine("getNextGranulePosition fail, return -10006")));
    // The packets before that page, except the open one.
    EXPECT_EQ(other->readAll().size(), 3U);
    EXPECT_EQ(other->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(FreedTrackTest, CanStillBecomeTheSelectedTrack) {
    OpenedFile opened = openQuietly(fileWith({7, 3, 9}));
    auto seven = opened->startedTrack(0);
    auto nine = opened->startedTrack(2);
    leaveRegistered(opened, 1);
    mEvents.clear();
    seven->stop();
    EXPECT_THAT(mEvents.linesBeginning("trackStop"), ElementsAre(stopLine(7, 3)));
    // So no track that exists moves the file.
    EXPECT_FALSE(movesTheFile(*nine));
    EXPECT_FALSE(movesTheFile(*seven));
}

TEST_F(FreedTrackTest, StillKeepsAnotherTrackOfItsStreamFromStarting) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto first = opened->startedTrack(0);
    auto second = opened->startedTrack(0);
    second->stop();
    first->stop();
    first->start();
    first.reset();
    mEvents.clear();
    EXPECT_EQ(second->start(), AMEDIA_OK);
    EXPECT_THAT(trackLines(),
                ElementsAre(infoLine("OgmTrack:[start] mSerialNo[7]\n"), alreadyStarted(7)));
    EXPECT_EQ(second->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(FreedTrackTest, IsRemovedByTheStopOfAnotherTrackOfItsStream) {
    OpenedFile opened = openQuietly(fileWith({7}));
    auto first = opened->startedTrack(0);
    auto second = opened->startedTrack(0);
    second->stop();
    first->stop();
    first->start();
    first.reset();
    second->stop();
    mEvents.clear();
    second->start();
    EXPECT_EQ(mEvents.count(alreadyStarted(7)), 0U);
    EXPECT_EQ(second->readAt(0).bytes, payload(0, 0));
}

TEST_F(FreedTrackTest, IsReplacedByANewTrackOfItsStream) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    leaveRegistered(opened, 0);
    auto track = opened->startedTrack(0);
    EXPECT_EQ(track->readAt(5000000).bytes, payload(0, 51));
    auto other = opened->startedTrack(1);
    EXPECT_TRUE(movesTheFile(*track));
    EXPECT_EQ(mEvents.count(resetLine(7)), 1U);
    EXPECT_EQ(mEvents.count(resetLine(3)), 1U);
}

TEST_F(FreedTrackTest, LeavesTheSelectionThatItHad) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    leaveRegistered(opened, 0);
    auto other = opened->startedTrack(1);
    EXPECT_FALSE(movesTheFile(*other));
    auto again = opened->startedTrack(0);
    EXPECT_TRUE(movesTheFile(*again));
}

TEST_F(FreedTrackTest, AllTracksMayBeLeftRegisteredWhenTheExtractorGoes) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    leaveRegistered(opened, 0);
    leaveRegistered(opened, 1);
    mEvents.clear();
    { const Extractor dropped = std::move(opened.extractor); }
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("~OgmExtractor")));
}

/** A stopped track is not registered anywhere, so it may be freed after its extractor. */
class StoppedTrackTest : public LifecycleTest {
  protected:
    void freeExtractorThenTrack(OpenedFile opened, std::unique_ptr<Track> track) {
        track->releaseExtractor();
        mEvents.clear();
        { const Extractor dropped = std::move(opened.extractor); }
        EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("~OgmExtractor")));
        mEvents.clear();
        track.reset();
        EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("Track Type[5] destroy\n")));
    }
};

TEST_F(StoppedTrackTest, TouchesNothingWhenItsExtractorWasFreedFirst) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto track = opened->startedTrack(0);
    track->read();
    track->stop();
    freeExtractorThenTrack(std::move(opened), std::move(track));
}

TEST_F(StoppedTrackTest, TouchesNothingEitherWhenItWasStartedInBetween) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto track = opened->startedTrack(0);
    track->stop();
    track->start();
    track->read();
    track->stop();
    freeExtractorThenTrack(std::move(opened), std::move(track));
}

}  // namespace
}  // namespace android::ogm::test::freed_track_test
