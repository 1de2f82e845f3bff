// SPDX-License-Identifier: Apache-2.0
#include "page/PageReader.h"

#include <algorithm>
#include <memory>

#include "LogTest.h"
#include "MemorySource.h"
#include "OgmFile.h"

namespace android::ogm::test {
namespace {

class PageReaderTest : public LogTest {
  protected:
    PageReader& readerOf(const Bytes& bytes) {
        mSource = std::make_unique<MemorySource>(bytes, &mEvents);
        mReader.emplace(std::make_unique<DataSourceHelper>(mSource->table()));
        return *mReader;
    }

    int64_t readPage(const Bytes& bytes, int64_t offset = 0) {
        return readerOf(bytes).readPage(offset, &mPage);
    }

    std::unique_ptr<MemorySource> mSource;
    std::optional<PageReader> mReader;
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
    EXPECT_EQ(mPage.mGranulePosition, 0x1122334455667788u);
    EXPECT_EQ(mPage.mSerialNo, 0x89ABCDEFu);
    EXPECT_EQ(mPage.mPageNo, 0xFEDCBA98u);
    EXPECT_EQ(mPage.mFlags, 0x05);
    EXPECT_EQ(mPage.mNumSegments, 4);
    EXPECT_EQ(mPage.mNumPackets, 2u);
    EXPECT_EQ(Bytes(mPage.mLacing.begin(), mPage.mLacing.begin() + 4), (Bytes{255, 45, 2, 255}));
    EXPECT_EQ(mEvents.lines().size(), 0u);
}

TEST_F(PageReaderTest, APageHas255PacketsAtMost) {
    OggPage page(1);
    for (size_t i = 0; i < OgmPage::kMaxSegments; ++i) {
        page.packet(filled(254, 1));
    }
    EXPECT_EQ(readPage(page.bytes()), 27 + 255 + 255 * 254);
    EXPECT_EQ(mPage.mNumPackets, 255u);
}

TEST_F(PageReaderTest, APageOf255FullLacingValuesHas65307BytesAndNoPackets) {
    EXPECT_EQ(readPage(OggPage(1).openPacket(filled(255 * 255, 1)).bytes()), 65307);
    EXPECT_EQ(mPage.mNumSegments, 255);
    EXPECT_EQ(mPage.mNumPackets, 0u);
}

TEST_F(PageReaderTest, APageWithoutSegmentsHas27BytesAndNoPackets) {
    EXPECT_EQ(readPage(OggPage(1).bytes()), 27);
    EXPECT_EQ(mPage.mNumPackets, 0u);
}

TEST_F(PageReaderTest, FullSegmentsEndNoPacket) {
    EXPECT_EQ(readPage(OggPage(1).openPacket(filled(765, 1)).bytes()), 27 + 3 + 765);
    EXPECT_EQ(mPage.mNumPackets, 0u);
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

TEST_F(PageReaderTest, AMissingCapturePatternIsMalformed) {
    EXPECT_EQ(readPage(OggPage(1).capturePattern("OgGS").bytes()), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("Page Starts without signatures\n")}));
}

TEST_F(PageReaderTest, AnotherVersionIsUnsupported) {
    EXPECT_EQ(readPage(OggPage(1).version(1).bytes()), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("Version Error, verison should be 0 but 1\n")}));
}

