// SPDX-License-Identifier: Apache-2.0
#include "ChildProcess.h"
#include "CutterTest.h"
#include "ElementaryStreams.h"
#include "Pieces.h"
#include "ReferenceCutter.h"
#include "Views.h"
#include "audio/DtsCutter.h"

namespace android::ogm::test::dts_cutter_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr DtsForm kForms[] = {DtsForm::kCore16BitBigEndian, DtsForm::kHdSubstream,
                              DtsForm::kCore14BitBigEndian};
constexpr size_t kFrameSize = 300;

/** The n-th frame of an ordinary stream. */
Bytes frame(uint32_t number, DtsForm form = DtsForm::kCore16BitBigEndian) {
    return dtsFrame(form, kFrameSize, number);
}

/** Cuts DTS frames out of bytes that arrive in arbitrary pieces. */
class DtsCutterTest : public CutterTest {
  protected:
    DtsCutterTest() { mCutter = cutterOf(OGA_AUDIO_DTS); }

    std::vector<AccessUnit> feed(const Bytes& piece, int64_t timeUs) {
        return mCutter->feed(piece, timeUs);
    }

    std::unique_ptr<CutterDriver> mCutter;
};

TEST_F(DtsCutterTest, AFrameComesOutOnlyWhenTheNextSyncWordHasArrived) {
    EXPECT_THAT(feed(frame(1), 1000), IsEmpty());
    EXPECT_EQ(mCutter->buffered(), frame(1));
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, kFrameSize)));
    EXPECT_THAT(feed(frame(2), 2000), ElementsAre(AccessUnit{frame(1), 1000}));
    EXPECT_EQ(mCutter->buffered(), frame(2));
    EXPECT_THAT(mEvents.lines(), IsEmpty());
}

TEST_F(DtsCutterTest, ASyncWordIsFoundOnlyIfAByteFollowsIt) {
    EXPECT_THAT(feed(joined({frame(1), head(frame(2), 4)}), 1000), IsEmpty());
    EXPECT_THAT(feed({0x55}, 2000), ElementsAre(AccessUnit{frame(1), 1000}));
}

TEST_F(DtsCutterTest, FourBytesOrFewerAreKept) {
    EXPECT_THAT(feed(head(frame(1), 4), 1000), IsEmpty());
    EXPECT_EQ(mCutter->buffered(), head(frame(1), 4));
    EXPECT_EQ(mCutter->next(), std::nullopt);
}

TEST_F(DtsCutterTest, EveryFormEndsTheFrameBeforeIt) {
    for (const DtsForm first : {DtsForm::kCore16BitBigEndian, DtsForm::kHdSubstream}) {
        for (const DtsForm second : kForms) {
            auto cutter = cutterOf(OGA_AUDIO_DTS);
            EXPECT_THAT(cutter->feed(joined({frame(1, first), frame(2, second)}), 1000),
                        ElementsAre(AccessUnit{frame(1, first), 1000}));
            EXPECT_EQ(cutter->buffered(), frame(2, second));
        }
    }
}

TEST_F(DtsCutterTest, ASubstreamAfterItsCoreIsASeparateAccessUnit) {
    const Bytes core = frame(1);
    const Bytes substream = frame(2, DtsForm::kHdSubstream);
    EXPECT_THAT(feed(joined({core, substream, core}), 1000),
                ElementsAre(AccessUnit{core, 1000}, AccessUnit{substream, 1000}));
}

TEST_F(DtsCutterTest, AFrameOf14BitWordsIsCutOnceTheStreamHasBegun) {
    const Bytes core14 = frame(2, DtsForm::kCore14BitBigEndian);
    EXPECT_THAT(feed(joined({frame(1), core14, core14, frame(3)}), 1000),
                ElementsAre(AccessUnit{frame(1), 1000}, AccessUnit{core14, 1000},
                            AccessUnit{core14, 1000}));
}

TEST_F(DtsCutterTest, JunkBeforeTheFirstSyncWordIsDroppedAndItsRangesConsumed) {
    mCutter->place(pattern(30, 1), 1000);
    EXPECT_TRUE(mCutter->append(pattern(10, 2), 2000));
    EXPECT_TRUE(mCutter->append(frame(1), 3000));
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_EQ(mCutter->buffered(), frame(1));
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(3000, kFrameSize)));
    EXPECT_THAT(feed(frame(2), 4000), ElementsAre(AccessUnit{frame(1), 3000}));
}

