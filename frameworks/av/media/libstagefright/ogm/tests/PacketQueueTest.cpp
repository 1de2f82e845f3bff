// SPDX-License-Identifier: Apache-2.0
#include <optional>

#include "ElementaryStreams.h"
#include "PluginTest.h"

namespace android::ogm::test::packet_queue_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint32_t kSerialNo = 1;

const char kNotValid[] =
        "********** mPreGranulePosition is not vaild, Skip appending this item*************\n";

Bytes frame(uint32_t index, size_t size = 3) {
    return dataPacket(kPlainPacket, pattern(size, index));
}

/** How packets are assembled, queued and timed, seen in the log and in the buffers. */
class PacketQueueTest : public PluginTest {
  protected:
    static OgmFile videoFile() {
        OgmFile file;
        file.addHeader(kSerialNo, VideoHeader());
        return file;
    }

    /** Reads the file's only track to the end; afterwards the log has only the lines of this. */
    std::vector<ReadResult> drain(const OgmFile& file) {
        OpenedFile opened = openQuietly(file);
        auto track = opened->startedTrack(0);
        mEvents.clear();
        return track->drain();
    }
};

TEST_F(PacketQueueTest, APacketOverThreePagesComesOutWholeWithTheTimeOfItsFirstPage) {
    const Bytes packet = frame(9, 599);
    OgmFile file = videoFile();
    file.addPages(kSerialNo, {frame(0)}, 25);
    file.add(OggPage(kSerialNo).granule(26).openPacket(head(packet, 255)));
    file.add(OggPage(kSerialNo).granule(27).continued().openPacket(head(tail(packet, 255), 255)));
    file.add(OggPage(kSerialNo).granule(28).continued().packet(tail(packet, 510)));
    file.addPages(kSerialNo, {frame(1), frame(2)}, 29);
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[1].bytes, pattern(599, 9));
    EXPECT_EQ(results[1].timeUs, 1000000);
    EXPECT_TRUE(mEvents.holds(infoLine(
            "packet info:isVideo:1,index:1,GranulePosition:25,serialNo:1,timeUs:1000000")));
}

TEST_F(PacketQueueTest, VideoPacketsOfOnePageShareItsTime) {
    OgmFile file = videoFile();
    file.addPages(kSerialNo, {frame(0)}, 1);
    file.add(OggPage(kSerialNo).granule(4).packet(frame(1)).packet(frame(2)).packet(frame(3)));
    file.addPages(kSerialNo, {frame(4), frame(5)}, 5);
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(0, 40000, 40000, 40000));
}

TEST_F(PacketQueueTest, ALowerGranuleDropsThePacketsOfItsPageAndRestartsFromZero) {
    OgmFile file = videoFile();
    file.addPages(kSerialNo, {frame(0), frame(1)}, 25);
    file.addPages(kSerialNo, {frame(2), frame(3), frame(4), frame(5)}, 3);
    const auto results = drain(file);
    // Frame 2 is dropped; the page after it begins at granule position 3.
    ASSERT_EQ(results.size(), 3U);
    EXPECT_THAT(timesOf(results), ElementsAre(0, 1000000, 120000));
    EXPECT_EQ(results[2].bytes, pattern(3, 3));
    EXPECT_EQ(mEvents.count(infoLine(" *****Track Type[22] GranulePosition Error*****")), 1U);
    EXPECT_EQ(mEvents.count(infoLine(" *****Track Type[22] update GP 0, 3*****")), 1U);
    EXPECT_EQ(mEvents.count(errorLine(kNotValid)), 1U);
}

TEST_F(PacketQueueTest, AfterJunkTheFirstPageIsTreatedAsALaterOneAndItsPacketsAreDropped) {
    OgmFile file = videoFile();
    file.addJunk(4);
    file.addPages(kSerialNo, {frame(0), frame(1), frame(2), frame(3)}, 5);
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_EQ(results[0].bytes, pattern(3, 1));
    EXPECT_EQ(results[0].timeUs, 200000);
    EXPECT_EQ(mEvents.count(infoLine(" *****Track Type[22] update GP 0, 5*****")), 1U);
    EXPECT_EQ(mEvents.count(errorLine(kNotValid)), 1U);
}

TEST_F(PacketQueueTest, TheContinuationOfADroppedPacketEndsUpAtTheTailOfThePacketBefore) {
    const Bytes dropped = frame(9, 299);
    OgmFile file = videoFile();
    file.addPages(kSerialNo, {frame(0), frame(1)}, 25);
    file.add(OggPage(kSerialNo).granule(3).openPacket(head(dropped, 255)));
    file.add(OggPage(kSerialNo).granule(4).continued().packet(tail(dropped, 255)));
    file.addPages(kSerialNo, {frame(2), frame(3)}, 5);
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[1].bytes, joined({pattern(3, 1), tail(dropped, 255)}));
}

TEST_F(PacketQueueTest, AContinuationIsAppendedEvenOnAPageWhoseGranuleIsNotValid) {
    const Bytes packet = frame(9, 299);
    OgmFile file = videoFile();
    file.addPages(kSerialNo, {frame(0)}, 25);
    file.add(OggPage(kSerialNo).granule(26).openPacket(head(packet, 255)));
    file.add(OggPage(kSerialNo).granule(3).continued().packet(tail(packet, 255)));
    file.addPages(kSerialNo, {frame(1), frame(2)}, 4);
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[1].bytes, pattern(299, 9));
}

/** Packets of audio that is cut into access units; the frames are AC-3 at 48 kHz. */
class AccessUnitQueueTest : public PacketQueueTest {
  protected:
    static OgmFile ac3File() {
        AudioHeader header;
        header.subtype = "2000";
        header.samplesPerUnit = 48000;
        OgmFile file;
        file.addHeader(kSerialNo, header);
        return file;
    }

