// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaDefs.h>

#include "ChildProcess.h"
#include "CutterTest.h"
#include "ElementaryStreams.h"
#include "Format.h"
#include "Pieces.h"
#include "ReferenceCutter.h"
#include "Views.h"
#include "audio/MpegAudioCutter.h"

namespace android::ogm::test::mpeg_audio_cutter_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Eq;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;

constexpr size_t kFrameSize = 417;
constexpr size_t kSearchLimit = 131072;
constexpr char kSkipAll[] = "not found mMP3Header,skip";
constexpr char kSkipBuffer[] = "GetMPEGAudioFrameSize fail, skip this buffer";

/** The n-th frame of an ordinary stream: 128 kbit/s at 44100 Hz without padding. */
Bytes frame(uint32_t number) {
    MpegAudioFrame frame;
    frame.seed = number;
    return frame.bytes();
}

LogLine notLocked(size_t size) {
    return warningLine(formatted("Not get mMP3Header, size:%d", static_cast<int>(size)));
}

/** Cuts MPEG audio frames out of bytes that arrive in arbitrary pieces. */
class MpegAudioCutterTest : public CutterTest {
  protected:
    MpegAudioCutterTest() { mCutter = cutterOf(OGA_AUDIO_MP3); }

    std::vector<AccessUnit> feed(const Bytes& piece, int64_t timeUs) {
        return mCutter->feed(piece, timeUs);
    }

    /** Makes the cutter confirm its header, with two frames of time 1000, both used up. */
    void lock() {
        ASSERT_THAT(feed(joined({frame(0), frame(1)}), 1000),
                    ElementsAre(AccessUnit{frame(1), 1000}));
        ASSERT_THAT(mCutter->buffered(), IsEmpty());
        ASSERT_THAT(mCutter->ranges(), IsEmpty());
        mEvents.clear();
    }

    std::unique_ptr<CutterDriver> mCutter;
};

TEST_F(MpegAudioCutterTest, ThreeBytesOrFewerAreNotExamined) {
    EXPECT_THAT(feed(head(frame(0), 3), 1000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), IsEmpty());
    EXPECT_EQ(mCutter->buffered().size(), 3U);
}

TEST_F(MpegAudioCutterTest, FourBytesAreTooFewForTheSearchAndAreKept) {
    EXPECT_THAT(feed(head(frame(0), 4), 1000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), Contains(notLocked(4)));
    EXPECT_THAT(mEvents.linesBeginning("mp3 header1"), IsEmpty());
    EXPECT_EQ(mCutter->buffered(), head(frame(0), 4));
}

TEST_F(MpegAudioCutterTest, TheFirstFrameIsLostAndItsBytesAreChargedToTheSecond) {
    EXPECT_THAT(feed(frame(0), 1000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), Contains(notLocked(kFrameSize)));
    mEvents.clear();
    EXPECT_THAT(feed(frame(1), 2000), ElementsAre(AccessUnit{frame(1), 1000}));
    EXPECT_THAT(mEvents.lines(), Contains(infoLine("mMP3Header:fffb9040")));
    EXPECT_THAT(mCutter->ranges(), IsEmpty());
    EXPECT_THAT(feed(frame(2), 3000), ElementsAre(AccessUnit{frame(2), 3000}));
}

TEST_F(MpegAudioCutterTest, AFrameThatArrivesCompletelyIsCutAtOnce) {
    lock();
    for (uint32_t i = 2; i < 10; ++i) {
        EXPECT_THAT(feed(frame(i), i * 1000), ElementsAre(AccessUnit{frame(i), i * 1000}));
        EXPECT_THAT(mCutter->buffered(), IsEmpty());
    }
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(MpegAudioCutterTest, FramesOfOnePieceShareItsTime) {
    lock();
    EXPECT_THAT(feed(joined({frame(2), frame(3), frame(4)}), 5000),
                ElementsAre(AccessUnit{frame(2), 5000}, AccessUnit{frame(3), 5000},
                            AccessUnit{frame(4), 5000}));
}

TEST_F(MpegAudioCutterTest, AFrameHasTheTimeOfThePieceInWhichItBegins) {
    lock();
    const Bytes stream = joined({frame(2), frame(3), frame(4)});
    EXPECT_THAT(feed(head(stream, 500), 5000), ElementsAre(AccessUnit{frame(2), 5000}));
    EXPECT_THAT(feed(head(tail(stream, 500), 400), 6000), ElementsAre(AccessUnit{frame(3), 5000}));
    EXPECT_THAT(feed(tail(stream, 900), 7000), ElementsAre(AccessUnit{frame(4), 6000}));
}

TEST_F(MpegAudioCutterTest, AFrameWhoseLastByteIsMissingChangesNothing) {
    lock();
    const Bytes allButOne = head(frame(2), kFrameSize - 1);
    EXPECT_THAT(feed(allButOne, 5000), IsEmpty());
    EXPECT_EQ(mCutter->buffered(), allButOne);
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(5000, kFrameSize - 1)));
    EXPECT_THAT(mCutter->cut(), IsEmpty());
    EXPECT_THAT(feed(tail(frame(2), kFrameSize - 1), 6000),
                ElementsAre(AccessUnit{frame(2), 5000}));
}

