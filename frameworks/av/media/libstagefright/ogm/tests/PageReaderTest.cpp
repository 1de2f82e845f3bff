// SPDX-License-Identifier: Apache-2.0
#include "PluginTest.h"

namespace android::ogm::test {
namespace {

const LogLine kNoSignature = infoLine("Page Starts without signatures\n");
const LogLine kBadFlags = infoLine("Flag only bits 0-2 are defined in version 0\n");
const LogLine kShortLacing = infoLine("failed to read segments lace length data\n");
const LogLine kFirstDataPage = infoLine("mFirstDataPageOffset = 0");
const LogLine kNoHeaderAtStart = infoLine("Cannot read a page header, at 0\n");

/** Looks at how the page at the start of a file is read when the file is opened. */
class PageReaderTest : public PluginTest {
  protected:
    /** Checks the events from the read of the page header on; two searches precede it. */
    void expectHeaderEvents(const std::vector<Event>& expected) {
        std::vector<Event> all{ReadCall{0, 4, 4}, ReadCall{0, 4, 4}};
        all.insert(all.end(), expected.begin(), expected.end());
        EXPECT_EQ(firstEvents(all.size()), all);
    }

    /** A page at the start, then enough of another that the search for it succeeds. */
    static OgmFile withNextPage(const OggPage& page) {
        OgmFile file;
        file.add(page);
        file.add(bytesOf("OggS"));
        return file;
    }
};

TEST_F(PageReaderTest, APageWithoutSegmentsIs27BytesLongAndItsLacingReadAsksForNothing) {
    open(withNextPage(OggPage(1)));
    expectHeaderEvents(
            {ReadCall{0, 27, 27}, ReadCall{27, 0, 0}, kFirstDataPage, ReadCall{27, 4, 4}});
}

TEST_F(PageReaderTest, APageOfFullSegmentsIsAsLongAsTheirSum) {
    open(withNextPage(OggPage(1).openPacket(filled(510, 1))));
    expectHeaderEvents(
            {ReadCall{0, 27, 27}, ReadCall{27, 2, 2}, kFirstDataPage, ReadCall{539, 4, 4}});
}

TEST_F(PageReaderTest, TheLargestPageIs65307BytesLong) {
    open(withNextPage(OggPage(1).openPacket(filled(kFullPageBody, 1))));
    expectHeaderEvents(
            {ReadCall{0, 27, 27}, ReadCall{27, 255, 255}, kFirstDataPage, ReadCall{65307, 4, 4}});
}

TEST_F(PageReaderTest, ADamagedChecksumIsNotNoticed) {
    open(withNextPage(OggPage(1).packet({1, 2, 3}).checksum(0xDEADBEEF)));
    expectHeaderEvents(
            {ReadCall{0, 27, 27}, ReadCall{27, 1, 1}, kFirstDataPage, ReadCall{31, 4, 4}});
}

TEST_F(PageReaderTest, AHeaderCutOffIsReportedWithItsSizeAndOffset) {
    OgmFile file;
    file.add(head(OggPage(1).bytes(), 26));
    open(file);
    expectHeaderEvents({ReadCall{0, 27, 26},
                        infoLine("failed to read 27 bytesat offset 0x00000000\n"),
                        kNoHeaderAtStart});
}

TEST_F(PageReaderTest, TheOffsetOfAHeaderCutOffIsHexadecimal) {
    OgmFile file;
    file.add(OggPage(1).packet(filled(200, 1)));
    file.add(bytesOf("OggS"));
    open(file);
    EXPECT_TRUE(mEvents.holds(infoLine("failed to read 27 bytesat offset 0x000000e4\n")));
    EXPECT_TRUE(mEvents.holds(infoLine("Cannot read a page header, at 228\n")));
}

TEST_F(PageReaderTest, AFailedHeaderReadIsTakenForAPageWithoutSignature) {
    auto source = sourceOf(withNextPage(OggPage(1)));
    source->setFault(faultForSize(27, -5));
    open(std::move(source));
    expectHeaderEvents({ReadCall{0, 27, -5}, kNoSignature, kNoHeaderAtStart});
}

TEST_F(PageReaderTest, AnotherVersionIsRefusedAndNamedInHexadecimal) {
    open(withNextPage(OggPage(1).version(0xAB)));
    expectHeaderEvents({ReadCall{0, 27, 27},
                        infoLine("Version Error, verison should be 0 but AB\n"), kNoHeaderAtStart});
}

TEST_F(PageReaderTest, UndefinedFlagsAreRefused) {
    open(withNextPage(OggPage(1).flags(0x08)));
    expectHeaderEvents({ReadCall{0, 27, 27}, kBadFlags, kNoHeaderAtStart});
}

TEST_F(PageReaderTest, TheVersionIsLookedAtBeforeTheFlags) {
    open(withNextPage(OggPage(1).version(1).flags(0x80)));
    expectHeaderEvents({ReadCall{0, 27, 27}, infoLine("Version Error, verison should be 0 but 1\n"),
                        kNoHeaderAtStart});
}

TEST_F(PageReaderTest, AllThreeDefinedFlagsTogetherAreAccepted) {
    open(withNextPage(OggPage(1).flags(0x07)));
    expectHeaderEvents({ReadCall{0, 27, 27}, ReadCall{27, 0, 0},
                        debugLine("currPage.mNumSegments =0, pageDataSize =0"),
                        ReadCall{27, 0, 0}});
}

TEST_F(PageReaderTest, ALacingTableCutOffIsRefused) {
    OgmFile file;
    file.add(head(OggPage(1).lacing(1).lacing(2).lacing(3).bytes(), 29));
    open(file);
    expectHeaderEvents({ReadCall{0, 27, 27}, ReadCall{27, 3, 2}, kShortLacing, kNoHeaderAtStart});
}

TEST_F(PageReaderTest, AFailedLacingReadIsRefusedEvenWhenItAsksForNothing) {
    auto source = sourceOf(withNextPage(OggPage(1)));
    source->setFault(faultAtOffset(27, -5));
    open(std::move(source));
    expectHeaderEvents({ReadCall{0, 27, 27}, ReadCall{27, 0, -5}, kShortLacing, kNoHeaderAtStart});
}

}  // namespace
}  // namespace android::ogm::test
