// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "LifecycleFixture.h"
#include "ScopedProperty.h"

namespace android::ogm::test::track_lifecycle_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TrackLifecycleTest : public PluginTest {
  protected:
    /** A file with a video stream for each serial number, and enough pages of each to read. */
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

TEST_F(TrackLifecycleTest, StartIsLoggedAndDoesNotChangeARegisteredTrack) {
    OpenedFile opened = open(streams({3}));
    const auto track = opened->track(0);
    mEvents.clear();
    EXPECT_EQ(track->start(), AMEDIA_OK);
    EXPECT_THAT(mEvents.events(), ElementsAre(Event(infoLine("OgmTrack:[start] mSerialNo[3]\n"))));
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
    // The pages of the destroyed track are read and its packets dropped.
    EXPECT_THAT(seven->readAll(), ::testing::Not(IsEmpty()));
    seven->stop();
    EXPECT_TRUE(mEvents.holds(stopLine(7, 3)));
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

TEST_F(TrackLifecycleTest, UpTo64BuffersCanBeHeldAtOnce) {
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

}  // namespace
}  // namespace android::ogm::test::track_lifecycle_test