TEST_F(MpegAudioCutterTest, AHundredBytesOfJunkAreConsumedTogetherWithTheirFrame) {
    lock();
    mCutter->place(joined({pattern(100, 1), frame(2)}), 7000);
    EXPECT_THAT(mCutter->cut(), ElementsAre(AccessUnit{frame(2), 7000}));
    EXPECT_THAT(mCutter->ranges(), IsEmpty());
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
}

TEST_F(MpegAudioCutterTest, TheTimeIsThatOfTheJunkInFront) {
    lock();
    EXPECT_THAT(feed(joined({frame(2), pattern(20, 1), frame(3), pattern(20, 2), frame(4)}), 5000),
                ElementsAre(AccessUnit{frame(2), 5000}, AccessUnit{frame(3), 5000},
                            AccessUnit{frame(4), 5000}));
    EXPECT_THAT(mCutter->ranges(), IsEmpty());
}

TEST_F(MpegAudioCutterTest, BytesWithoutAHeaderThatAgreesAreThrownAwayButNotTheirRange) {
    lock();
    const Bytes junk = joined({{0xFF, 0xFB, 0x94, 0x64}, pattern(300, 1)});
    EXPECT_THAT(feed(junk, 5000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine(kSkipAll)));
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(5000, junk.size())));
}

TEST_F(MpegAudioCutterTest, RemainingRangesMakeLaterTimesLag) {
    lock();
    EXPECT_THAT(feed(joined({{0xFF, 0xFB, 0x94, 0x64}, pattern(296, 1)}), 5000), IsEmpty());
    EXPECT_THAT(feed(frame(2), 6000), ElementsAre(AccessUnit{frame(2), 5000}));
    EXPECT_THAT(feed(frame(3), 7000), ElementsAre(AccessUnit{frame(3), 6000}));
    EXPECT_THAT(feed(frame(4), 8000), ElementsAre(AccessUnit{frame(4), 7000}));
    // All later times lag by three hundred bytes.
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(8000, 300U)));
    mCutter->clear();
    EXPECT_THAT(feed(frame(5), 9000), ElementsAre(AccessUnit{frame(5), 9000}));
}

TEST_F(MpegAudioCutterTest, AHeaderThatAgreesButDoesNotDecodeThrowsTheBufferAway) {
    lock();
    for (const uint8_t bitrate : {0x00, 0xF0}) {
        mCutter->clear();
        mEvents.clear();
        mCutter->place(joined({{0xFF, 0xFB, bitrate, 0x64}, pattern(50, 1), frame(2)}), 5000);
        EXPECT_THAT(mCutter->cut(), IsEmpty());
        EXPECT_THAT(mEvents.lines(), ElementsAre(errorLine(kSkipBuffer)));
        EXPECT_THAT(mCutter->buffered(), IsEmpty());
        EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(5000, 54U + kFrameSize)));
    }
}

TEST_F(MpegAudioCutterTest, ThreeBytesLeftWithALockAreKeptAndFourWithoutAHeaderAreNot) {
    lock();
    mCutter->place({0x55, 0xFF, 0xFB}, 5000);
    EXPECT_THAT(mCutter->cut(), IsEmpty());
    EXPECT_EQ(mCutter->buffered().size(), 3U);
    EXPECT_THAT(mEvents.lines(), IsEmpty());
    EXPECT_TRUE(mCutter->append({0x90}, 6000));
    EXPECT_THAT(mCutter->cut(), IsEmpty());
    EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine(kSkipAll)));
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
}