    static Bytes ac3(uint32_t seed) {
        Ac3Frame frame;
        frame.frameSizeCode = 0;
        frame.seed = seed;
        return frame.bytes();
    }
};

TEST_F(AccessUnitQueueTest, TheHeaderIsStrippedByTheRuleOfItsFirstByte) {
    OgmFile file = ac3File();
    file.addPages(kSerialNo,
                  {dataPacket(0x88, {0xEE, 0xEE}, ac3(1)), audioPacket(ac3(2), 0x41),
                   audioPacket(ac3(3)), audioPacket(ac3(4))},
                  1536);
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].bytes, ac3(1));
    EXPECT_EQ(results[1].bytes, ac3(2));
    // Nothing had to be skipped before a sync word.
    EXPECT_THAT(mEvents.linesBeginning("found something"), IsEmpty());
}

TEST_F(AccessUnitQueueTest, ThePacketTimeIsLoggedWithTheSizeOfThePacket) {
    OgmFile file = ac3File();
    file.addPages(kSerialNo, {audioPacket(ac3(1))}, 48000);
    file.addPages(kSerialNo, {audioPacket(ac3(2)), audioPacket(ac3(3)), audioPacket(ac3(4))},
                  96000);
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(0, 1000000));
    EXPECT_THAT(mEvents.linesBeginning("mSampleRate"),
                ElementsAre(infoLine("mSampleRate, timeUs = 0,size = 131\n"),
                            infoLine("mSampleRate, timeUs = 1000000,size = 131\n"),
                            infoLine("mSampleRate, timeUs = 2000000,size = 131\n")));
}

TEST_F(AccessUnitQueueTest, PacketsOfOnePageAreSpacedByTheAverageToTheNextPage) {
    OgmFile file = ac3File();
    file.add(OggPage(kSerialNo)
                     .granule(4808)
                     .packet(audioPacket(ac3(1)))
                     .packet(audioPacket(ac3(2)))
                     .packet(audioPacket(ac3(3))));
    // (9416 - 4808) / 3 samples apart.
    file.addPages(kSerialNo, {audioPacket(ac3(4)), audioPacket(ac3(5))}, 9416);
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(0, 32000, 64000));
}

TEST_F(AccessUnitQueueTest, WithoutANextGranuleTheAverageIsOne) {
    OgmFile file = ac3File();
    file.add(OggPage(kSerialNo)
                     .granule(48000)
                     .packet(audioPacket(ac3(1)))
                     .packet(audioPacket(ac3(2))));
    file.addPages(kSerialNo, {audioPacket(ac3(3)), audioPacket(ac3(4))}, 0);
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(0, 20));  // one sample
    EXPECT_EQ(
            mEvents.count(errorLine("getNextGranulePosition failed,set averGranulePosition to 0")),
            1U);
}

TEST_F(AccessUnitQueueTest, OnePacketOnAPageHasAnAverageOfOneWhateverTheGranules) {
    // The continuation on the second page is not counted as a packet that begins there.
    const Bytes packet = audioPacket(joined({ac3(1), ac3(2), ac3(3)}));
    OgmFile file = ac3File();
    file.add(OggPage(kSerialNo)
                     .granule(48000)
                     .packet(audioPacket(ac3(0)))
                     .openPacket(head(packet, 255)));
    file.add(OggPage(kSerialNo).granule(96000).continued().packet(tail(packet, 255)));
    file.addPages(kSerialNo, {audioPacket(ac3(4))}, 144000);
    drain(file);
    EXPECT_THAT(mEvents.linesBeginning("mSampleRate"),
                ElementsAre(infoLine("mSampleRate, timeUs = 0,size = 131\n"),
                            infoLine("mSampleRate, timeUs = 20,size = 255\n"),
                            infoLine("mSampleRate, timeUs = 1000000,size = 132\n")));
}

TEST_F(AccessUnitQueueTest, AccessUnitsOfOnePacketShareItsTime) {
    OgmFile file = ac3File();
    file.addPages(kSerialNo, {audioPacket(ac3(0))}, 48000);
    file.addPages(kSerialNo,
                  {audioPacket(joined({ac3(1), ac3(2)})), audioPacket(ac3(3)), audioPacket(ac3(4))},
                  96000);
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(0, 1000000, 1000000));
}

TEST_F(AccessUnitQueueTest, APacketOfThreeBytesIsRefused) {
    OgmFile file = ac3File();
    file.addPages(kSerialNo, {{0, 0, 0}, audioPacket(ac3(1))}, 48000);
    drain(file);
    EXPECT_EQ(mEvents.count(errorLine("Invalid append buffer size:3")), 1U);
}

TEST_F(AccessUnitQueueTest, APacketWithoutASyncWordIsRefused) {
    OgmFile file = ac3File();
    file.addPages(kSerialNo, {audioPacket(filled(20, 1)), audioPacket(ac3(1))}, 48000);
    drain(file);
    EXPECT_EQ(mEvents.count(errorLine("appendAudioData FAIL!")), 1U);
}

TEST_F(AccessUnitQueueTest, PacketsOfAPageWithAnInvalidGranuleAreDropped) {
    OgmFile file = ac3File();
    file.addPages(kSerialNo, {audioPacket(ac3(0))}, 48000);
    file.addPages(
            kSerialNo,
            {audioPacket(ac3(1)), audioPacket(ac3(2)), audioPacket(ac3(3)), audioPacket(ac3(4))},
            100);
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[1].bytes, ac3(2));
    EXPECT_EQ(mEvents.count(infoLine(kNotValid)), 1U);
}

}  // namespace
}  // namespace android::ogm::test::packet_queue_test
