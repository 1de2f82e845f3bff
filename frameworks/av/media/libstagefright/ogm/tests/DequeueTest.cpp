// SPDX-License-Identifier: Apache-2.0
#include <optional>

#include "ElementaryStreams.h"
#include "PluginTest.h"

namespace android::ogm::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

constexpr uint32_t kSerialNo = 1;

Bytes vop(uint32_t codingType) {
    return dataPacket(kPlainPacket, videoObjectPlane(codingType));
}

class DequeueTest : public PluginTest {
  protected:
    static OgmFile fileOf(const VideoHeader& header, const std::vector<Bytes>& packets) {
        OgmFile file;
        file.addHeader(kSerialNo, header);
        file.addPages(kSerialNo, packets);
        return file;
    }

    static OgmFile videoFile(const char* fourcc, const std::vector<Bytes>& packets,
                             uint64_t timeUnit = 400000) {
        VideoHeader header;
        header.subtype = fourcc;
        header.timeUnit = timeUnit;
        return fileOf(header, packets);
    }

    static OgmFile audioFile(const char* tag, const std::vector<Bytes>& packets) {
        AudioHeader header;
        header.subtype = tag;
        OgmFile file;
        file.addHeader(kSerialNo, header);
        file.addPages(kSerialNo, packets);
        return file;
    }

    std::vector<ReadResult> drain(const OgmFile& file) {
        OpenedFile opened = open(file);
        auto track = opened->startedTrack(0);
        mEvents.clear();
        return track->drain();
    }

    static std::vector<int64_t> timesOf(const std::vector<ReadResult>& results) {
        std::vector<int64_t> times;
        times.reserve(results.size());
        for (const ReadResult& result : results) {
            times.push_back(result.timeUs.value_or(-1));
        }
        return times;
    }
};

TEST_F(DequeueTest, AReferenceFrameIsMovedBehindTheFramesThatFollowItInTheFile) {
    // File order I P B B P B B P..., one frame of 40 ms a page.
    const OgmFile file = videoFile("FMP4", {vop(0), vop(1), vop(2), vop(2), vop(1), vop(2), vop(2),
                                            vop(1), vop(1), vop(1)});
    EXPECT_THAT(timesOf(drain(file)),
                ElementsAre(0, 120000, 40000, 80000, 240000, 160000, 200000, 280000));
}

TEST_F(DequeueTest, TheOpenLastItemIsNeverCountedAsAFollowingFrame) {
    // I B B: the second B is the item that is still open when the I is handed out.
    const OgmFile file = videoFile("FMP4", {vop(0), vop(2), vop(2), vop(1)});
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(40000, 0));
}

TEST_F(DequeueTest, MpegVideoIsMovedByItsPictureTypesToo) {
    const auto picture = [](uint32_t type) { return dataPacket(kPlainPacket, mpeg2Picture(type)); };
    const OgmFile file = videoFile(
            "mpg2", {picture(1), picture(3), picture(3), picture(2), picture(2), picture(2)});
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(80000, 0, 40000, 120000));
}

TEST_F(DequeueTest, OtherVideoKeepsItsTimes) {
    const OgmFile file = videoFile("H264", {vop(0), vop(2), vop(2), vop(1), vop(1)});
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(0, 40000, 80000));
}

TEST_F(DequeueTest, ASyncFrameByItsHeaderByteIsMovedLikeAReferenceFrame) {
    const OgmFile file = videoFile(
            "FMP4", {dataPacket(kSyncPacket, videoObjectPlane(2)), vop(2), vop(1), vop(1)});
    const auto results = drain(file);
    EXPECT_THAT(timesOf(results), ElementsAre(40000, 0));
    EXPECT_EQ(results[0].isSyncFrame, 1);
}

TEST_F(DequeueTest, TheShiftIsComputedIn32BitsAndTruncatedToMicroseconds) {
    // 2 x 0x8000000F wraps to 30.
    const OgmFile file = videoFile("FMP4", {vop(0), vop(2), vop(2), vop(1), vop(1)}, 0x8000000F);
    EXPECT_EQ(drain(file)[0].timeUs, 3);
}