TEST_F(DtsCutterTest, OneByteOfJunkIsDroppedToo) {
    mCutter->place({0x55}, 1000);
    EXPECT_TRUE(mCutter->append(joined({frame(1), frame(2)}), 2000));
    EXPECT_EQ(mCutter->next(), (AccessUnit{frame(1), 2000}));
}

TEST_F(DtsCutterTest, AFrameAfterJunkHasTheTimeOfTheRangeOfItsSyncWord) {
    mCutter->place(joined({pattern(30, 1), head(frame(1), 100)}), 1000);
    EXPECT_TRUE(mCutter->append(joined({tail(frame(1), 100), frame(2)}), 2000));
    EXPECT_EQ(mCutter->next(), (AccessUnit{frame(1), 1000}));
}

TEST_F(DtsCutterTest, JunkOfANegativeTimeIsDroppedWithoutComplaint) {
    mCutter->place(pattern(30, 1), -5);
    EXPECT_TRUE(mCutter->append(joined({frame(1), frame(2)}), 2000));
    EXPECT_EQ(mCutter->next(), (AccessUnit{frame(1), 2000}));
}

TEST_F(DtsCutterTest, JunkIsDroppedEvenWhenOnlyASyncWordFollows) {
    mCutter->place(joined({pattern(30, 1), head(frame(1), 5)}), 1000);
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_EQ(mCutter->buffered(), head(frame(1), 5));
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, 5U)));
}

TEST_F(DtsCutterTest, BytesWithoutASyncWordAreKept) {
    mCutter->place(joined({pattern(30, 1), head(frame(1), 4)}), 1000);
    EXPECT_EQ(mCutter->next(), std::nullopt);
    EXPECT_EQ(mCutter->buffered().size(), 34U);
    EXPECT_THAT(mCutter->ranges(), ElementsAre(Pair(1000, 34U)));
}

TEST_F(DtsCutterTest, BytesAfterAFrameBelongToIt) {
    const Bytes longer = joined({frame(1), pattern(77, 9)});
    EXPECT_THAT(feed(joined({longer, frame(2)}), 1000), ElementsAre(AccessUnit{longer, 1000}));
}

TEST_F(DtsCutterTest, TwoSyncWordsInARowMakeAFrameOfFourBytes) {
    EXPECT_THAT(feed(joined({head(frame(1), 4), frame(2)}), 1000),
                ElementsAre(AccessUnit{head(frame(1), 4), 1000}));
}

TEST_F(DtsCutterTest, NineBytesAreEnoughForAFrameOfASyncWord) {
    const Bytes sync = head(frame(1), 4);
    EXPECT_THAT(feed(joined({sync, sync}), 1000), IsEmpty());
    EXPECT_THAT(feed({0x55}, 2000), ElementsAre(AccessUnit{sync, 1000}));
}

TEST_F(DtsCutterTest, AFrameHasTheTimeOfThePieceInWhichItBegins) {
    const Bytes stream = joined({frame(1), frame(2), frame(3)});
    EXPECT_THAT(feed(head(stream, 400), 5000), ElementsAre(AccessUnit{frame(1), 5000}));
    EXPECT_THAT(feed(head(tail(stream, 400), 250), 6000), ElementsAre(AccessUnit{frame(2), 5000}));
    EXPECT_THAT(feed(joined({tail(stream, 650), frame(4)}), 7000),
                ElementsAre(AccessUnit{frame(3), 6000}));
}

TEST_F(DtsCutterTest, ANegativeTimeEndsTheProcess) {
    EXPECT_EQ(runInChild([this] {
                  feed(joined({frame(1), frame(2)}), -5);
              }),
              abortedWith("OgmExtractor",
                          "frameworks/av/media/libstagefright/ogm/OgmExtractor:783 CHECK_GE( "
                          "timeUs,0ll) failed: -5 vs. 0"));
}

std::vector<Bytes> frames(uint32_t count) {
    std::vector<Bytes> all;
    for (uint32_t i = 0; i < count; ++i) {
        all.push_back(dtsFrame(kForms[i % 3], 20 + i * 37, i));
    }
    return all;
}

std::vector<Bytes> allButTheLast(const std::vector<Bytes>& frames) {
    return {frames.begin(), frames.end() - 1};
}

TEST_F(DtsCutterTest, AStreamInOnePieceGivesAllFramesButTheLast) {
    const auto stream = frames(20);
    EXPECT_EQ(framesOf(feed(joinedAll(stream), 0)), framesOf(allButTheLast(stream)));
}

TEST_F(DtsCutterTest, OneByteAtATimeGivesNothing) {
    EXPECT_THAT(feedAll(*mCutter, equalPieces(joinedAll(frames(5)), 1)), IsEmpty());
    EXPECT_THAT(mCutter->buffered(), IsEmpty());
}

