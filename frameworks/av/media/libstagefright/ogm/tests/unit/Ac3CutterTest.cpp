// SPDX-License-Identifier: Apache-2.0
#include "ChildProcess.h"
#include "CutterTest.h"
#include "ElementaryStreams.h"
#include "Pieces.h"
#include "ReferenceCutter.h"
#include "Views.h"
#include "audio/Ac3Cutter.h"

namespace android::ogm::test::ac3_cutter_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr char kTooShort[] = "****NO enough data in AC3 ESQueue****";
constexpr char kBadRate[] = "fscod=3,discard this frame";
// Long enough for each call that ends, short enough for one that never ends and keeps its units.

/** A frame with these codes and the length that the cutter computes. */
Bytes frameOf(uint32_t fscod, uint32_t frmsizecod, uint32_t seed = 0) {
    Ac3Frame frame;
    frame.sampleRateCode = fscod;
    frame.frameSizeCode = frmsizecod;
    frame.length = measuredAc3FrameSize(frmsizecod, fscod);
    frame.seed = seed;
    return frame.bytes();
}

/** The n-th frame of an ordinary stream: 96 kbit/s at 48 kHz, 384 bytes. */
Bytes frame(uint32_t number) {
    Ac3Frame frame;
    frame.seed = number;
    return frame.bytes();
}

constexpr size_t kFrameSize = 384;

/** The first six bytes of a frame and `more`. */
Bytes startOf(uint8_t codes, uint8_t bsidByte, const Bytes& more = {}) {
    return joined({{0x0B, 0x77, 0x12, 0x34, codes, bsidByte}, more});
}

LogLine incomplete(size_t size, size_t available) {
    return debugLine(
            formatted("NO enough data: accessUnit size:%d > remaining data after offset :%d",
                      static_cast<int>(size), static_cast<int>(available)));
}

/** Cuts AC-3 and E-AC-3 frames out of bytes that arrive in arbitrary pieces. */
class Ac3CutterTest : public CutterTest {
  protected:
    Ac3CutterTest() { mCutter = cutterOf(OGA_AUDIO_AC3); }

    std::vector<AccessUnit> feed(const Bytes& piece, int64_t timeUs) {
        return mCutter->feed(piece, timeUs);
    }

    std::unique_ptr<CutterDriver> mCutter;
};

TEST_F(Ac3CutterTest, FewerThanTenBytesAreNotEnough) {
    EXPECT_THAT(feed(startOf(0, 0x40, pattern(3, 1)), 1000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), ElementsAre(debugLine(kTooShort)));
    EXPECT_EQ(mCutter->buffered().size(), 9U);
    mEvents.clear();
    EXPECT_THAT(feed({0x55}, 2000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), ElementsAre(incomplete(128, 10)));
}

TEST_F(Ac3CutterTest, AnEmptyBufferIsNotEnoughEither) {
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_THAT(mEvents.lines(), ElementsAre(debugLine(kTooShort)));
}

TEST_F(Ac3CutterTest, EveryFrameSizeCodeAndRateHasTheLengthOfItsRow) {
    for (uint32_t frmsizecod = 0; frmsizecod < 37; ++frmsizecod) {
        for (uint32_t fscod = 0; fscod < 3; ++fscod) {
            auto cutter = cutterOf(OGA_AUDIO_AC3);
            const Bytes one = frameOf(fscod, frmsizecod, 1);
            const Bytes next = frameOf(fscod, frmsizecod, 2);
            EXPECT_EQ(cutter->feed(joined({one, head(next, 20)}), 1000),
                      (std::vector<AccessUnit>{{one, 1000}}))
                    << frmsizecod << ' ' << fscod;
            EXPECT_EQ(cutter->feed(tail(next, 20), 2000), (std::vector<AccessUnit>{{next, 1000}}))
                    << frmsizecod << ' ' << fscod;
        }
    }
}

