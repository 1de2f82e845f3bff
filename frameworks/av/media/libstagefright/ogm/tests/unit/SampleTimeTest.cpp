// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "SampleTimeTest"
#include "PrivateMember.h"
#include "TrackDriver.h"

namespace android::ogm::test {

// Not in the unnamed namespace: the friends must belong to that of PrivateMember.
struct PacketsBefore {
    using Type = uint8_t OgmTrack::*;
    friend Type memberOf(PacketsBefore);
};

struct PacketsSoFar {
    using Type = uint8_t OgmTrack::*;
    friend Type memberOf(PacketsSoFar);
};

struct Queue {
    using Type = ogm::Fifo<OgmPacket> OgmTrack::*;
    friend Type memberOf(Queue);
};
template struct PrivateMember<PacketsBefore, &OgmTrack::mPrePageSamplesOut>;
template struct PrivateMember<PacketsSoFar, &OgmTrack::mCurrentPageSamplesOut>;
template struct PrivateMember<Queue, &OgmTrack::mPacketsQue>;

namespace {

constexpr uint32_t kSerialNo = 1;

/**
 * The time of a PCM packet when packets have been counted on the page before. Only re-framed audio
 * is counted, whose times are computed elsewhere, so no file leads here.
 */
class SampleTimeTest : public ::testing::Test {
  protected:
    SampleTimeTest() {
        mTrack.setSampleRate(8000);
        mTrack.updateGranulePosition(1000, 1);
        mTrack.updateGranulePosition(9000, 1);
    }

    void setCounts(uint8_t before, uint8_t soFar) {
        mTrack.*memberOf(PacketsBefore{}) = before;
        mTrack.*memberOf(PacketsSoFar{}) = soFar;
    }

    int64_t timeOfNextPacket() {
        constexpr uint8_t kPacket[] = {0, 0, 0, 1, 2};
        ogm::ByteBuffer packet(ogm::ByteView(kPacket, sizeof(kPacket)));
        mTrack.appendData(&packet, true);
        return (mTrack.*memberOf(Queue{})).back().timeUs;
    }

    ExtractorOverBytes mExtractor{Bytes{}};
    OgmTrack mTrack{&*mExtractor, kSerialNo, OGA_AUDIO_PCM, 16};
    EventLog mEvents;
    LogCapture mCapture{mEvents};
};

TEST_F(SampleTimeTest, ThePacketsOfThePageBeforeTellHowFarApartThoseOfThisPageAre) {
    setCounts(8, 2);
    // (9000 - 1000) / 8 samples a packet, two packets behind 1000, at 8 kHz.
    EXPECT_EQ(timeOfNextPacket(), 375000);
    EXPECT_TRUE(mEvents.holds(
            infoLine("mSampleRate, timeUs = 375000,size = 5,avgGranulePosition=1000,"
                     "mCurGranulePosition=9000,mPreGranulePosition=1000,mPrePageSamplesOut=8\n")));
}

TEST_F(SampleTimeTest, TheDistanceLearntLastCountsWhereThePageBeforeHadNoPackets) {
    setCounts(8, 2);
    timeOfNextPacket();
    setCounts(0, 3);
    EXPECT_EQ(timeOfNextPacket(), 500000);
    EXPECT_TRUE(mEvents.holds(
            infoLine("mSampleRate, timeUs = 500000,size = 5,mBaseAvgGranPos=1000\n")));
}

}  // namespace
}  // namespace android::ogm::test
