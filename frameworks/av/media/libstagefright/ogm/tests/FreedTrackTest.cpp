// SPDX-License-Identifier: Apache-2.0
#include "LifecycleFixture.h"

namespace android::ogm::test {
namespace {

using ::testing::ElementsAre;

/** A track that was stopped, started again and then freed: its serial number stays registered. */
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

TEST_F(FreedTrackTest, IsPassedOverByReadsAndSeeksOfOtherTracks) {
    OpenedFile opened = openQuietly(fileWith({7, 3}));
    auto other = opened->startedTrack(0);
    leaveRegistered(opened, 1);
    EXPECT_EQ(other->read().bytes, payload(0, 0));
    mEvents.clear();
    // It gets no reset, and it does not keep the time measure of the scan at zero.
    EXPECT_EQ(other->readAt(5000000).bytes, payload(0, 51));
    EXPECT_EQ(mEvents.count(resetLine(7)), 1U);
    EXPECT_EQ(mEvents.count(resetLine(3)), 0U);
}

TEST_F(FreedTrackTest, GetsNoGranuleRefreshAndItsPacketsAreDiscarded) {
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
    // The first page looks past the freed track's page for its next granule position; the freed
    // track's page looks for none.
    for (const auto& reads : {header(0), header(1), header(2), packet(0), header(1), packet(1),
                              header(2), header(3), header(4), packet(2)}) {
        expected.insert(expected.end(), reads.begin(), reads.end());
    }
    std::vector<ReadCall> reads = mEvents.reads();
    reads.resize(expected.size());
    EXPECT_EQ(reads, expected);
}

TEST_F(FreedTrackTest, StillCountsWhenAnotherTrackIsSelected) {
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

}  // namespace
}  // namespace android::ogm::test