TEST_F(Ac3CutterTest, FromFrameSizeCodeThreeOnTheRowIsTheStandardsNextOne) {
    // The standard's size for code 3 at 48 kHz is 80 words, 160 bytes.
    EXPECT_THAT(feed(frameOf(0, 2), 1000), ElementsAre(AccessUnit{frameOf(0, 2), 1000}));
    Bytes frame = startOf(3, 0x40, pattern(185, 1));
    EXPECT_THAT(feed(frame, 2000), IsEmpty());
    append(frame, {0x55});
    EXPECT_THAT(feed({0x55}, 3000), ElementsAre(AccessUnit{frame, 2000}));
    EXPECT_EQ(frame.size(), 192U);

    for (uint32_t frmsizecod = 3; frmsizecod < 37; ++frmsizecod) {
        for (uint32_t fscod = 0; fscod < 3; ++fscod) {
            Ac3Frame standard;
            standard.sampleRateCode = fscod;
            standard.frameSizeCode = frmsizecod + 1;
            EXPECT_EQ(parseAc3Frame(viewOf(frameOf(fscod, frmsizecod))).size, standard.size());
        }
    }
}

TEST_F(Ac3CutterTest, BelowFrameSizeCodeThreeTheRowsAreTheStandards) {
    for (uint32_t frmsizecod = 0; frmsizecod < 3; ++frmsizecod) {
        for (uint32_t fscod = 0; fscod < 3; ++fscod) {
            Ac3Frame standard;
            standard.sampleRateCode = fscod;
            standard.frameSizeCode = frmsizecod;
            EXPECT_EQ(parseAc3Frame(viewOf(standard.bytes())).size, standard.size());
        }
    }
}

TEST_F(Ac3CutterTest, EvenCodesAt48And32KilohertzStillHaveTheStandardsSize) {
    for (uint32_t frmsizecod = 4; frmsizecod < 37; frmsizecod += 2) {
        for (const uint32_t fscod : {0U, 2U}) {
            Ac3Frame standard;
            standard.sampleRateCode = fscod;
            standard.frameSizeCode = frmsizecod;
            EXPECT_EQ(framesOf(cutterOf(OGA_AUDIO_AC3)->feed(standard.bytes(), 0)),
                      framesOf(std::vector<Bytes>{standard.bytes()}))
                    << frmsizecod;
        }
    }
}

TEST_F(Ac3CutterTest, At44100HertzEverySecondFrameIsLostAndTheOthersCarryTwoBytesTooMany) {
    std::vector<Bytes> frames(5);
    for (uint32_t i = 0; i < frames.size(); ++i) {
        Ac3Frame frame;
        frame.sampleRateCode = 1;
        frame.frameSizeCode = 12;
        frame.seed = i;
        frames[i] = frame.bytes();
    }
    EXPECT_EQ(framesOf(feed(joinedAll(frames), 1000)),
              framesOf(std::vector<Bytes>{joined({frames[0], head(frames[1], 2)}),
                                          joined({frames[2], head(frames[3], 2)})}));
}

TEST_F(Ac3CutterTest, FrameSizeCode37HasNoBytesAtAnyRate) {
    for (const uint8_t fscod : {0x00, 0x40, 0x80}) {
        const Bytes header{0x0B, 0x77, 0, 0, static_cast<uint8_t>(fscod | 37), 0x40};
        EXPECT_EQ(parseAc3Frame(viewOf(header)).kind, ogm::Ac3Frame::Kind::kFrame) << int{fscod};
        EXPECT_EQ(parseAc3Frame(viewOf(header)).size, 0U) << int{fscod};
    }
}

TEST_F(Ac3CutterTest, FrameSizeCode37GivesEmptyUnitsWithoutATimeForever) {
    EXPECT_TRUE(mCutter->append(startOf(37, 0x40, pattern(20, 1)), 1000));
    EXPECT_THAT(mCutter->cut(1000), Each(AccessUnit{{}, std::nullopt}));
    EXPECT_EQ(mCutter->cut(1000).size(), 1000U);
    EXPECT_EQ(mCutter->buffered().size(), 26U);
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, 26U)));
}

TEST_F(Ac3CutterTest, FrameSizeCode37LosesOnlyTheBytesBeforeTheSyncWord) {
    mCutter->place(joined({pattern(7, 2), startOf(37, 0x40, pattern(20, 1))}), 1000);
    EXPECT_EQ(mCutter->next(), (AccessUnit{{}, std::nullopt}));
    EXPECT_EQ(mCutter->buffered(), startOf(37, 0x40, pattern(20, 1)));
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, 33U)));
}

TEST_F(Ac3CutterTest, AReservedSampleRateDropsEverythingUpToTheSyncWord) {
    const Bytes bad = startOf(0xC0, 0x40, pattern(14, 1));
    EXPECT_TRUE(mCutter->append(joined({bad, frame(1)}), 1000));
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_THAT(mEvents.lines(), ElementsAre(debugLine(kBadRate)));
    EXPECT_EQ(mCutter->buffered(), joined({tail(bad, 2), frame(1)}));
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, bad.size() + kFrameSize)));
    // The next call searches from the byte after the sync word on.
    EXPECT_EQ(mCutter->next(), (AccessUnit{frame(1), 1000}));
}