TEST_F(MpegAudioCutterTest, ALockOnFewerThanFourBytesOfTheSecondHeaderThrowsBothFramesAway) {
    for (const size_t bytes : {2, 3}) {
        auto cutter = cutterOf(OGA_AUDIO_MP3);
        const Bytes stream = joined({frame(0), frame(1), frame(2), frame(3)});
        EXPECT_THAT(cutter->feed(head(stream, kFrameSize + bytes), 1000), IsEmpty());
        EXPECT_THAT(mEvents.lines(), Contains(infoLine("mMP3Header:fffb9040")));
        EXPECT_THAT(mEvents.lines(), Contains(infoLine(kSkipAll)));
        EXPECT_THAT(cutter->buffered(), IsEmpty());
        // The rest of the second frame has no sync word until the third begins. The times lag by
        // the dropped bytes.
        EXPECT_THAT(cutter->feed(tail(stream, kFrameSize + bytes), 2000),
                    ElementsAre(AccessUnit{frame(2), 1000}, AccessUnit{frame(3), 1000}));
    }
}

TEST_F(MpegAudioCutterTest, AChangeOfTheSamplingRateLosesEveryFrameAfterIt) {
    lock();
    MpegAudioFrame changed;
    changed.samplingRateIndex = 1;
    for (int i = 0; i < 5; ++i) {
        mEvents.clear();
        EXPECT_THAT(feed(joined({changed.bytes(), changed.bytes()}), 5000), IsEmpty());
        EXPECT_THAT(mEvents.lines(), ElementsAre(infoLine(kSkipAll)));
    }
    EXPECT_THAT(feed(frame(2), 6000), ElementsAre(AccessUnit{frame(2), 5000}));
}

TEST_F(MpegAudioCutterTest, AChangeOfBitrateProtectionPaddingOrModeLosesNothing) {
    lock();
    std::vector<Bytes> frames(5);
    for (size_t i = 0; i < frames.size(); ++i) {
        MpegAudioFrame frame;
        frame.seed = static_cast<uint32_t>(i);
        frame.bitrateIndex = i == 1 ? 14 : 9;
        frame.crc = i == 2;
        frame.padding = i == 3;
        frame.mono = i == 4;
        frames[i] = frame.bytes();
    }
    EXPECT_EQ(framesOf(feed(joinedAll(frames), 1)), framesOf(frames));
}

TEST_F(MpegAudioCutterTest, TheHeaderOutlivesADiscontinuitySoThatNoFurtherFrameIsLost) {
    lock();
    mCutter->clear();
    EXPECT_THAT(feed(frame(7), 5000), ElementsAre(AccessUnit{frame(7), 5000}));
}

TEST_F(MpegAudioCutterTest, FramesThreeBytesApartAreFoundAfterTheGap) {
    const Bytes gap{0x00, 0x28, 0x01};
    EXPECT_THAT(feed(joined({frame(0), gap, frame(1), gap, frame(2)}), 1000),
                ElementsAre(AccessUnit{frame(1), 1000}, AccessUnit{frame(2), 1000}));
    EXPECT_THAT(mCutter->ranges(), IsEmpty());
}

TEST_F(MpegAudioCutterTest, UpTo131072BytesWithoutAConfirmedHeaderAreKept) {
    // A header of the free format passes as a sync word but is not a candidate.
    const Bytes bytes = joined({{0xFF, 0xFB, 0x00, 0x00}, filled(kSearchLimit - 4, 0x55)});
    EXPECT_THAT(feed(bytes, 1000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), Contains(notLocked(kSearchLimit)));
    EXPECT_EQ(mCutter->buffered().size(), kSearchLimit);
    mEvents.clear();
    EXPECT_THAT(feed({0x55}, 2000), IsEmpty());
    EXPECT_THAT(mEvents.lines(),
                Contains(errorLine("findMP3Header fail size>131072, skip this buffer")));
    EXPECT_THAT(mEvents.lines(), Not(Contains(notLocked(kSearchLimit + 1))));
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, kSearchLimit), Pair(2000, 1U)));
}

