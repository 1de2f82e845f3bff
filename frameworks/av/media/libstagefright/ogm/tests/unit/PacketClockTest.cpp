// SPDX-License-Identifier: Apache-2.0
#include "packet/PacketClock.h"

#include <ostream>

#include "LogTest.h"
#include "OgmFile.h"
#include "codec/FrameType.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test::packet_clock_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int32_t kVideoUnit = 400000;
constexpr std::optional<int64_t> kDropped;

const char kNotValid[] =
        "********** mPreGranulePosition is not vaild, Skip appending this item*************\n";
const LogLine kFell = infoLine(" *****Track Type[22] GranulePosition Error*****");

/** A clock, the pages that it gets, and its times afterwards. */
struct Times {
    const char* name;
    int32_t sampleRate;
    int32_t timeUnit;
    /** Whether the first page is the first data page of the file. */
    bool fromTheStart;
    std::vector<uint64_t> granules;
    int64_t currentUs;
    std::optional<int64_t> packetUs;
};

std::ostream& operator<<(std::ostream& stream, const Times& times) {
    return stream << times.name;
}

constexpr bool kFromTheStart = true;
constexpr bool kAfterASeek = false;

Times video(const char* name, int32_t timeUnit, const std::vector<uint64_t>& granules,
            int64_t timeUs) {
    return {name, 25, timeUnit, kFromTheStart, granules, timeUs, timeUs};
}

Times audio(const char* name, int32_t sampleRate, const std::vector<uint64_t>& granules,
            int64_t timeUs) {
    return {name, sampleRate, 0, kFromTheStart, granules, timeUs, timeUs};
}

/** Video pages after which packets are dropped. */
Times invalid(const char* name, bool fromTheStart, const std::vector<uint64_t>& granules) {
    return {name, 25, kVideoUnit, fromTheStart, granules, 0, kDropped};
}

void enterPages(PacketClock& clock, bool fromTheStart, const std::vector<uint64_t>& granules) {
    clock.reset(!fromTheStart);
    bool isPastFirstDataPage = !fromTheStart;
    for (const uint64_t granule : granules) {
        clock.updateGranulePosition(granule, 1, isPastFirstDataPage);
        isPastFirstDataPage = true;
    }
}

class PacketClockTimesTest : public LogTest, public ::testing::WithParamInterface<Times> {};

TEST_P(PacketClockTimesTest, AreThoseOfThePageBefore) {
    const Times& times = GetParam();
    PacketClock clock(OGV_VIDEO_H264, times.sampleRate, times.timeUnit);
    enterPages(clock, times.fromTheStart, times.granules);
    EXPECT_EQ(clock.isValid(), times.packetUs.has_value());
    EXPECT_EQ(clock.currentTimeUs(), times.currentUs);
    EXPECT_EQ(clock.packetTimeUs(5), times.packetUs);
}

INSTANTIATE_TEST_SUITE_P(
        Video, PacketClockTimesTest,
        ::testing::Values(
                video("OnTheFirstPage", kVideoUnit, {25}, 0),
                video("InFrames", kVideoUnit, {25, 26}, 1000000),
                video("CutToMicroseconds", 333667, {1, 2}, 33366),
                video("CutToMicrosecondsLater", 333667, {90, 91}, 3003003),
                // (2 x -10) / 10 in unsigned 64-bit arithmetic.
                video("InANegativeUnit", -10, {2, 4}, 1844674407370955159),
                video("AfterAnEqualGranule", kVideoUnit, {25, 25}, 1000000),
                video("AfterAGranuleOfZero", kVideoUnit, {25, 0}, 0),
                video("OnAPageWithoutGranule", kVideoUnit, {10, kNoGranule}, 400000),
                video("AfterAPageWithoutGranule", kVideoUnit, {10, kNoGranule, kNoGranule},
                      1844674407370915161),
                video("OnceGranulesRiseAgain", kVideoUnit, {10, kNoGranule, 50, 60}, 2000000),
                Times{"OnTheSecondPageAfterASeek",
                      25,
                      kVideoUnit,
                      kAfterASeek,
                      {5, 6},
                      200000,
                      200000},
                Times{"OnAPageOfGranuleZeroAfterASeek", 25, kVideoUnit, kAfterASeek, {0}, 0, 0}),
        ::testing::PrintToStringParamName());