TEST_F(Ac3CutterTest, AFrameSizeCodeOf38OrMoreIsDroppedUnderTheSameMessage) {
    for (const uint8_t codes : {38, 63, 0x40 | 38, 0x80 | 63}) {
        auto cutter = cutterOf(OGA_AUDIO_AC3);
        EXPECT_THAT(cutter->feed(startOf(codes, 0x40, pattern(14, 1)), 1000), IsEmpty());
        EXPECT_THAT(mEvents.lines(), ElementsAre(debugLine(kBadRate))) << int{codes};
        EXPECT_EQ(cutter->buffered().size(), 18U);
    }
}

TEST_F(Ac3CutterTest, BytesBeforeARefusedFrameAreDroppedWithItsSyncWord) {
    mCutter->place(joined({pattern(30, 1), startOf(0xC0, 0x40, pattern(14, 2))}), 1000);
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_EQ(mCutter->buffered(), tail(startOf(0xC0, 0x40, pattern(14, 2)), 2));
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, 50U)));
}

TEST_F(Ac3CutterTest, TheWholeByteOfTheBitStreamIdDecidesWhichFrameItIs) {
    struct Case {
        uint8_t byte;
        size_t size;
    };
    // The size is 128 bytes if read as AC-3 (codes 0) and 1130 as E-AC-3 (size field 0x234).
    for (const auto& [byte, size] :
         {Case{0x00, 128}, Case{0x57, 128}, Case{0x58, 1130}, Case{0x80, 1130}, Case{0x87, 1130}}) {
        auto cutter = cutterOf(OGA_AUDIO_AC3);
        const Bytes frame = startOf(0, byte, pattern(size - 6, 1));
        EXPECT_THAT(cutter->feed(frame, 1000), ElementsAre(AccessUnit{frame, 1000})) << int{byte};
    }
}

TEST_F(Ac3CutterTest, ABitStreamIdAbove16IsRefusedAndDropsEverythingUpToTheSyncWord) {
    struct Case {
        uint8_t byte;
        const char* line;
    };
    for (const auto& [byte, line] : {Case{0x88, "[dequeueAccessUnitAC3]***wrong bsid:17***"},
                                     Case{0x97, "[dequeueAccessUnitAC3]***wrong bsid:18***"},
                                     Case{0xFF, "[dequeueAccessUnitAC3]***wrong bsid:31***"}}) {
        auto cutter = cutterOf(OGA_AUDIO_AC3);
        EXPECT_THAT(cutter->feed(startOf(0, byte, pattern(14, 1)), 1000), IsEmpty());
        EXPECT_THAT(mEvents.lines(), ElementsAre(debugLine(line)));
        EXPECT_EQ(cutter->buffered(), tail(startOf(0, byte, pattern(14, 1)), 2));
        EXPECT_THAT(cutter->ranges(), ElementsAre(Pair(1000, 20U)));
    }
}

TEST_F(Ac3CutterTest, EnhancedFramesOfEverySizeAreCut) {
    for (size_t length = 8; length <= 4096; length += 2) {
        EnhancedAc3Frame frame;
        frame.length = length;
        frame.streamType = length / 2 % 4;
        frame.substreamId = length / 8 % 8;
        frame.bitStreamId = 11 + length / 64 % 6;
        auto cutter = cutterOf(OGA_AUDIO_AC3);
        const auto units = cutter->feed(joined({frame.bytes(), pattern(10, 1)}), 1000);
        ASSERT_THAT(units, ElementsAre(AccessUnit{frame.bytes(), 1000})) << length;
        ASSERT_EQ(cutter->buffered(), pattern(10, 1)) << length;
    }
}

TEST_F(Ac3CutterTest, TheSmallestEnhancedFrameIsItsSyncWord) {
    const Bytes bytes{0x0B, 0x77, 0x00, 0x00, 0x00, 0x80, 0x55, 0x55, 0x55, 0x55};
    EXPECT_THAT(feed(bytes, 1000), ElementsAre(AccessUnit{{0x0B, 0x77}, 1000}));
    EXPECT_EQ(mCutter->buffered(), tail(bytes, 2));
}

