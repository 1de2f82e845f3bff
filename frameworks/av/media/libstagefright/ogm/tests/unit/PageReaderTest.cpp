// SPDX-License-Identifier: Apache-2.0
#include "page/PageReader.h"

#include <algorithm>

#include "PagesTest.h"

namespace android::ogm::test::page_reader_test {
namespace {

class PageReaderTest : public PagesTest {
  protected:
    int64_t readPage(const Bytes& bytes, int64_t offset = 0) {
        return openPages(bytes).readPage(offset, &mPage);
    }

    OgmPage mPage;
};

TEST_F(PageReaderTest, APageIsReadFieldByField) {
    const OggPage page = OggPage(0x89ABCDEF)
                                 .granule(0x1122334455667788)
                                 .sequence(0xFEDCBA98)
                                 .flags(0x05)
                                 .packet(filled(300, 1))
                                 .packet({1, 2})
                                 .openPacket(filled(255, 2));
    EXPECT_EQ(readPage(page.bytes()), static_cast<int64_t>(page.size()));
    EXPECT_EQ(mPage.mGranulePosition, 0x1122334455667788U);
    EXPECT_EQ(mPage.mSerialNo, 0x89ABCDEFU);
    EXPECT_EQ(mPage.mPageNo, 0xFEDCBA98U);
    EXPECT_EQ(mPage.mFlags, 0x05);
    EXPECT_EQ(mPage.mNumSegments, 4);
    EXPECT_EQ(mPage.mNumPackets, 2U);
    EXPECT_EQ(Bytes(mPage.mLacing.begin(), mPage.mLacing.begin() + 4), (Bytes{255, 45, 2, 255}));
    EXPECT_EQ(mEvents.lines().size(), 0U);
}

TEST_F(PageReaderTest, APageHas255PacketsAtMost) {
    OggPage page(1);
    for (size_t i = 0; i < OgmPage::kMaxSegments; ++i) {
        page.packet(filled(254, 1));
    }
    EXPECT_EQ(readPage(page.bytes()), 27 + 255 + 255 * 254);
    EXPECT_EQ(mPage.mNumPackets, 255U);
}

TEST_F(PageReaderTest, APageOf255FullLacingValuesHas65307BytesAndNoPackets) {
    EXPECT_EQ(readPage(OggPage(1).openPacket(filled(255 * 255, 1)).bytes()), 65307);
    EXPECT_EQ(mPage.mNumSegments, 255);
    EXPECT_EQ(mPage.mNumPackets, 0U);
}

TEST_F(PageReaderTest, APageWithoutSegmentsHas27BytesAndItsLacingReadIsOfZeroBytes) {
    EXPECT_EQ(readPage(OggPage(1).bytes()), 27);
    EXPECT_EQ(mPage.mNumPackets, 0U);
    EXPECT_EQ(mEvents.reads(), (std::vector{ReadCall{0, 27, 27}, ReadCall{27, 0, 0}}));
}

TEST_F(PageReaderTest, FullSegmentsEndNoPacket) {
    EXPECT_EQ(readPage(OggPage(1).openPacket(filled(765, 1)).bytes()), 27 + 3 + 765);
    EXPECT_EQ(mPage.mNumPackets, 0U);
}

TEST_F(PageReaderTest, TheLargestPageHas65307Bytes) {
    EXPECT_EQ(readPage(OggPage(1).openPacket(filled(kFullPageBody, 1)).bytes()), 65307);
}

TEST_F(PageReaderTest, OnlyTheHeaderMustBeThere) {
    EXPECT_EQ(readPage(head(OggPage(1).packet(filled(200, 1)).bytes(), 28)), 228);
}

TEST_F(PageReaderTest, ADamagedChecksumDoesNotMatter) {
    EXPECT_EQ(readPage(OggPage(1).packet({1}).checksum(1).bytes()), 29);
}

TEST_F(PageReaderTest, FewerThan27BytesAreAnIoError) {
    EXPECT_EQ(readPage(head(OggPage(1).bytes(), 26)), AMEDIA_ERROR_IO);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("failed to read 27 bytesat offset 0x00000000\n")}));
}

TEST_F(PageReaderTest, TheOffsetOfAHeaderThatIsCutOffIsHexadecimal) {
    EXPECT_EQ(readPage(filled(228, 0), 228), AMEDIA_ERROR_IO);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("failed to read 27 bytesat offset 0x000000e4\n")}));
}