TEST_F(DtsCutterTest, OneByteAtATimeAfterASyncWordGivesTheFramesOfTheWhole) {
    const auto stream = frames(20);
    EXPECT_THAT(feed(head(stream[0], 4), 500), IsEmpty());
    EXPECT_EQ(framesOf(feedAll(*mCutter, equalPieces(tail(joinedAll(stream), 4), 1))),
              framesOf(allButTheLast(stream)));
}

TEST_F(DtsCutterTest, PiecesOfAnEqualSizeGiveTheFramesOfTheWhole) {
    const auto stream = frames(20);
    for (const size_t size : {4, 5, 7, 64, 255, 1000, 4096}) {
        auto cutter = cutterOf(OGA_AUDIO_DTS);
        ReferenceCutter reference(ReferenceCutter::Codec::kDts);
        const auto pieces = equalPieces(joinedAll(stream), size);
        const auto units = feedAll(*cutter, pieces);
        EXPECT_EQ(framesOf(units), framesOf(allButTheLast(stream))) << size;
        EXPECT_EQ(units, feedAll(reference, pieces)) << size;
    }
}

TEST_F(DtsCutterTest, RandomPiecesGiveTheFramesOfTheWholeOnceTheFirstHoldsASyncWord) {
    const auto stream = frames(12);
    for (uint32_t seed = 0; seed < 300; ++seed) {
        auto cutter = cutterOf(OGA_AUDIO_DTS);
        ReferenceCutter reference(ReferenceCutter::Codec::kDts);
        auto pieces = randomPieces(tail(joinedAll(stream), 4), seed, 1, 1 + seed * 3);
        pieces.insert(pieces.begin(), head(stream[0], 4));
        const auto units = feedAll(*cutter, pieces);
        ASSERT_EQ(framesOf(units), framesOf(allButTheLast(stream))) << seed;
        ASSERT_EQ(units, feedAll(reference, pieces)) << seed;
    }
}

TEST_F(DtsCutterTest, RandomPiecesOfADamagedStreamGiveTheSameAsTheReferenceCutter) {
    const Bytes temptations{0x7F, 0xFE, 0x80, 0x01, 0x64, 0x58, 0x20, 0x25, 0x1F, 0xFF, 0xE8};
    for (uint32_t seed = 0; seed < 300; ++seed) {
        const Bytes stream = damaged(joinedAll(frames(12)), temptations, seed);
        auto cutter = cutterOf(OGA_AUDIO_DTS);
        ReferenceCutter reference(ReferenceCutter::Codec::kDts);
        const auto pieces = randomPieces(stream, seed, 1, 300);
        ASSERT_EQ(feedSound(*cutter, reference, pieces), std::nullopt) << seed;
    }
}

TEST(DtsSyncSearchTest, AStreamBeginsAtACoreOf16BitWordsOrASubstream) {
    const auto find = [](const Bytes& bytes) { return findDtsStart(viewOf(bytes)); };
    EXPECT_EQ(find({}), std::nullopt);
    EXPECT_EQ(find({0x7F, 0xFE, 0x80}), std::nullopt);
    EXPECT_EQ(find({0x7F, 0xFE, 0x80, 0x01}), 0U);
    EXPECT_EQ(find({0x64, 0x58, 0x20, 0x25}), 0U);
    EXPECT_EQ(find({0x7F, 0x64, 0x58, 0x20, 0x25}), 1U);
    EXPECT_EQ(find({0x1F, 0xFF, 0xE8, 0x00, 0x00}), std::nullopt);
}

TEST(DtsSyncSearchTest, AnyFormFollowedByAByteIsFoundFromAGivenPositionOn) {
    const Bytes bytes = joined({{0x7F, 0xFE, 0x80, 0x01}, {0x1F, 0xFF, 0xE8, 0x00}, {0x55}});
    EXPECT_EQ(findDtsSync(viewOf(bytes), 0), 0U);
    EXPECT_EQ(findDtsSync(viewOf(bytes), 1), 4U);
    EXPECT_EQ(findDtsSync(viewOf(bytes), 4), 4U);
    EXPECT_EQ(findDtsSync(viewOf(bytes), 5), std::nullopt);
    EXPECT_EQ(findDtsSync(viewOf(bytes), 500), std::nullopt);
    EXPECT_EQ(findDtsSync(viewOf(head(bytes, 8)), 1), std::nullopt);
    EXPECT_EQ(findDtsSync(viewOf({}), 0), std::nullopt);
}

}  // namespace
}  // namespace android::ogm::test::dts_cutter_test
