// SPDX-License-Identifier: Apache-2.0
#include <optional>

#include "ElementaryStreams.h"
#include "PluginTest.h"

namespace android::ogm::test::dequeue_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

constexpr uint32_t kSerialNo = 1;

Bytes vopPacket(uint32_t codingType) {
    return dataPacket(kPlainPacket, videoObjectPlane(codingType));
}

class DequeueTest : public PluginTest {
  protected:
    static OgmFile videoFile(const char* fourcc, const std::vector<Bytes>& packets) {
        VideoHeader header;
        header.subtype = fourcc;
        OgmFile file;
        file.addHeader(kSerialNo, header);
        file.addPages(kSerialNo, packets);
        return file;
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
};

TEST_F(DequeueTest, AReferenceFrameIsMovedAfterTheFramesThatFollowItInTheFile) {
    // File order I P B B P B B P..., one frame of 40 ms a page.
    const OgmFile file = videoFile(
            "FMP4", {vopPacket(0), vopPacket(1), vopPacket(2), vopPacket(2), vopPacket(1),
                     vopPacket(2), vopPacket(2), vopPacket(1), vopPacket(1), vopPacket(1)});
    EXPECT_THAT(timesOf(drain(file)),
                ElementsAre(0, 120000, 40000, 80000, 240000, 160000, 200000, 280000));
}

TEST_F(DequeueTest, EachOfManyBFramesIsShownOneFrameEarlier) {
    // While the audio track is read, 300 B frames are queued after one reference frame.
    constexpr size_t kBFrames = 300;
    OgmFile file;
    VideoHeader video;
    video.subtype = "FMP4";
    file.addHeader(kSerialNo, video);
    file.addHeader(kSerialNo + 1, AudioHeader());
    std::vector<Bytes> frames(kBFrames, vopPacket(2));
    frames.insert(frames.begin(), vopPacket(1));
    file.addPages(kSerialNo, frames);
    file.addPages(kSerialNo + 1, std::vector<Bytes>(12, audioPacket({1, 2})));
    file.addPages(kSerialNo, {vopPacket(1), vopPacket(1)}, kBFrames + 100);
    OpenedFile opened = open(file);
    const auto videoTrack = opened->startedTrack(0);
    const auto audioTrack = opened->startedTrack(1);
    ASSERT_EQ(audioTrack->read().status, AMEDIA_OK);
    // The count of the following frames has 8 bits.
    EXPECT_EQ(videoTrack->read().timeUs, 255 * 40000);
    for (size_t i = 0; i < kBFrames - 10; ++i) {
        ASSERT_EQ(videoTrack->read().timeUs, static_cast<int64_t>(i) * 40000) << i;
    }
}

TEST_F(DequeueTest, MpegVideoIsMovedByItsPictureTypesToo) {
    const auto picture = [](uint32_t type) { return dataPacket(kPlainPacket, mpeg2Picture(type)); };
    const OgmFile file = videoFile(
            "mpg2", {picture(1), picture(3), picture(3), picture(2), picture(2), picture(2)});
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(80000, 0, 40000, 120000));
}

TEST_F(DequeueTest, OtherVideoKeepsItsTimes) {
    const OgmFile file = videoFile(
            "H264", {vopPacket(0), vopPacket(2), vopPacket(2), vopPacket(1), vopPacket(1)});
    EXPECT_THAT(timesOf(drain(file)), ElementsAre(0, 40000, 80000));
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

TEST_F(DequeueTest, TheTargetTimeIsZeroAfterASeekToo) {
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

// Layers I and II (tag 0050) are treated like other audio: they are not cut into access units.
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

TEST_F(DequeueTest, AnAudioPacketOfThreeBytesIsNotReturnedAndStays) {
    const OgmFile file = audioFile("0001", {{0, 1, 2}, audioPacket({1}), audioPacket({2})});
    OpenedFile opened = open(file);
    auto track = opened->startedTrack(0);
    track->read();  // reaches the end of the file while the queue fills
    mEvents.clear();
    for (int round = 1; round <= 3; ++round) {
        EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
        EXPECT_EQ(mEvents.count(errorLine("invalid audio packet size:3")), size_t(round));
        EXPECT_EQ(mEvents.count(errorLine("return EOS !")), size_t(round));
    }
}

TEST_F(DequeueTest, AnAudioPacketShorterThanItsHeaderIsNotReturnedAndStays) {
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

TEST_F(DequeueTest, AnAudioPacketOfOnlyAHeaderGivesAnEmptyBuffer) {
    const OgmFile file = audioFile("0001", {{0x40, 1, 2, 3}, audioPacket({1}), audioPacket({2})});
    const auto results = drain(file);
    ASSERT_EQ(results.size(), 1U);
    EXPECT_TRUE(results[0].hasBuffer);
    EXPECT_EQ(results[0].bytes, Bytes{});
}

TEST_F(DequeueTest, AnEmptyVideoPacketIsNotReturnedAndStays) {
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
}  // namespace android::ogm::test::dequeue_test