TEST_F(PageReaderTest, AMissingCapturePatternIsMalformed) {
    EXPECT_EQ(readPage(OggPage(1).capturePattern("OgGS").bytes()), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("Page Starts without signatures\n")}));
}

TEST_F(PageReaderTest, AnotherVersionIsUnsupportedAndNamedInHexadecimal) {
    EXPECT_EQ(readPage(OggPage(1).version(0xAB).bytes()), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("Version Error, verison should be 0 but AB\n")}));
}

TEST_F(PageReaderTest, TheVersionIsCheckedBeforeTheFlags) {
    EXPECT_EQ(readPage(OggPage(1).version(1).flags(0x80).bytes()), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("Version Error, verison should be 0 but 1\n")}));
}

TEST_F(PageReaderTest, UndefinedFlagsAreMalformedAndDefinedOnesAreNot) {
    EXPECT_EQ(readPage(OggPage(1).flags(0x08).bytes()), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("Flag only bits 0-2 are defined in version 0\n")}));
    EXPECT_EQ(readPage(OggPage(1).flags(0x07).bytes()), 27);
    EXPECT_EQ(readPage(OggPage(1).flags(0xFF).bytes()), AMEDIA_ERROR_MALFORMED);
}

TEST_F(PageReaderTest, AFailedHeaderReadIsReportedAsAMissingSignature) {
    openPages(OggPage(1).bytes());
    mSource->setFault(faultAtOffset(0, kReadRefused));
    EXPECT_EQ(mPages->readPage(0, &mPage), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("Page Starts without signatures\n")}));
}

TEST_F(PageReaderTest, ARefusedHeaderLeavesThePageUntouched) {
    mPage.mSerialNo = 77;
    mPage.mNumSegments = 3;
    mPage.mLacing[0] = 9;
    readPage(OggPage(1).version(1).packet({1}).bytes());
    EXPECT_EQ(mPage.mSerialNo, 77U);
    EXPECT_EQ(mPage.mNumSegments, 3);
    EXPECT_EQ(mPage.mLacing[0], 9);
}

TEST_F(PageReaderTest, AShortLacingTableIsAnIoErrorThatFillsTheHeaderFields) {
    mPage.mNumPackets = 5;
    mPage.mLacing.fill(9);
    openPages(OggPage(1).granule(3).packet({1}).packet({2, 2}).packet({3, 3, 3}).bytes());
    mSource->setFault(faultAtOffset(27, 2));
    EXPECT_EQ(mPages->readPage(0, &mPage), AMEDIA_ERROR_IO);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("failed to read segments lace length data\n")}));
    EXPECT_EQ(mPage.mGranulePosition, 3U);
    EXPECT_EQ(mPage.mNumSegments, 3);
    EXPECT_EQ(mPage.mNumPackets, 5U);
    EXPECT_EQ(Bytes(mPage.mLacing.begin(), mPage.mLacing.begin() + 4), (Bytes{1, 2, 9, 9}));
}

TEST_F(PageReaderTest, AFailedLacingReadIsAnIoErrorEvenForZeroBytes) {
    openPages(OggPage(1).bytes());
    mSource->setFault(faultAtOffset(27, -5));
    EXPECT_EQ(mPages->readPage(0, &mPage), AMEDIA_ERROR_IO);
    EXPECT_EQ(mEvents.events(),
              (std::vector<Event>{ReadCall{0, 27, 27}, ReadCall{27, 0, -5},
                                  infoLine("failed to read segments lace length data\n")}));
}

TEST_F(PageReaderTest, ThePageAtTheOffsetIsFoundWithoutAWord) {
    int64_t found = -1;
    EXPECT_EQ(openPages(bytesOf("xOggS")).FindPage(1, &found, 0), AMEDIA_OK);
    EXPECT_EQ(found, 1);
    EXPECT_EQ(mEvents.events(), (std::vector<Event>{ReadCall{1, 4, 4}}));
}

TEST_F(PageReaderTest, ThreeBytesOfJunkAreSkippedAndLogged) {
    int64_t found = -1;
    EXPECT_EQ(openPages(bytesOf("yyxxxOggS")).FindPage(2, &found, 0), AMEDIA_OK);
    EXPECT_EQ(found, 5);
    EXPECT_EQ(mEvents.events(),
              (std::vector<Event>{
                      ReadCall{2, 4, 4}, ReadCall{3, 4, 4}, ReadCall{4, 4, 4}, ReadCall{5, 4, 4},
                      infoLine("*** Skip 3 bytes of junk from 2 to reach page start ***\n")}));
}

