// SPDX-License-Identifier: Apache-2.0
#include "page/PageCursor.h"

#include "PagesTest.h"

namespace android::ogm::test::page_cursor_test {
namespace {

constexpr size_t kHeaderPages = 81;

/** A file with a header page of 81 bytes, so that no tested page begins at offset 0. */
OgmFile fileWithAHeader() {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    return file;
}

class PageCursorTest : public PagesTest {
  protected:
    PageCursor mCursor;
};

TEST_F(PageCursorTest, GoingToAPlaceAfterTheLastPageGoesToTheEnd) {
    EXPECT_EQ(mCursor.goToPage(openPages(fileWithAHeader()), 50, 0), AMEDIA_OK);
    EXPECT_EQ(mEvents.lines().back(), infoLine("Seek to file end\n"));
    EXPECT_TRUE(mCursor.isSet());
    EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages});
    mEvents.clear();
    // The next page is searched for at the end of the data.
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.reads(), (std::vector{ReadCall{kHeaderPages, 4, 0}}));
}

TEST_F(PageCursorTest, GoingToAPlaceWithinALimitFailsWithoutAChange) {
    OgmFile file = fileWithAHeader();
    file.addJunk(10);
    file.addData(1, 1, {0});
    EXPECT_EQ(mCursor.goToPage(openPages(file), kHeaderPages, 4), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_FALSE(mCursor.isSet());
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("Skip 4 bytes of junk from 81 still cannot reach page start\n"),
                           infoLine("Cannot find a page start, from 0x00000051 in size 4\n")}));
}

TEST_F(PageCursorTest, GoingToAPlaceReadsThePageThatItFinds) {
    OgmFile file = fileWithAHeader();
    file.addJunk(3);
    file.addData(1, 1, {0});
    EXPECT_EQ(mCursor.goToPage(openPages(file), kHeaderPages, 0), AMEDIA_OK);
    EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages + 3});
    EXPECT_EQ(mCursor.page().mSerialNo, 1U);
    EXPECT_TRUE(mCursor.isAtPageStart());
    EXPECT_EQ(
            mEvents.events(),
            (std::vector<Event>{
                    ReadCall{81, 4, 4}, ReadCall{82, 4, 4}, ReadCall{83, 4, 4}, ReadCall{84, 4, 4},
                    infoLine("*** Skip 3 bytes of junk from 81 to reach page start ***\n"),
                    ReadCall{84, 27, 27}, ReadCall{111, 1, 1}}));
}

TEST_F(PageCursorTest, GoesToAPageThatCannotBeReadToo) {
    OgmFile file = fileWithAHeader();
    file.add(OggPage(1).version(1));
    EXPECT_EQ(mCursor.goToPage(openPages(file), kHeaderPages, 0), AMEDIA_OK);
    EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages});
}

TEST_F(PageCursorTest, ACursorThatWasNotSetHasAPageThatIsUsedUp) {
    EXPECT_FALSE(mCursor.isSet());
    EXPECT_TRUE(mCursor.isPageUsedUp());
    EXPECT_FALSE(mCursor.nextPiece().has_value());
}

/** The pieces of one page, which begins after the header page. */
class PieceTest : public PageCursorTest {
  protected:
    static constexpr int64_t kPage = kHeaderPages;

    void goTo(const OggPage& page) {
        OgmFile file = fileWithAHeader();
        file.add(page);
        ASSERT_EQ(mCursor.goToPage(openPages(file), kPage, 0), AMEDIA_OK);
    }

    /** Returns the next piece and moves past it. */
    std::optional<PacketPiece> take() {
        const std::optional<PacketPiece> piece = mCursor.nextPiece();
        if (piece) {
            mCursor.use(*piece);
        }
        return piece;
    }

    void expectPiece(int64_t offset, size_t size, bool isNewPacket) {
        const std::optional<PacketPiece> piece = take();
        ASSERT_TRUE(piece);
        EXPECT_EQ(piece->offset, offset);
        EXPECT_EQ(piece->size, size);
        EXPECT_EQ(piece->isNewPacket, isNewPacket);
    }
};