INSTANTIATE_TEST_SUITE_P(
        Audio, PacketClockTimesTest,
        ::testing::Values(audio("InSamples", 44100, {44100, 88200}, 1000000),
                          audio("OfSamplesCutToMicroseconds", 44100, {50000, 60000}, 1133786),
                          // A divisor close to 2^64 makes each time 0.
                          audio("AtANegativeRate", -1, {8000000, 16000000}, 0),
                          // A negative number.
                          audio("Of2To63MicrosecondsOrMore", 1, {9223372036855, 9223372036856},
                                -9223372036854551616),
                          audio("WithoutRateAndUnit", 0, {44100, 88200}, 0),
                          audio("OnceGranulesRiseAgain", 8000, {8000, 16000, 400, 24000}, 50000)),
        ::testing::PrintToStringParamName());

INSTANTIATE_TEST_SUITE_P(None, PacketClockTimesTest,
                         ::testing::Values(invalid("AfterALowerGranule", kFromTheStart, {25, 3}),
                                           invalid("AfterAPageWithoutGranule", kFromTheStart,
                                                   {10, kNoGranule, 50}),
                                           invalid("OnTheFirstPageAfterASeek", kAfterASeek, {5})),
                         ::testing::PrintToStringParamName());

class PacketClockTest : public LogTest {
  protected:
    /** Enters pages of a file from its start and clears the log. */
    static void enter(PacketClock& clock, const std::vector<uint64_t>& granules) {
        enterPages(clock, kFromTheStart, granules);
    }

    static void count(PacketClock& clock, int packets) {
        for (int i = 0; i < packets; ++i) {
            clock.countPacket();
        }
    }

    PacketClock mVideo{OGV_VIDEO_H264, 25, kVideoUnit};
    PacketClock mAudio{OGA_AUDIO_PCM, 8000, 0};
};

TEST_F(PacketClockTest, AVideoTimeIsLoggedWithItsPage) {
    enter(mVideo, {25, 26, 27});
    EXPECT_EQ(mVideo.packetTimeUs(4), 1040000);
    EXPECT_EQ(mVideo.granulePosition(), 26U);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(infoLine("mTimeUnit, timeUs = 1040000, size = 4,mPreGranulePosition:26,"
                                     "mCurrentPageSamplesOut:0\n")));
}

TEST_F(PacketClockTest, OnlyTheTimeOfAudioIsLogged) {
    enter(mAudio, {8000, 16000});
    EXPECT_EQ(mAudio.packetTimeUs(5), 1000000);
    EXPECT_EQ(mAudio.accessUnitTimeUs(6), 1000000);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("mSampleRate, timeUs = 1000000,size = 5\n"),
                                             infoLine("mSampleRate, timeUs = 1000000,size = 6\n")));
}

TEST_F(PacketClockTest, WithoutRateAndUnitNothingIsLogged) {
    PacketClock untimed(OGA_AUDIO_PCM, 0, 0);
    enter(untimed, {25, 50});
    EXPECT_EQ(untimed.packetTimeUs(5), 0);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(PacketClockTest, AClockWithoutRateTimesPacketsBeforeTheFirstPageAndOthersDoNot) {
    PacketClock untimed(OGA_AUDIO_PCM, 0, 0);
    EXPECT_EQ(untimed.packetTimeUs(5), 0);
    EXPECT_EQ(mVideo.packetTimeUs(5), kDropped);
    EXPECT_EQ(mAudio.packetTimeUs(5), kDropped);
    EXPECT_EQ(mAudio.accessUnitTimeUs(5), kDropped);
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(errorLine(kNotValid), infoLine(kNotValid), infoLine(kNotValid)));
}