TEST_F(DequeueTest, AFrameOfTypeThreeIsMovedByTheSignedTimeUnit) {
    // The time unit is -15: the queued time is (2^64 - 15) / 10, and -1 is subtracted.
    const OgmFile file = videoFile("FMP4", {vop(0), vop(2), vop(1), vop(1)}, 0xFFFFFFF1);
    EXPECT_EQ(drain(file)[1].timeUs, 1844674407370955160 + 1);
}

TEST_F(DequeueTest, TheCountOfFollowingFramesEndsWhereItsEightBitIndexWraps) {
    // While the audio track is read, 300 frames of type 3 pile up behind one reference frame.
    OgmFile file;
    VideoHeader video;
    video.subtype = "FMP4";
    file.addHeader(1, video);
    file.addHeader(2, AudioHeader());
    std::vector<Bytes> frames(300, vop(2));
    frames.insert(frames.begin(), vop(1));
    file.addPages(1, frames);
    file.addPages(2, std::vector<Bytes>(12, audioPacket({1, 2})));
    file.addPages(1, {vop(1), vop(1)}, 400);
    OpenedFile opened = open(file);
    auto videoTrack = opened->startedTrack(0);
    auto audioTrack = opened->startedTrack(1);
    ASSERT_EQ(audioTrack->read().status, AMEDIA_OK);
    EXPECT_EQ(videoTrack->read().timeUs, 255 * 40000);
}

TEST_F(DequeueTest, EveryBufferCarriesATargetTimeOfZero) {
    OneVideoOneAudio content;
    content.video.subtype = "FMP4";
    OpenedFile opened = open(oneVideoOneAudioFile(content));
    auto video = opened->startedTrack(0);
    auto audio = opened->startedTrack(1);
    const auto frames = video->drain();
    const auto packets = audio->drain();
    ASSERT_THAT(frames, ::testing::Not(IsEmpty()));
    ASSERT_THAT(packets, ::testing::Not(IsEmpty()));
    EXPECT_THAT(frames, Each(Field(&ReadResult::targetTimeUs, std::optional<int64_t>(0))));
    EXPECT_THAT(packets, Each(Field(&ReadResult::targetTimeUs, std::optional<int64_t>(0))));
}

TEST_F(DequeueTest, ATargetTimeOfZeroIsCarriedAfterASeekToo) {
    OpenedFile opened = open(oneVideoOneAudioFile({}));
    auto video = opened->startedTrack(0);
    ReadResult result = video->readAt(0);
    if (!result.hasBuffer) {
        result = video->read();
    }
    ASSERT_TRUE(result.hasBuffer);
    EXPECT_EQ(result.targetTimeUs, 0);
}

class PlainVideoTest : public DequeueTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(PlainVideoTest, LosesExactlyItsHeaderByteAndCarriesASyncFlag) {
    const OgmFile file = videoFile(GetParam(), {dataPacket(kSyncPacket, {1, 2, 3}),
                                                dataPacket(kPlainPacket, {4, 5}),
                                                dataPacket(0xFF, {}),
                                                {0},
                                                {0}});
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 3U);
    EXPECT_EQ(results[0].bytes, (Bytes{1, 2, 3}));
    EXPECT_EQ(results[0].isSyncFrame, 1);
    EXPECT_EQ(results[1].bytes, (Bytes{4, 5}));
    EXPECT_EQ(results[1].isSyncFrame, 0);
    EXPECT_EQ(results[2].bytes, Bytes{});
    EXPECT_EQ(results[2].isSyncFrame, 0);
}

INSTANTIATE_TEST_SUITE_P(Codecs, PlainVideoTest,
                         ::testing::Values("FMP4", "mpg2", "H264", "DIVX", "DIV3", "WMV3", "VP8F",
                                           "MJPG"));