TEST_F(PieceTest, EachPacketOfAPageIsAPiece) {
    goTo(OggPage(1).packet(filled(10, 1)).packet(filled(300, 2)).packet({}));
    // 27 bytes of header and four lacing values.
    EXPECT_TRUE(mCursor.isAtPageStart());
    expectPiece(kPage + 31, 10, true);
    EXPECT_FALSE(mCursor.isAtPageStart());
    EXPECT_FALSE(mCursor.isPageUsedUp());
    expectPiece(kPage + 41, 300, true);
    expectPiece(kPage + 341, 0, true);
    EXPECT_TRUE(mCursor.isPageUsedUp());
    EXPECT_FALSE(take());
}

TEST_F(PieceTest, APieceThatIsNotUsedIsReturnedAgain) {
    goTo(OggPage(1).packet(filled(10, 1)).packet(filled(20, 2)));
    EXPECT_EQ(mCursor.nextPiece()->size, 10U);
    EXPECT_EQ(mCursor.nextPiece()->size, 10U);
}

TEST_F(PieceTest, TheFirstOfAContinuedPageIsNoNewPacketAndAllOthersAre) {
    goTo(OggPage(1).continued().packet({1}).packet({2}));
    expectPiece(kPage + 29, 1, false);
    expectPiece(kPage + 30, 1, true);
}

TEST_F(PieceTest, APacketThatContinuesOnTheNextPageIsCutAtTheEndOfThePage) {
    goTo(OggPage(1).packet({1}).openPacket(filled(510, 2)));
    expectPiece(kPage + 30, 1, true);
    expectPiece(kPage + 31, 510, true);
    EXPECT_TRUE(mCursor.isPageUsedUp());
}

TEST_F(PieceTest, APacketOfAMultipleOf255BytesEndsWithALacingValueOfZero) {
    goTo(OggPage(1).packet(filled(255, 1)).packet({2}));
    expectPiece(kPage + 30, 255, true);
    expectPiece(kPage + 285, 1, true);
}

TEST_F(PieceTest, APageWithoutSegmentsHasNone) {
    goTo(OggPage(1));
    EXPECT_TRUE(mCursor.isAtPageStart());
    EXPECT_TRUE(mCursor.isPageUsedUp());
    EXPECT_FALSE(take());
}

TEST_F(PieceTest, APageThatIsSkippedHasNoneLeft) {
    goTo(OggPage(1).packet({1}).packet({2}));
    mCursor.skipPage();
    EXPECT_TRUE(mCursor.isPageUsedUp());
    EXPECT_FALSE(take());
}

/** Goes from page to page. */
class NextPageTest : public PageCursorTest {
  protected:
    /** Two pages of 29 bytes after the header page. */
    static OgmFile twoPages() {
        OgmFile file = fileWithAHeader();
        file.add(OggPage(1).granule(10).packet({1}));
        file.add(OggPage(2).granule(20).packet({2}));
        return file;
    }

    void goToFirst(const OgmFile& file) {
        ASSERT_EQ(mCursor.goToPage(openPages(file), kHeaderPages, 0), AMEDIA_OK);
        mEvents.clear();
    }
};

TEST_F(NextPageTest, IsEnteredAtItsStart) {
    goToFirst(twoPages());
    mCursor.skipPage();
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_OK);
    EXPECT_EQ(mCursor.page().mSerialNo, 2U);
    EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages + 29});
    EXPECT_TRUE(mCursor.isAtPageStart());
    EXPECT_EQ(mCursor.nextPiece()->offset, int64_t{kHeaderPages + 29 + 28});
    EXPECT_EQ(mEvents.reads(),
              (std::vector{ReadCall{110, 4, 4}, ReadCall{110, 27, 27}, ReadCall{137, 1, 1}}));
}

TEST_F(NextPageTest, IsSearchedOnePageFurtherOnAfterEachFailure) {
    goToFirst(twoPages());
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_OK);
    mEvents.clear();
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{errorLine("FindPage: readSize = 0"),
                           infoLine("Cannot find a page start,LINE:2222 from 0x0000008B\n")}));
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.lines().back(),
              infoLine("Cannot find a page start,LINE:2222 from 0x000000A8\n"));
}