TEST_F(Ac3CutterTest, AFrameOneByteShortChangesNothing) {
    const Bytes allButOne = head(frame(1), kFrameSize - 1);
    EXPECT_THAT(feed(allButOne, 1000), IsEmpty());
    EXPECT_THAT(mEvents.lines(), ElementsAre(incomplete(kFrameSize, kFrameSize - 1)));
    EXPECT_EQ(mCutter->buffered(), allButOne);
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, kFrameSize - 1)));
    EXPECT_THAT(feed(tail(frame(1), kFrameSize - 1), 2000),
                ElementsAre(AccessUnit{frame(1), 1000}));
}

TEST_F(Ac3CutterTest, AnIncompleteFrameKeepsTheBytesBeforeItToo) {
    const Bytes bytes = joined({pattern(30, 1), head(frame(1), 100)});
    mCutter->place(bytes, 1000);
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_THAT(mEvents.lines(), ElementsAre(incomplete(kFrameSize, 100)));
    EXPECT_EQ(mCutter->buffered(), bytes);
}

TEST_F(Ac3CutterTest, LeadingBytesAreNotChargedSoThatLaterTimesLag) {
    mCutter->place(joined({pattern(30, 1), frame(1)}), 1000);
    EXPECT_EQ(mCutter->next(), (AccessUnit{frame(1), 1000}));
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, 30U)));
    EXPECT_THAT(feed(frame(2), 2000), ElementsAre(AccessUnit{frame(2), 1000}));
    EXPECT_THAT(feed(frame(3), 3000), ElementsAre(AccessUnit{frame(3), 2000}));
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(3000, 30U)));
}

TEST_F(Ac3CutterTest, BytesBetweenTwoFramesAreDropped) {
    EXPECT_THAT(feed(joined({frame(1), pattern(30, 1), frame(2)}), 1000),
                ElementsAre(AccessUnit{frame(1), 1000}, AccessUnit{frame(2), 1000}));
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, 30U)));
}