TEST_F(PageReaderTest, ALimitedSearchStopsAtItsLimit) {
    const Bytes bytes = joined({filled(10, 'x'), bytesOf("OggS")});
    int64_t found = -1;
    EXPECT_EQ(openPages(bytes).FindPage(0, &found, 10), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(mEvents.reads().size(), 10U);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{
                      infoLine("Skip 10 bytes of junk from 0 still cannot reach page start\n")}));
    EXPECT_EQ(mPages->FindPage(0, &found, 11), AMEDIA_OK);
    EXPECT_EQ(found, 10);
}

TEST_F(PageReaderTest, ALimitOfOneByteLooksAtOnePlace) {
    int64_t found = -1;
    EXPECT_EQ(openPages(bytesOf("xOggS")).FindPage(0, &found, 1), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mEvents.reads(), (std::vector{ReadCall{0, 4, 4}}));
}

TEST_F(PageReaderTest, AnUnlimitedSearchEndsWithTheData) {
    int64_t found = -1;
    EXPECT_EQ(openPages(filled(6, 'x')).FindPage(0, &found, 0), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(mEvents.reads().size(), 4U);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("FindPage: readSize = 3")}));
    EXPECT_EQ(mPages->FindPage(0, &found, -5), AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(PageReaderTest, TheNextPageIsSearchedForAndRead) {
    OgmFile file;
    file.addJunk(3);
    file.add(OggPage(7).packet({1, 2}));
    const PageStep step = openPages(file).nextPage(1, &mPage);
    EXPECT_TRUE(step.isFound);
    EXPECT_TRUE(step.hasHeader());
    EXPECT_EQ(step.offset, 3);
    EXPECT_EQ(step.size, 30);
    EXPECT_EQ(step.end(), 33);
    EXPECT_EQ(mPage.mSerialNo, 7U);
}

TEST_F(PageReaderTest, ANextPageThatCannotBeReadIsStillFound) {
    OgmFile file;
    file.addJunk(3);
    file.add(OggPage(7).version(1));
    const PageStep step = openPages(file).nextPage(0, &mPage);
    EXPECT_TRUE(step.isFound);
    EXPECT_FALSE(step.hasHeader());
    EXPECT_EQ(step.offset, 3);
    EXPECT_EQ(step.size, AMEDIA_ERROR_UNSUPPORTED);
}

TEST_F(PageReaderTest, WithoutANextPageNothingIsRead) {
    mPage.mSerialNo = 77;
    const PageStep step = openPages(filled(10, 'x')).nextPage(0, &mPage);
    EXPECT_FALSE(step.isFound);
    EXPECT_FALSE(step.hasHeader());
    EXPECT_EQ(mPage.mSerialNo, 77U);
}

TEST_F(PageReaderTest, ABodyIsReadWholeOrNotAtAll) {
    Bytes body(3);
    EXPECT_TRUE(openPages({1, 2, 3, 4}).readBody(1, body.data(), 3));
    EXPECT_EQ(body, (Bytes{2, 3, 4}));
    EXPECT_FALSE(mPages->readBody(2, body.data(), 3));
    EXPECT_FALSE(mPages->readBody(-1, body.data(), 3));
    EXPECT_TRUE(mPages->readBody(4, body.data(), 0));
}

TEST_F(PageReaderTest, TheSizeIsWhatTheSourceStoresWhateverItReturns) {
    EXPECT_EQ(openPages(filled(10, 'x')).dataSourceSize(), 10);
    auto source = std::make_unique<MemorySource>(filled(10, 'x'), &mEvents);
    source->setSizeStatus(-1010);
    EXPECT_EQ(openPages(std::move(source)).dataSourceSize(), 0);
    source = std::make_unique<MemorySource>(filled(10, 'x'), &mEvents);
    source->setSizeStatus(-1010);
    source->setReportedSize(-1);
    EXPECT_EQ(openPages(std::move(source)).dataSourceSize(), -1);
}

TEST_F(PageReaderTest, AFailedSearchReadEndsTheSearch) {
    int64_t found = -1;
    EXPECT_EQ(openPages(filled(6, 'x')).FindPage(-1, &found, 0), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("FindPage: readSize = -2147483648")}));
}

}  // namespace
}  // namespace android::ogm::test::page_reader_test
