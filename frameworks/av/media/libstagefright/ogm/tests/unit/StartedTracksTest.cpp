// SPDX-License-Identifier: Apache-2.0
#include "stream/StartedTracks.h"

#include <limits>
#include <memory>
#include <optional>
#include <vector>

#include "LogTest.h"

namespace android::ogm::test::started_tracks_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/** A track that counts the calls it gets. */
class FakeTrack {
  public:
    explicit FakeTrack(int64_t timeUs = 0) : mTimeUs(timeUs) {}

    void resetPageState(bool isPastFirstDataPage) { resets.push_back(isPastFirstDataPage); }
    void signalDiscontinuity() { ++discontinuities; }
    int64_t currentTimeUs() const { return mTimeUs; }

    std::vector<bool> resets;
    int discontinuities = 0;

  private:
    const int64_t mTimeUs;
};

LogLine stopped(int32_t serialNo, int32_t selected) {
    return infoLine(formatted("trackStop:serialNo=%d, mSelectedSerialNo=%d", serialNo, selected));
}

class StartedTracksTest : public LogTest {
  protected:
    FakeTrack* trackOf(uint32_t serialNo) const { return mTracks.find(serialNo).track; }
    bool isRegistered(uint32_t serialNo) const { return mTracks.find(serialNo).isRegistered; }

    StartedTracks<FakeTrack> mTracks;
    FakeTrack mFirst;
    FakeTrack mSecond;
    FakeTrack mThird;
};

TEST_F(StartedTracksTest, ATrackIsFoundByItsSerialNumber) {
    mTracks.add(7, &mFirst);
    mTracks.add(0xFFFFFFFE, &mSecond);
    EXPECT_EQ(trackOf(7), &mFirst);
    EXPECT_EQ(trackOf(0xFFFFFFFE), &mSecond);
    EXPECT_FALSE(isRegistered(3));
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(StartedTracksTest, ANewTrackTakesThePlaceOfAnotherOneOfItsStream) {
    mTracks.add(7, &mFirst);
    mTracks.add(7, &mSecond);
    EXPECT_EQ(trackOf(7), &mSecond);
}

TEST_F(StartedTracksTest, ATrackThatStartsAgainDoesNot) {
    mTracks.add(7, &mFirst);
    EXPECT_FALSE(mTracks.trackStart(7, &mSecond));
    EXPECT_EQ(trackOf(7), &mFirst);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(errorLine("[start] Error, the serialNo[7] is already started!!!")));
}