TEST_F(MpegAudioCutterTest, ANegativeTimeEndsTheProcess) {
    lock();
    EXPECT_EQ(runInChild([this] { feed(frame(2), -5); }),
              abortedWith("OgmExtractor",
                          "frameworks/av/media/libstagefright/ogm/OgmExtractor:717 CHECK_GE( "
                          "timeUs,0ll) failed: -5 vs. 0"));
}

TEST_F(MpegAudioCutterTest, TheFirstFrameCutFillsTheFormatAndNoLaterOneChangesIt) {
    MpegAudioFrame frame;
    frame.version = MpegVersion::kMpeg2;
    frame.layer = 2;
    frame.samplingRateIndex = 1;
    frame.mono = true;
    const Bytes mono = frame.bytes();
    frame.mono = false;
    MpegAudioCutter cutter;
    ElementaryStream stream;
    HeapAllocator allocator;
    const auto take = [&](const Bytes& bytes) {
        ByteBuffer piece(viewOf(bytes));
        EXPECT_TRUE(appendAudioData(cutter, &stream, &piece, 0));
        return cutter.dequeueAccessUnit(&stream, &allocator).has_value();
    };
    EXPECT_FALSE(take(mono));
    EXPECT_EQ(cutter.format(), nullptr);
    EXPECT_TRUE(take(mono));
    EXPECT_TRUE(take(frame.bytes()));
    ASSERT_NE(cutter.format(), nullptr);
    EXPECT_EQ(stringOf(cutter.format(), AMEDIAFORMAT_KEY_MIME), MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_II);
    EXPECT_EQ(int32Of(cutter.format(), AMEDIAFORMAT_KEY_SAMPLE_RATE), 24000);
    EXPECT_EQ(int32Of(cutter.format(), AMEDIAFORMAT_KEY_CHANNEL_COUNT), 1);
}

TEST_F(MpegAudioCutterTest, FramesOfEveryVersionLayerAndRateAreCut) {
    for (const MpegVersion version :
         {MpegVersion::kMpeg1, MpegVersion::kMpeg2, MpegVersion::kMpeg25}) {
        for (uint32_t i = 0; i < 3 * 3 * 14; ++i) {
            MpegAudioFrame frame;
            frame.version = version;
            frame.layer = 1 + i % 3;
            frame.samplingRateIndex = i / 3 % 3;
            frame.bitrateIndex = 1 + i / 9;
            const Bytes one = frame.bytes();
            auto cutter = cutterOf(OGA_AUDIO_MP3);
            EXPECT_EQ(framesOf(cutter->feed(joined({one, one, one}), 0)),
                      framesOf(std::vector<Bytes>{one, one}))
                    << std::hex << frame.header();
        }
    }
}

/** Streams that arrive in pieces: which pieces lose frames and which do not. */
class MpegAudioPiecesTest : public MpegAudioCutterTest {
  protected:
    static std::vector<Bytes> frames(uint32_t count) {
        std::vector<Bytes> all;
        for (uint32_t i = 0; i < count; ++i) {
            MpegAudioFrame frame;
            frame.seed = i;
            frame.padding = i % 3 == 0;
            frame.bitrateIndex = 5 + i % 5;
            all.push_back(frame.bytes());
        }
        return all;
    }

    static std::vector<Bytes> allButTheFirst(const std::vector<Bytes>& frames) {
        return {frames.begin() + 1, frames.end()};
    }
};

TEST_F(MpegAudioPiecesTest, AStreamInOnePieceGivesAllFramesButTheFirst) {
    const auto stream = frames(20);
    EXPECT_EQ(framesOf(feed(joinedAll(stream), 0)), framesOf(allButTheFirst(stream)));
}

TEST_F(MpegAudioPiecesTest, OneByteAtATimeGivesNothing) {
    // A single byte never begins a stream, so the buffer stays empty.
    EXPECT_THAT(feedAll(*mCutter, equalPieces(joinedAll(frames(5)), 1)), IsEmpty());
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
}

TEST_F(MpegAudioPiecesTest, OneByteAtATimeAfterALockGivesTheFramesUntilTheBufferRunsEmpty) {
    lock();
    const Bytes stream = joined({frame(2), frame(3)});
    EXPECT_THAT(feed(head(stream, 3), 5000), IsEmpty());
    EXPECT_EQ(framesOf(feedAll(*mCutter, equalPieces(tail(stream, 3), 1))),
              framesOf(std::vector<Bytes>{frame(2)}));
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
}

