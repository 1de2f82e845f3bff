// SPDX-License-Identifier: Apache-2.0
#include "PluginTest.h"

namespace android::ogm::test::unstarted_track_test {
namespace {

/** A track that has no buffer group yet, because it was not started. */
class UnstartedTrackTest : public PluginTest {
  protected:
    UnstartedTrackTest() { mContent.comments = false; }

    void expectNothing(Track& track) {
        mEvents.clear();
        const ReadResult result = track.read();
        EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
        EXPECT_FALSE(result.hasBuffer);
        EXPECT_TRUE(mEvents.holds(errorLine("return EOS !")));
    }

    OneVideoOneAudio mContent;
};

TEST_F(UnstartedTrackTest, GivesNothingBeforeItIsStartedAndItsFirstPacketAfterwards) {
    OpenedFile opened = open(oneVideoOneAudioFile(mContent));
    const auto track = opened->track(0);
    expectNothing(*track);
    expectNothing(*track);
    track->start();
    EXPECT_EQ(track->read().bytes, mContent.framePayload(0));
}

TEST_F(UnstartedTrackTest, WithSamplesOf8BitsToo) {
    mContent.audio.bitsPerSample = 8;
    OpenedFile opened = open(oneVideoOneAudioFile(mContent));
    const auto track = opened->track(1);
    expectNothing(*track);
    track->start();
    EXPECT_EQ(track->read().bytes.size(), 2 * mContent.packetSize);
}

}  // namespace
}  // namespace android::ogm::test::unstarted_track_test
