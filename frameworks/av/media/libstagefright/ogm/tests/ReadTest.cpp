// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "PluginTest.h"

namespace android::ogm::test::read_test {
namespace {

using ::testing::IsEmpty;

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;
const LogLine kEndOfStream = errorLine("return EOS !");

Bytes frame(uint32_t index) {
    return dataPacket(kPlainPacket, pattern(3, index));
}

class ReadTest : public PluginTest {
  protected:
    /** A video track of which `reachable` packets can be queued; one more page is never read. */
    static OgmFile videoFile(uint32_t reachable) {
        OgmFile file;
        file.addHeader(kVideo, VideoHeader());
        for (uint32_t i = 0; i <= reachable; ++i) {
            file.addData(kVideo, i + 1, frame(i));
        }
        return file;
    }

    size_t packetsQueued() const { return mEvents.linesBeginning("packet info:").size(); }
};

TEST_F(ReadTest, TheFirstReadQueuesTenPacketsAndReturnsTheOldest) {
    OpenedFile opened = open(videoFile(30));
    const auto track = opened->startedTrack(0);
    mEvents.clear();
    const ReadResult result = track->read();
    EXPECT_EQ(result.status, AMEDIA_OK);
    EXPECT_EQ(result.bytes, pattern(3, 0));
    EXPECT_EQ(result.timeUs, 0);
    EXPECT_EQ(result.isSyncFrame, 0);
    EXPECT_EQ(result.rangeOffset, 0U);
    EXPECT_EQ(packetsQueued(), 10U);
    EXPECT_EQ(mEvents.lines()[0], infoLine("getFormat: Track type[22]"));
    EXPECT_EQ(mEvents.lines()[1], infoLine("begin read mime:video/avc"));
    EXPECT_EQ(mEvents.lines().back(),
              infoLine("after read mime:video/avc IsIFrame:0, timeUs:0, size:3"));
}

TEST_F(ReadTest, ALaterReadReplacesThePacketReturned) {
    OpenedFile opened = open(videoFile(30));
    const auto track = opened->startedTrack(0);
    track->read();
    mEvents.clear();
    EXPECT_EQ(track->read().timeUs, 40000);
    EXPECT_EQ(packetsQueued(), 1U);
}

TEST_F(ReadTest, AFullQueueIsReadWithoutTheFile) {
    OneVideoOneAudio content;
    content.audioPackets = 20;
    content.videoFrames = 20;
    OpenedFile opened = open(oneVideoOneAudioFile(content));
    const auto video = opened->startedTrack(0);
    const auto audio = opened->startedTrack(1);
    video->read();
    audio->readAll(2);  // fills the audio queue, and with it the video queue
    mEvents.clear();
    EXPECT_EQ(video->read().status, AMEDIA_OK);
    EXPECT_THAT(mEvents.reads(), IsEmpty());
}

TEST_F(ReadTest, PacketsOfAnotherTrackAreQueuedWhileAQueueFills) {
    // 20 audio pages come before the video pages.
    OgmFile file;
    file.addHeader(kVideo, VideoHeader());
    file.addHeader(kAudio, AudioHeader());
    file.addPages(kAudio, std::vector<Bytes>(20, audioPacket({1, 2})));
    std::vector<Bytes> frames;
    for (uint32_t i = 0; i < 15; ++i) {
        frames.push_back(frame(i));
    }
    file.addPages(kVideo, frames);
    file.addPages(kAudio, {audioPacket({3, 4})}, 30);
    OpenedFile opened = open(file);
    const auto video = opened->startedTrack(0);
    const auto audio = opened->startedTrack(1);
    mEvents.clear();
    EXPECT_EQ(video->read().bytes, pattern(3, 0));
    EXPECT_EQ(packetsQueued(), 30U);
    mEvents.clear();
    for (int i = 0; i < 11; ++i) {
        EXPECT_EQ(audio->read().status, AMEDIA_OK) << i;
        EXPECT_THAT(mEvents.reads(), IsEmpty()) << i;
    }
}

TEST_F(ReadTest, AfterTheEndOfTheFileAQueueDrainsExceptForItsOpenLastPacket) {
    OpenedFile opened = open(videoFile(14));
    const auto track = opened->startedTrack(0);
    for (int i = 0; i < 9; ++i) {
        ASSERT_EQ(track->read().status, AMEDIA_OK);
    }
    // Five packets are queued and no more come.
    for (int i = 9; i < 13; ++i) {
        mEvents.clear();
        EXPECT_EQ(track->read().timeUs, i * 40000);
        EXPECT_FALSE(mEvents.holds(kEndOfStream));
    }
    for (int i = 0; i < 3; ++i) {
        mEvents.clear();
        const ReadResult result = track->read();
        EXPECT_EQ(result.status, AMEDIA_ERROR_END_OF_STREAM);
        EXPECT_FALSE(result.hasBuffer);
        EXPECT_EQ(mEvents.lines().back(), kEndOfStream);
    }
}

TEST_F(ReadTest, AFileThatEndsBeforeTheQueueIsFullReturnsTheEndBeforeItsPackets) {
    OpenedFile opened = open(videoFile(5));
    const auto track = opened->startedTrack(0);
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(track->readAll().size(), 4U);
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(ReadTest, AFileWithTenReachablePacketsReturnsTheFirstAtOnce) {
    OpenedFile opened = open(videoFile(10));
    EXPECT_EQ(opened->startedTrack(0)->readAll().size(), 9U);
}

TEST_F(ReadTest, AnIoFailureOnAShortQueueIsReportedWithoutALine) {
    auto source = sourceOf(videoFile(30));
    MemorySource& faulty = *source;
    OpenedFile opened = open(std::move(source));
    const auto track = opened->startedTrack(0);
    faulty.setFault(faultAtOffset(109, kReadRefused));  // the first packet
    mEvents.clear();
    const ReadResult result = track->read();
    EXPECT_EQ(result.status, AMEDIA_ERROR_IO);
    EXPECT_FALSE(result.hasBuffer);
    EXPECT_EQ(mEvents.lines().back(), infoLine("Cannot read page payload, size 4\n"));
}

TEST_F(ReadTest, AnIoFailureWithPacketsQueuedReturnsTheOldest) {
    auto source = sourceOf(videoFile(30));
    MemorySource& faulty = *source;
    OpenedFile opened = open(std::move(source));
    const auto track = opened->startedTrack(0);
    ASSERT_EQ(track->read().status, AMEDIA_OK);
    faulty.setFault([](const ReadRequest& request) {
        return request.size == 4 && request.offset % 32 == 13 ? std::optional<ssize_t>(1)
                                                              : std::nullopt;
    });
    mEvents.clear();
    EXPECT_EQ(track->read().timeUs, 40000);
    EXPECT_TRUE(mEvents.holds(infoLine("Cannot read page payload, size 4\n")));
    EXPECT_EQ(track->readAll().size(), 7U);
    // One packet is left: the failure is reported now.
    EXPECT_EQ(track->read().status, AMEDIA_ERROR_IO);
    faulty.clearFault();
    EXPECT_EQ(track->read().timeUs, 9 * 40000);
}

TEST_F(ReadTest, OptionsWithoutASeekRequestChangeNothing) {
    const auto eventsWith = [this](uint32_t options) {
        OpenedFile opened = open(videoFile(12));
        const auto track = opened->startedTrack(0);
        mEvents.clear();
        EXPECT_EQ(track->read(options, 400000).timeUs, 0);
        EXPECT_EQ(track->read(options, 400000).timeUs, 40000);
        return mEvents.events();
    };
    const std::vector<Event> plain = eventsWith(0);
    EXPECT_EQ(eventsWith(NONBLOCKING), plain);
    EXPECT_EQ(eventsWith(NONBLOCKING | SEEK_CLOSEST), plain);
}

TEST_F(ReadTest, ATrackWithoutAPageEndsAtTheEndOfTheFile) {
    OgmFile file = videoFile(3);
    file.addHeader(kAudio, AudioHeader());
    OpenedFile opened = open(file);
    const auto audio = opened->startedTrack(1);
    mEvents.clear();
    EXPECT_EQ(audio->read().status, AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.lines().back(), kEndOfStream);
}

TEST_F(ReadTest, ACommentPacketComesOutLikeAnyOther) {
    const OneVideoOneAudio content;
    OpenedFile opened = open(oneVideoOneAudioFile(content));
    const auto video = opened->startedTrack(0);
    const auto frames = video->readAll(2);
    ASSERT_EQ(frames.size(), 2U);
    EXPECT_EQ(frames[0].bytes, tail(commentHeader(), 1));
    EXPECT_EQ(frames[1].bytes, content.framePayload(0));
}

TEST_F(ReadTest, BothTracksReturnWhatWasWritten) {
    OneVideoOneAudio content;
    content.comments = false;
    OpenedFile opened = open(oneVideoOneAudioFile(content));
    const auto video = opened->startedTrack(0);
    const auto audio = opened->startedTrack(1);
    const auto frames = video->readAll();
    const auto packets = audio->readAll();
    // Page 50 is the video stream's last one: neither it nor anything after it is read.
    ASSERT_EQ(frames.size(), 48U);
    ASSERT_EQ(packets.size(), 48U);
    for (size_t i = 0; i < frames.size(); ++i) {
        EXPECT_EQ(frames[i].bytes, content.framePayload(i)) << i;
        EXPECT_EQ(frames[i].timeUs, static_cast<int64_t>(i) * 40000) << i;
        EXPECT_EQ(frames[i].isSyncFrame, i % 10 == 0 ? 1 : 0) << i;
        EXPECT_EQ(packets[i].bytes, content.packetPayload(i)) << i;
        EXPECT_EQ(packets[i].timeUs, static_cast<int64_t>(i) * 40000) << i;
    }
}

TEST_F(ReadTest, TwoThreadsReadTheTwoTracksOfAFile) {
    OneVideoOneAudio content;
    content.comments = false;
    OpenedFile opened = open(oneVideoOneAudioFile(content));
    const auto video = opened->startedTrack(0);
    const auto audio = opened->startedTrack(1);
    std::vector<ReadResult> frames;
    std::thread reader([&] { frames = video->readAll(); });
    const std::vector<ReadResult> packets = audio->readAll();
    reader.join();
    EXPECT_EQ(frames.size(), 48U);
    EXPECT_EQ(packets.size(), 48U);
}

}  // namespace
}  // namespace android::ogm::test::read_test