TEST_F(PacketClockTest, AGranuleThatFallsIsLoggedWithItsReplacement) {
    enter(mVideo, {25, 3});
    EXPECT_THAT(mEvents.lines(),
                ElementsAre(kFell, infoLine(" *****Track Type[22] update GP 0, 3*****")));
}

TEST_F(PacketClockTest, AGranuleThatFallsToZeroIsLoggedWithoutAReplacement) {
    enter(mVideo, {25, 0});
    EXPECT_THAT(mEvents.lines(), ElementsAre(kFell));
}

TEST_F(PacketClockTest, OnTheFirstDataPageALowerGranuleIsLoggedAndValid) {
    enter(mVideo, {25});
    mVideo.updateGranulePosition(3, 1, false);
    EXPECT_THAT(mEvents.lines(), ElementsAre(kFell));
    EXPECT_EQ(mVideo.packetTimeUs(5), 0);
}

TEST_F(PacketClockTest, GranulesThatRiseAreNotLogged) {
    enter(mVideo, {25, 25, 26, kNoGranule, kNoGranule});
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(PacketClockTest, TheFirstPageAfterASeekIsLogged) {
    enterPages(mVideo, kAfterASeek, {5, 6});
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine(" *****Track Type[22] update GP 0, 5*****")));
}

TEST_F(PacketClockTest, CountedPacketsOfAPageAreSpacedByItsAverage) {
    mAudio.updateGranulePosition(4808, 1536, false);
    EXPECT_EQ(mAudio.accessUnitTimeUs(5), 0);
    mAudio.countPacket();
    EXPECT_EQ(mAudio.accessUnitTimeUs(5), 192000);
    EXPECT_EQ(mAudio.granulePosition(), 1U);
    mAudio.countPacket();
    EXPECT_EQ(mAudio.accessUnitTimeUs(5), 384000);
    EXPECT_EQ(mAudio.granulePosition(), 2U);
}

TEST_F(PacketClockTest, TheTimeAtTheCursorFollowsTheCountedPackets) {
    enter(mVideo, {10, 20});
    enter(mAudio, {8000, 8010});
    count(mVideo, 3);
    count(mAudio, 4);
    EXPECT_EQ(mVideo.currentTimeUs(), 520000);
    EXPECT_EQ(mAudio.currentTimeUs(), 1000500);
}

TEST_F(PacketClockTest, WithoutARateAnAccessUnitHasTheTimeZero) {
    PacketClock clock(OGA_AUDIO_AC3, 0, 0);
    enter(clock, {48000, 96000});
    EXPECT_EQ(clock.accessUnitTimeUs(5), 0);
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine("mSampleRate, timeUs = 0,size = 5\n")));
}

TEST_F(PacketClockTest, OfTheGranuleAdvanceOfAPageOnlyTheLowEightBitsLimitItsPackets) {
    struct Row {
        uint64_t granule;
        uint64_t counted;
    };
    for (const Row& row : {Row{18 * 256, 0}, Row{18 * 256 + 1, 1}, Row{18 * 256 + 255, 255}}) {
        PacketClock clock(OGA_AUDIO_AC3, 48000, 0);
        enter(clock, {row.granule});
        count(clock, 300);
        EXPECT_EQ(clock.granulePosition(), row.counted);
    }
}

TEST_F(PacketClockTest, BeforeTheFirstPageNothingIsCounted) {
    count(mAudio, 3);
    EXPECT_EQ(mAudio.granulePosition(), 0U);
    EXPECT_EQ(mAudio.currentTimeUs(), 0);
}

TEST_F(PacketClockTest, AResetForgetsTheGranulesAndTheCountedPackets) {
    enter(mAudio, {4808, 9416});
    count(mAudio, 3);
    mAudio.reset(false);
    EXPECT_FALSE(mAudio.isValid());
    EXPECT_EQ(mAudio.granulePosition(), 0U);
    // Before the next page there is nothing to count.
    count(mAudio, 3);
    EXPECT_EQ(mAudio.granulePosition(), 0U);
    mAudio.reset(true);
    EXPECT_EQ(mAudio.granulePosition(), 1U);
}