TEST_F(MpegAudioPiecesTest, TheFirstFrameIsLostOnlyWhenTheSecondIsWholeAtTheLock) {
    // Otherwise the next search begins at the front again, with the header known.
    const Bytes stream = joined({frame(0), frame(1), frame(2)});
    for (const size_t atTheLock : {kFrameSize + 4, 2 * kFrameSize - 1, 2 * kFrameSize}) {
        auto cutter = cutterOf(OGA_AUDIO_MP3);
        const bool secondIsWhole = atTheLock == 2 * kFrameSize;
        auto units = cutter->feed(head(stream, atTheLock), 1000);
        EXPECT_EQ(units.size(), secondIsWhole ? 1U : 0U) << atTheLock;
        EXPECT_THAT(mEvents.lines(), Contains(infoLine("mMP3Header:fffb9040")));
        const auto rest = cutter->feed(tail(stream, atTheLock), 2000);
        units.insert(units.end(), rest.begin(), rest.end());
        const auto expected = secondIsWhole ? std::vector<Bytes>{frame(1), frame(2)}
                                            : std::vector<Bytes>{frame(0), frame(1), frame(2)};
        EXPECT_EQ(framesOf(units), framesOf(expected)) << atTheLock;
    }
}

TEST_F(MpegAudioPiecesTest, PiecesOfAnEqualSizeGiveAllFramesExceptPerhapsTheFirst) {
    const auto stream = frames(20);
    const size_t firstSize = stream[0].size();
    for (const size_t size : {50, 64, 100, 255, 300, 500, 1000, 4096}) {
        auto cutter = cutterOf(OGA_AUDIO_MP3);
        const auto units = feedAll(*cutter, equalPieces(joinedAll(stream), size));
        const size_t atTheLock = (firstSize + 4 + size - 1) / size * size;
        const bool secondIsWhole = atTheLock >= firstSize + stream[1].size();
        EXPECT_EQ(framesOf(units), framesOf(secondIsWhole ? allButTheFirst(stream) : stream))
                << size;
    }
}

TEST_F(MpegAudioPiecesTest, RandomPiecesOfAnUndamagedStreamGiveTheSameAsTheReferenceCutter) {
    for (uint32_t seed = 0; seed < 300; ++seed) {
        const auto pieces = randomPieces(joinedAll(frames(12)), seed, 1, 1 + seed * 3);
        auto cutter = cutterOf(OGA_AUDIO_MP3);
        ReferenceCutter reference(ReferenceCutter::Codec::kMpegAudio);
        ASSERT_EQ(feedAll(*cutter, pieces), feedAll(reference, pieces)) << seed;
        EXPECT_EQ(cutter->buffered(), reference.buffered()) << seed;
        EXPECT_EQ(cutter->ranges(), reference.ranges()) << seed;
    }
}

TEST_F(MpegAudioPiecesTest, RandomPiecesOfADamagedStreamGiveTheSameAsTheReferenceCutter) {
    const Bytes temptations{0xFF, 0xFB, 0x90, 0x94, 0x00, 0xF0, 0xFA};
    for (uint32_t seed = 0; seed < 300; ++seed) {
        const Bytes stream = damaged(joinedAll(frames(12)), temptations, seed);
        const auto pieces = randomPieces(stream, seed, 1, 700);
        auto cutter = cutterOf(OGA_AUDIO_MP3);
        ReferenceCutter reference(ReferenceCutter::Codec::kMpegAudio);
        ASSERT_EQ(feedSound(*cutter, reference, pieces), std::nullopt) << seed;
    }
}

TEST(MpegAudioSyncSearchTest, FindsTheFirstPlausibleHeader) {
    const auto find = [](const Bytes& bytes) { return findMpegAudioSync(viewOf(bytes)); };
    EXPECT_EQ(find({}), std::nullopt);
    EXPECT_EQ(find({0xFF, 0xFB}), std::nullopt);
    EXPECT_EQ(find({0xFF, 0xFB, 0x90}), 0U);
    EXPECT_EQ(find({0x01, 0xFF, 0xFF, 0xFB, 0x90}), 2U);
    EXPECT_EQ(find(pattern(100, 1)), std::nullopt);
}

}  // namespace
}  // namespace android::ogm::test::mpeg_audio_cutter_test