TEST_F(Ac3CutterTest, BytesWithoutASyncWordAreKept) {
    EXPECT_THAT(feed(joined({frame(1), pattern(500, 1)}), 1000),
                ElementsAre(AccessUnit{frame(1), 1000}));
    EXPECT_EQ(mCutter->buffered(), pattern(500, 1));
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(Ac3CutterTest, ANegativeTimeIsLeftOut) {
    EXPECT_THAT(feed(frame(1), -5), ElementsAre(AccessUnit{frame(1), std::nullopt}));
    EXPECT_THAT(feed(frame(2), 0), ElementsAre(AccessUnit{frame(2), 0}));
}

TEST_F(Ac3CutterTest, AFrameHasTheTimeOfThePieceInWhichItBegins) {
    const Bytes stream = joined({frame(1), frame(2), frame(3)});
    EXPECT_THAT(feed(head(stream, 500), 5000), ElementsAre(AccessUnit{frame(1), 5000}));
    EXPECT_THAT(feed(head(tail(stream, 500), 300), 6000), ElementsAre(AccessUnit{frame(2), 5000}));
    EXPECT_THAT(feed(tail(stream, 800), 7000), ElementsAre(AccessUnit{frame(3), 6000}));
}

TEST_F(Ac3CutterTest, WithFewerThanFiveBytesFromTheSyncWordOnTheBitReaderEndsTheProcess) {
    for (size_t left = 2; left < 5; ++left) {
        mCutter->clear();
        mCutter->place(joined({pattern(20, 1), head(frame(1), left)}), 1000);
        const ChildResult result = runInChild([this] { mCutter->next(); });
        EXPECT_EQ(result.end, ChildResult::End::kAborted) << left;
        ASSERT_TRUE(result.fatal) << left;
        EXPECT_EQ(result.fatal->text,
                  "frameworks/av/media/libstagefright/foundation/ABitReader.cpp:56 "
                  "CHECK(getBitsGraceful(n, &ret)) failed.");
    }
}

TEST_F(Ac3CutterTest, WithExactlyFiveBytesTheMissingBitStreamIdIsReadAsZero) {
    mCutter->place(joined({pattern(20, 1), {0x0B, 0x77, 0x12, 0x34, 0x00}}), 1000);
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_THAT(mEvents.lines(), ElementsAre(incomplete(128, 5)));
}

TEST_F(Ac3CutterTest, AFrameThatDoesNotBeginWithTheSyncWordEndsTheProcess) {
    const Bytes bytes{0x12, 0x34, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(runInChild([&] { parseAc3Frame(viewOf(bytes)); }),
              abortedWith("OgmExtractor",
                          "frameworks/av/media/libstagefright/ogm/OgmExtractor:827 CHECK_EQ( "
                          "bits.getBits(16),0x0B77) failed: 4660 vs. 2935"));
}

std::vector<Bytes> frames(uint32_t count) {
    std::vector<Bytes> all;
    for (uint32_t i = 0; i < count; ++i) {
        EnhancedAc3Frame enhanced;
        enhanced.length = 60 + i * 30;
        enhanced.seed = i;
        all.push_back(i % 3 == 2 ? enhanced.bytes() : frameOf(i % 3, i % 12, i));
    }
    return all;
}

TEST_F(Ac3CutterTest, AStreamInOnePieceGivesAllItsFrames) {
    const auto stream = frames(20);
    EXPECT_EQ(framesOf(feed(joinedAll(stream), 0)), framesOf(stream));
}

TEST_F(Ac3CutterTest, OneByteAtATimeGivesNothing) {
    EXPECT_THAT(feedAll(*mCutter, equalPieces(joinedAll(frames(3)), 1)), IsEmpty());
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
}

TEST_F(Ac3CutterTest, OneByteAtATimeAfterASyncWordGivesFramesUntilTheBufferRunsEmpty) {
    const auto stream = frames(3);
    EXPECT_THAT(feed({0x0B, 0x77}, 1000), IsEmpty());
    EXPECT_EQ(framesOf(feedAll(*mCutter, equalPieces(tail(joinedAll(stream), 2), 1))),
              framesOf(std::vector<Bytes>{stream[0]}));
}

TEST_F(Ac3CutterTest, PiecesOfAnEqualSizeGiveTheFramesOfTheWhole) {
    const auto stream = frames(20);
    for (const size_t size : {2, 3, 7, 64, 255, 1000, 4096}) {
        auto cutter = cutterOf(OGA_AUDIO_AC3);
        ReferenceCutter reference(ReferenceCutter::Codec::kAc3);
        const auto pieces = equalPieces(joinedAll(stream), size);
        const auto units = feedAll(*cutter, pieces);
        EXPECT_EQ(framesOf(units), framesOf(stream)) << size;
        EXPECT_EQ(units, feedAll(reference, pieces)) << size;
    }
}

TEST_F(Ac3CutterTest, RandomPiecesOfTwoBytesOrMoreGiveTheFramesOfTheWhole) {
    const auto stream = frames(12);
    for (uint32_t seed = 0; seed < 300; ++seed) {
        auto cutter = cutterOf(OGA_AUDIO_AC3);
        ReferenceCutter reference(ReferenceCutter::Codec::kAc3);
        const auto pieces = randomPieces(joinedAll(stream), seed, 2, 2 + seed * 3);
        const auto units = feedAll(*cutter, pieces);
        ASSERT_EQ(framesOf(units), framesOf(stream)) << seed;
        ASSERT_EQ(units, feedAll(reference, pieces)) << seed;
    }
}

TEST_F(Ac3CutterTest, RandomPiecesOfADamagedStreamGiveTheSameAsTheReferenceCutter) {
    const Bytes temptations{0x0B, 0x77, 0xC0, 0x00, 0x26, 0x58, 0x88, 0x40};
    for (uint32_t seed = 0; seed < 300; ++seed) {
        const Bytes stream = damaged(joinedAll(frames(12)), temptations, seed);
        auto cutter = cutterOf(OGA_AUDIO_AC3);
        ReferenceCutter reference(ReferenceCutter::Codec::kAc3);
        const auto pieces = randomPieces(stream, seed, 1, 700);
        ASSERT_EQ(feedSound(*cutter, reference, pieces), std::nullopt) << seed;
    }
}

TEST(Ac3SyncSearchTest, FindsTheFirstSyncWord) {
    const auto find = [](const Bytes& bytes) { return findAc3Sync(viewOf(bytes), 0); };
    EXPECT_EQ(find({}), std::nullopt);
    EXPECT_EQ(find({0x0B}), std::nullopt);
    EXPECT_EQ(find({0x0B, 0x77}), 0U);
    EXPECT_EQ(find({0x0B, 0x0B, 0x77}), 1U);
    EXPECT_EQ(find({0x77, 0x0B}), std::nullopt);
}

}  // namespace
}  // namespace android::ogm::test::ac3_cutter_test