TEST_F(PageReaderTest, UndefinedFlagsAreMalformedAndDefinedOnesAreNot) {
    EXPECT_EQ(readPage(OggPage(1).flags(0x08).bytes()), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(readPage(OggPage(1).flags(0x07).bytes()), 27);
    EXPECT_EQ(readPage(OggPage(1).flags(0xFF).bytes()), AMEDIA_ERROR_MALFORMED);
}

TEST_F(PageReaderTest, AFailedReadIsMalformedAndNotAnIoError) {
    readerOf(OggPage(1).bytes());
    mSource->setFault(faultAtOffset(0, kReadRefused));
    EXPECT_EQ(mReader->readPage(0, &mPage), AMEDIA_ERROR_MALFORMED);
    EXPECT_EQ(mEvents.lines(), (std::vector{infoLine("Page Starts without signatures\n")}));
}

TEST_F(PageReaderTest, ARefusedHeaderLeavesThePageUntouched) {
    mPage.mSerialNo = 77;
    mPage.mNumSegments = 3;
    mPage.mLacing[0] = 9;
    readPage(OggPage(1).version(1).packet({1}).bytes());
    EXPECT_EQ(mPage.mSerialNo, 77u);
    EXPECT_EQ(mPage.mNumSegments, 3);
    EXPECT_EQ(mPage.mLacing[0], 9);
}

TEST_F(PageReaderTest, AShortLacingTableIsAnIoErrorThatFillsTheHeaderFields) {
    mPage.mNumPackets = 5;
    mPage.mLacing.fill(9);
    readerOf(OggPage(1).granule(3).packet({1}).packet({2, 2}).packet({3, 3, 3}).bytes());
    mSource->setFault(faultAtOffset(27, 2));
    EXPECT_EQ(mReader->readPage(0, &mPage), AMEDIA_ERROR_IO);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("failed to read segments lace length data\n")}));
    EXPECT_EQ(mPage.mGranulePosition, 3u);
    EXPECT_EQ(mPage.mNumSegments, 3);
    EXPECT_EQ(mPage.mNumPackets, 5u);
    EXPECT_EQ(Bytes(mPage.mLacing.begin(), mPage.mLacing.begin() + 4), (Bytes{1, 2, 9, 9}));
}

TEST_F(PageReaderTest, ThePageAtTheOffsetIsFoundWithoutAWord) {
    int64_t found = -1;
    EXPECT_EQ(readerOf(bytesOf("xOggS")).FindPage(1, &found, 0), AMEDIA_OK);
    EXPECT_EQ(found, 1);
    EXPECT_EQ(mEvents.events(), (std::vector<Event>{ReadCall{1, 4, 4}}));
}

TEST_F(PageReaderTest, ThreeBytesOfJunkAreSkippedAndLogged) {
    int64_t found = -1;
    EXPECT_EQ(readerOf(bytesOf("yyxxxOggS")).FindPage(2, &found, 0), AMEDIA_OK);
    EXPECT_EQ(found, 5);
    EXPECT_EQ(mEvents.events(),
              (std::vector<Event>{
                      ReadCall{2, 4, 4}, ReadCall{3, 4, 4}, ReadCall{4, 4, 4}, ReadCall{5, 4, 4},
                      infoLine("*** Skip 3 bytes of junk from 2 to reach page start ***\n")}));
}

TEST_F(PageReaderTest, ALimitedSearchStopsAtItsLimit) {
    const Bytes bytes = joined({filled(10, 'x'), bytesOf("OggS")});
    int64_t found = -1;
    EXPECT_EQ(readerOf(bytes).FindPage(0, &found, 10), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(mEvents.reads().size(), 10u);
    EXPECT_EQ(mEvents.lines(),
              (std::vector{
                      infoLine("Skip 10 bytes of junk from 0 still cannot reach page start\n")}));
    EXPECT_EQ(mReader->FindPage(0, &found, 11), AMEDIA_OK);
    EXPECT_EQ(found, 10);
}

TEST_F(PageReaderTest, AnUnlimitedSearchEndsWithTheData) {
    int64_t found = -1;
    EXPECT_EQ(readerOf(filled(6, 'x')).FindPage(0, &found, 0), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(found, 0);
    EXPECT_EQ(mEvents.reads().size(), 4u);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("FindPage: readSize = 3")}));
    EXPECT_EQ(mReader->FindPage(0, &found, -5), AMEDIA_ERROR_END_OF_STREAM);
}

TEST_F(PageReaderTest, AFailedSearchReadEndsTheSearch) {
    int64_t found = -1;
    EXPECT_EQ(readerOf(filled(6, 'x')).FindPage(-1, &found, 0), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.lines(), (std::vector{errorLine("FindPage: readSize = -2147483648")}));
}

}  // namespace
}  // namespace android::ogm::test