TEST_F(StartedTracksTest, AStoppedTrackIsNotFoundUntilItStartsAgain) {
    mTracks.add(7, &mFirst);
    mTracks.trackStop(7);
    EXPECT_FALSE(isRegistered(7));
    mEvents.clear();
    EXPECT_TRUE(mTracks.trackStart(7, &mFirst));
    EXPECT_EQ(trackOf(7), &mFirst);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(StartedTracksTest, TheFirstOneIsSelectedWhetherItIsNewOrStartsAgain) {
    mTracks.add(7, &mFirst);
    mTracks.add(3, &mSecond);
    EXPECT_TRUE(mTracks.isSelected(7));
    EXPECT_FALSE(mTracks.isSelected(3));
    mTracks.trackStop(7);
    mTracks.trackStop(3);
    mTracks.trackStart(9, &mThird);
    mTracks.trackStart(7, &mFirst);
    EXPECT_TRUE(mTracks.isSelected(9));
}

TEST_F(StartedTracksTest, StoppingTheSelectedOneSelectsTheSmallestSerialNumberLeft) {
    mTracks.add(5, &mFirst);
    mTracks.add(0xFFFFFFFE, &mSecond);
    mTracks.add(3, &mThird);
    mTracks.trackStop(5);
    mTracks.trackStop(3);
    mTracks.trackStop(-2);
    EXPECT_THAT(mEvents.lines(), ElementsAre(stopped(5, 3), stopped(3, -2), stopped(-2, -1)));
}

TEST_F(StartedTracksTest, StoppingAnotherOneDoesNotChangeTheSelection) {
    mTracks.add(5, &mFirst);
    mTracks.add(3, &mSecond);
    mTracks.trackStop(3);
    mTracks.trackStop(3);
    EXPECT_TRUE(mTracks.isSelected(5));
    EXPECT_THAT(mEvents.lines(), ElementsAre(stopped(3, 5), stopped(3, 5)));
}

TEST_F(StartedTracksTest, TheSerialNumberOfAllOnesMeansNone) {
    EXPECT_TRUE(mTracks.isSelected(0xFFFFFFFF));
    mTracks.add(0xFFFFFFFF, &mFirst);
    mTracks.add(3, &mSecond);
    EXPECT_TRUE(mTracks.isSelected(3));
}

TEST_F(StartedTracksTest, AllAreResetAndToldOfADiscontinuity) {
    mTracks.add(7, &mFirst);
    mTracks.add(3, &mSecond);
    mTracks.resetPageState(true);
    mTracks.resetPageState(false);
    mTracks.signalDiscontinuity();
    EXPECT_THAT(mFirst.resets, ElementsAre(true, false));
    EXPECT_THAT(mSecond.resets, ElementsAre(true, false));
    EXPECT_EQ(mFirst.discontinuities, 1);
    EXPECT_EQ(mSecond.discontinuities, 1);
}

TEST_F(StartedTracksTest, AForgottenTrackLeavesItsStreamRegistered) {
    mTracks.add(7, &mFirst);
    mTracks.add(3, &mSecond);
    mTracks.forget(&mFirst);
    EXPECT_TRUE(isRegistered(7));
    EXPECT_EQ(trackOf(7), nullptr);
    EXPECT_TRUE(mTracks.isSelected(7));
    EXPECT_FALSE(mTracks.trackStart(7, &mThird));
    mTracks.resetPageState(true);
    mTracks.signalDiscontinuity();
    EXPECT_THAT(mFirst.resets, IsEmpty());
    EXPECT_EQ(mFirst.discontinuities, 0);
    mTracks.trackStop(7);
    EXPECT_FALSE(isRegistered(7));
    EXPECT_TRUE(mTracks.isSelected(3));
}

TEST_F(StartedTracksTest, ForgettingOneThatIsNotThereChangesNothing) {
    mTracks.add(7, &mFirst);
    mTracks.forget(&mSecond);
    EXPECT_EQ(trackOf(7), &mFirst);
}

/** The time reached by tracks with these times; nothing stands for a destroyed track. */
int64_t timeOfAll(const std::vector<std::optional<int64_t>>& times) {
    std::vector<std::unique_ptr<FakeTrack>> tracks;
    StartedTracks<FakeTrack> started;
    for (const std::optional<int64_t>& timeUs : times) {
        tracks.push_back(std::make_unique<FakeTrack>(timeUs.value_or(0)));
        started.add(static_cast<uint32_t>(tracks.size()), tracks.back().get());
        if (!timeUs) {
            started.forget(tracks.back().get());
        }
    }
    return started.getCurrentTimeUs();
}

TEST(FurthestTrackTest, GivesTheTime) {
    EXPECT_EQ(timeOfAll({3, 5, 4}), 5);
    EXPECT_EQ(timeOfAll({7}), 7);
}

TEST(FurthestTrackTest, GivesNoTimeWhileThatOfAnotherTrackIsUnknown) {
    EXPECT_EQ(timeOfAll({3, 0, 4}), 0);
    EXPECT_EQ(timeOfAll({0, 3}), 0);
}

TEST(FurthestTrackTest, IsNeverOneWithANegativeTime) {
    EXPECT_EQ(timeOfAll({3, std::numeric_limits<int64_t>::min()}), 3);
    EXPECT_EQ(timeOfAll({-5}), 0);
}

TEST(FurthestTrackTest, IsNoTrackThatWasForgotten) {
    EXPECT_EQ(timeOfAll({3, std::nullopt, 5}), 5);
    EXPECT_EQ(timeOfAll({std::nullopt}), 0);
    EXPECT_EQ(timeOfAll({}), 0);
}

}  // namespace
}  // namespace android::ogm::test::started_tracks_test
