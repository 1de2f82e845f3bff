// SPDX-License-Identifier: Apache-2.0
#include "packet/PacketClock.h"

#include "LogTest.h"

namespace android::ogm::test {
namespace {

constexpr uint32_t kPcm = 5;
constexpr size_t kPacketSize = 5;

/**
 * The time of a packet when packets have been counted on the page before. Only re-framed audio is
 * counted, whose times are computed otherwise, so no file leads here.
 */
class CountedPacketTest : public LogTest {
  protected:
    /** Counts 8 packets on a page that ends at 1000, and `onThis` on the next, which ends at 9000.
     */
    void enterPages(int onThis) {
        mClock.updateGranulePosition(1000, 1, false);
        count(8);
        mClock.updateGranulePosition(9000, 1, false);
        count(onThis);
        mEvents.clear();
    }

    void count(int packets) {
        for (int i = 0; i < packets; ++i) {
            mClock.countPacket();
        }
    }

    PacketClock mClock{kPcm, 8000, 0};
};

TEST_F(CountedPacketTest, ThePacketsOfThePageBeforeTellHowFarApartThoseOfThisPageAre) {
    enterPages(2);
    // (9000 - 1000) / 8 samples a packet, two packets behind 1000, at 8 kHz.
    EXPECT_EQ(mClock.packetTimeUs(kPacketSize), 375000);
    EXPECT_EQ(
            mEvents.lines(),
            (std::vector{infoLine(
                    "mSampleRate, timeUs = 375000,size = 5,avgGranulePosition=1000,"
                    "mCurGranulePosition=9000,mPreGranulePosition=1000,mPrePageSamplesOut=8\n")}));
}

TEST_F(CountedPacketTest, TheDistanceLearntLastAppliesWhereThePageBeforeHadNoPackets) {
    enterPages(0);
    (void)mClock.packetTimeUs(kPacketSize);
    mClock.updateGranulePosition(17000, 1, false);
    count(3);
    mEvents.clear();
    // Three packets of 1000 samples behind 9000.
    EXPECT_EQ(mClock.packetTimeUs(kPacketSize), 1500000);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{
                      infoLine("mSampleRate, timeUs = 1500000,size = 5,mBaseAvgGranPos=1000\n")}));
}

}  // namespace
}  // namespace android::ogm::test
