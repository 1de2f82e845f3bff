// SPDX-License-Identifier: Apache-2.0
#include "ElementaryStreams.h"
#include "PluginTest.h"

namespace android::ogm::test::waiting_track_test {
namespace {

constexpr uint32_t kVideo = 1;
constexpr uint32_t kAudio = 2;
constexpr size_t kVideoTrack = 0;
constexpr size_t kAudioTrack = 1;

/** The packet on a stream's last page is never returned, nor the open packet before it. */
constexpr size_t kNeverReturned = 2;

/** Several MB, enough for a queue to use large pages. */
constexpr size_t kWaitingFrames = 600;
constexpr size_t kWaitingSize = 10000;
/** Packets that fit into a large page, but not into a block of a short queue. */
constexpr size_t kLargeFrames = 100;
constexpr size_t kLargeSize = 60000;
constexpr size_t kFrames = kWaitingFrames + kLargeFrames;

Bytes frame(size_t index) {
    const auto seed = static_cast<uint32_t>(index);
    return pattern(index < kWaitingFrames ? kWaitingSize : kLargeSize + index, seed);
}

/** One track is read while megabytes of another track's packets wait in its queue. */
class WaitingTrackTest : public PluginTest {
  protected:
    /** Alternating pages of video and audio. */
    static OgmFile videoAndAudio() {
        OgmFile file;
        file.addHeader(kVideo, VideoHeader());
        file.addHeader(kAudio, AudioHeader());
        for (size_t i = 0; i < kFrames; ++i) {
            const uint8_t header = i % 10 == 0 ? kSyncPacket : kPlainPacket;
            file.addData(kVideo, i + 1, dataPacket(header, frame(i)));
            file.addData(kAudio, (i + 1) * 320, audioPacket(filled(64, 1)));
        }
        return file;
    }

    /** Reads audio until the small frames of video are queued. */
    static void letVideoWait(Track& audio) {
        for (size_t i = 0; i < kWaitingFrames; ++i) {
            ASSERT_TRUE(audio.read().hasBuffer) << i;
        }
    }

    static void expectFramesFrom(size_t first, const std::vector<ReadResult>& results) {
        ASSERT_EQ(results.size(), kFrames - kNeverReturned - first);
        for (size_t i = 0; i < results.size(); ++i) {
            ASSERT_EQ(results[i].bytes, frame(first + i)) << first + i;
        }
    }
};

TEST_F(WaitingTrackTest, CatchesUpAndContinuesWithLargePackets) {
    OpenedFile file = openQuietly(videoAndAudio());
    const auto audio = file->startedTrack(kAudioTrack);
    const auto video = file->startedTrack(kVideoTrack);
    letVideoWait(*audio);
    expectFramesFrom(0, video->drain());
}

TEST_F(WaitingTrackTest, SeeksToTheStartAndReadsAllOfItAgain) {
    OpenedFile file = openQuietly(videoAndAudio());
    const auto audio = file->startedTrack(kAudioTrack);
    const auto video = file->startedTrack(kVideoTrack);
    letVideoWait(*audio);
    const ReadResult first = video->readAt(0);
    EXPECT_EQ(first.bytes, frame(0));
    expectFramesFrom(1, video->drain());
}

TEST_F(WaitingTrackTest, HoldsAccessUnitsWhoseFramesLieAcrossPackets) {
    constexpr size_t kUnits = 6000;
    constexpr size_t kPacketSize = 1000;
    std::vector<Bytes> units;
    Bytes stream;
    for (uint32_t i = 0; i < kUnits; ++i) {
        MpegAudioFrame unit;
        unit.seed = i;
        units.push_back(unit.bytes());
        append(stream, units.back());
    }
    OpenedFile opened = openQuietly(videoAndMp3File(stream, kPacketSize));
    const auto audio = opened->startedTrack(kAudioTrack);
    const auto video = opened->startedTrack(kVideoTrack);
    const size_t pages = (stream.size() + kPacketSize - 1) / kPacketSize;
    EXPECT_EQ(video->drain().size(), pages - kNeverReturned);
    const std::vector<ReadResult> results = audio->drain();
    ASSERT_GT(results.size(), kUnits - 10);
    // The second unit is complete in the first packet and confirms the header; the first is lost.
    for (size_t i = 0; i < results.size(); ++i) {
        ASSERT_EQ(results[i].bytes, units[i + 1]) << i;
    }
}

}  // namespace
}  // namespace android::ogm::test::waiting_track_test