TEST_F(NextPageTest, AfterAHeaderThatCannotBeReadThePageBeforeIsCutOnceMore) {
    OgmFile file = fileWithAHeader();
    file.add(OggPage(1).packet(filled(5, 1)));
    file.add(OggPage(2).version(1).packet(filled(9, 1)));
    goToFirst(file);
    mCursor.skipPage();
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_OK);
    EXPECT_EQ(mCursor.page().mSerialNo, 1U);
    EXPECT_EQ(mCursor.nextPiece()->offset, int64_t{kHeaderPages + 33 + 28});
    EXPECT_EQ(mCursor.nextPiece()->size, 5U);
    // The status is added like a size: 114 - 10002.
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mCursor.pageOffset(), -9888);
}

TEST_F(NextPageTest, AfterAShortLacingReadTheRestOfTheTableBeforeIsUsed) {
    OgmFile file = fileWithAHeader();
    file.add(OggPage(1).packet(filled(3, 1)).packet(filled(5, 1)));
    const auto second =
            static_cast<int64_t>(file.add(OggPage(2).packet(filled(7, 1)).packet(filled(9, 1))));
    goToFirst(file);
    mSource->setFault(faultAtOffset(second + 27, 1));
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_OK);
    const std::optional<PacketPiece> piece = mCursor.nextPiece();
    EXPECT_EQ(piece->size, 7U);
    mCursor.use(*piece);
    EXPECT_EQ(mCursor.nextPiece()->size, 5U);
}

/** The granule position of the next page of a stream. */
class NextGranuleTest : public NextPageTest {
  protected:
    std::optional<uint64_t> nextGranule(uint32_t serialNo) {
        uint64_t granule = 0;
        const media_status_t status = mCursor.getNextGranulePosition(*mPages, serialNo, &granule);
        EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages});
        if (status != AMEDIA_OK) {
            EXPECT_EQ(status, AMEDIA_ERROR_END_OF_STREAM);
            return std::nullopt;
        }
        return granule;
    }
};

TEST_F(NextGranuleTest, IsThatOfItsNextPageWithoutAMove) {
    OgmFile file = twoPages();
    file.add(OggPage(1).granule(30).packet({3}));
    file.add(OggPage(1).granule(40).packet({3}));
    goToFirst(file);
    EXPECT_EQ(nextGranule(1), 30U);
    EXPECT_EQ(nextGranule(2), 20U);
}

TEST_F(NextGranuleTest, FailsWithoutALaterPage) {
    goToFirst(twoPages());
    EXPECT_EQ(nextGranule(1), std::nullopt);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("FindPage: readSize = 0"),
                                            errorLine("getNextGranulePosition: Cannot find a page "
                                                      "start,LINE:2175 from 0x0000008B\n")}));
}

TEST_F(NextGranuleTest, FailsAtAPageThatCannotBeRead) {
    OgmFile file = twoPages();
    file.addJunk(2);
    file.add(OggPage(1).flags(0x80));
    goToFirst(file);
    EXPECT_EQ(nextGranule(1), std::nullopt);
    EXPECT_EQ(mEvents.lines().back(), errorLine("getNextGranulePosition:Cannot read a page header, "
                                                "at 0x0000008D\n"));
}

TEST_F(NextGranuleTest, IsSearchedTooEarlyAfterJunkByTheLengthOfTheJunk) {
    OgmFile file = fileWithAHeader();
    file.add(OggPage(1).packet({1}));  // ends at 110
    file.addJunk(5);
    file.add(OggPage(2).packet({2}));  // 115 to 144
    file.add(OggPage(1).granule(30).packet({3}));
    goToFirst(file);
    EXPECT_EQ(nextGranule(1), 30U);
    EXPECT_EQ(mEvents.linesBeginning("*** Skip"),
              (std::vector{infoLine("*** Skip 5 bytes of junk from 110 to reach page start ***\n"),
                           infoLine("*** Skip 5 bytes of junk from 139 to reach page start "
                                    "***\n")}));
}

}  // namespace
}  // namespace android::ogm::test::page_cursor_test