class PlainAudioTest : public DequeueTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(PlainAudioTest, LosesItsHeaderByTheRuleOfItsFirstByteAndCarriesNoSyncFlag) {
    std::vector<Bytes> packets;
    const std::vector<uint8_t> headerBytes{0x00, 0x88, 0x40, 0x01, 0x02, 0x03, 0xC3, 0xBC};
    const std::vector<size_t> headerLengths{3, 3, 4, 5, 7, 9, 10, 3};
    for (size_t i = 0; i < headerBytes.size(); ++i) {
        packets.push_back(dataPacket(headerBytes[i], filled(headerLengths[i] - 1, 0xEE),
                                     pattern(4, static_cast<uint32_t>(i))));
    }
    packets.insert(packets.end(), 2, audioPacket({1}));
    const auto results = drain(audioFile(GetParam(), packets));
    ASSERT_EQ(results.size(), headerBytes.size());
    for (size_t i = 0; i < results.size(); ++i) {
        EXPECT_EQ(results[i].bytes, pattern(4, static_cast<uint32_t>(i))) << i;
        EXPECT_EQ(results[i].isSyncFrame, std::nullopt) << i;
    }
}

// Layers I and II (tag 0050) take the ordinary way; they are not cut into access units.
INSTANTIATE_TEST_SUITE_P(Tags, PlainAudioTest,
                         ::testing::Values("0001", "0002", "0050", "00FF", "0160"));

TEST_F(DequeueTest, AnAccessUnitIsCopiedWholeAndItsTypeLogged) {
    Ac3Frame frame;
    frame.frameSizeCode = 0;
    const OgmFile file = audioFile("2000", std::vector<Bytes>(4, audioPacket(frame.bytes())));
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].bytes, frame.bytes());
    EXPECT_EQ(results[0].isSyncFrame, std::nullopt);
    EXPECT_EQ(mEvents.count(infoLine("DequeueFrame type:7")), 2U);
}

TEST_F(DequeueTest, AnAudioPacketOfThreeBytesIsNotHandedOutAndStays) {
    const OgmFile file = audioFile("0001", {{0, 1, 2}, audioPacket({1}), audioPacket({2})});
    OpenedFile opened = open(file);
    auto track = opened->startedTrack(0);
    track->read();  // meets the end of the file while the queue fills
    mEvents.clear();
    for (int round = 1; round <= 3; ++round) {
        EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
        EXPECT_EQ(mEvents.count(errorLine("invalid audio packet size:3")), size_t(round));
        EXPECT_EQ(mEvents.count(errorLine("return EOS !")), size_t(round));
    }
}

TEST_F(DequeueTest, AnAudioPacketShorterThanItsHeaderIsNotHandedOutAndStays) {
    // The first byte announces a header of 10 bytes.
    const OgmFile file =
            audioFile("0001", {{0xC3, 1, 2, 3, 4}, audioPacket({1}), audioPacket({2})});
    OpenedFile opened = open(file);
    auto track = opened->startedTrack(0);
    track->read();
    mEvents.clear();
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.count(errorLine("return EOS !")), 2U);
    EXPECT_THAT(mEvents.linesBeginning("invalid audio packet size"), IsEmpty());
}

TEST_F(DequeueTest, AnAudioPacketThatIsAllHeaderGivesAnEmptyBuffer) {
    const OgmFile file = audioFile("0001", {{0x40, 1, 2, 3}, audioPacket({1}), audioPacket({2})});
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_TRUE(results[0].hasBuffer);
    EXPECT_EQ(results[0].bytes, Bytes{});
}

TEST_F(DequeueTest, AnEmptyVideoPacketIsNotHandedOutAndStays) {
    const OgmFile file = videoFile("H264", {{}, dataPacket(0, {1}), dataPacket(0, {2})});
    OpenedFile opened = open(file);
    auto track = opened->startedTrack(0);
    track->read();
    mEvents.clear();
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.count(errorLine("return EOS !")), 2U);
}

}  // namespace
}  // namespace android::ogm::test