/** No file gets here: only re-framed audio is counted, and its times are computed elsewhere. */
class CountedPacketTest : public PacketClockTest {
  protected:
    CountedPacketTest() {
        enter(mAudio, {1000});
        count(mAudio, 8);
        mAudio.updateGranulePosition(9000, 1, true);
        mEvents.clear();
    }
};

TEST_F(CountedPacketTest, ThePacketsOfThePageBeforeDecideHowFarApartThoseOfThisPageAre) {
    count(mAudio, 2);
    // (9000 - 1000) / 8 samples a packet, two packets after 1000, at 8 kHz.
    EXPECT_EQ(mAudio.packetTimeUs(5), 375000);
    EXPECT_THAT(
            mEvents.lines(),
            ElementsAre(infoLine(
                    "mSampleRate, timeUs = 375000,size = 5,avgGranulePosition=1000,"
                    "mCurGranulePosition=9000,mPreGranulePosition=1000,mPrePageSamplesOut=8\n")));
}

TEST_F(CountedPacketTest, TheDistanceLearntLastAppliesWhereThePageBeforeHadNoPackets) {
    (void)mAudio.packetTimeUs(5);
    mAudio.updateGranulePosition(17000, 1, true);
    count(mAudio, 3);
    mEvents.clear();
    // Three packets of 1000 samples after 9000.
    EXPECT_EQ(mAudio.packetTimeUs(5), 1500000);
    EXPECT_THAT(
            mEvents.lines(),
            ElementsAre(infoLine("mSampleRate, timeUs = 1500000,size = 5,mBaseAvgGranPos=1000\n")));
}

TEST_F(CountedPacketTest, TheDistanceLearntLastOutlivesAReset) {
    (void)mAudio.packetTimeUs(5);
    enter(mAudio, {1000});
    count(mAudio, 3);
    EXPECT_EQ(mAudio.packetTimeUs(5), 375000);
}

/** The time at which a frame of 40 ms with the time 1 s is shown. */
int64_t shownAt(int32_t frameType, uint8_t followingBFrames, int32_t timeUnit = kVideoUnit) {
    OgmPacket packet;
    packet.timeUs = 1000000;
    packet.frameType = frameType;
    return PacketClock(OGV_VIDEO_MP4, 25, timeUnit).displayTimeUs(packet, followingBFrames);
}

TEST(DisplayTimeTest, ABFrameIsShownOneFrameEarlier) {
    EXPECT_EQ(shownAt(kBidirectionalFrame, 0), 960000);
    EXPECT_EQ(shownAt(kBidirectionalFrame, 2), 960000);
}

TEST(DisplayTimeTest, EveryOtherFrameIsShownAfterTheBFramesThatFollowIt) {
    for (const int32_t type : {kUnknownFrame, kIntraFrame, kPredictedFrame}) {
        EXPECT_EQ(shownAt(type, 0), 1000000);
        EXPECT_EQ(shownAt(type, 2), 1080000);
        EXPECT_EQ(shownAt(type, 255), 1000000 + 255 * 40000);
    }
}

TEST(DisplayTimeTest, TheShiftIsComputedIn32BitsAndCutToMicroseconds) {
    // 2 x 0x8000000F wraps to 30.
    EXPECT_EQ(shownAt(kIntraFrame, 2, static_cast<int32_t>(0x8000000F)), 1000003);
    EXPECT_EQ(shownAt(kIntraFrame, 1, 19), 1000001);
}

TEST(DisplayTimeTest, ABFrameIsMovedByTheSignedTimeUnit) {
    EXPECT_EQ(shownAt(kBidirectionalFrame, 0, -15), 1000001);
}

}  // namespace
}  // namespace android::ogm::test::packet_clock_test
