// SPDX-License-Identifier: Apache-2.0
#include "stream/HeaderPages.h"

#include "PagesTest.h"

namespace android::ogm::test::header_pages_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HeaderPagesTest : public PagesTest {
  protected:
    int64_t parse(const OgmFile& file) { return parseHeaderPages(openPages(file), &mStreams); }

    std::vector<LogLine> firstDataPageLines() const {
        return mEvents.linesBeginning("mFirstDataPageOffset");
    }

    StreamTable mStreams;
};

/** A video stream, and data pages up to the page number `pages`. */
OgmFile fileOfPages(uint64_t pages) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    for (uint64_t page = 1; page < pages; ++page) {
        file.addData(1, page, {1});
    }
    return file;
}

TEST_F(HeaderPagesTest, EachPageIsSearchedForTwiceAndItsPacketReadWhole) {
    OgmFile file;
    file.addHeader(7, vorbisIdentificationHeader());
    EXPECT_EQ(parse(file), 0);
    EXPECT_EQ(mEvents.events(),
              (std::vector<Event>{
                      ReadCall{0, 4, 4}, ReadCall{0, 4, 4}, ReadCall{0, 27, 27}, ReadCall{27, 1, 1},
                      debugLine("currPage.mNumSegments =1, pageDataSize =30"), ReadCall{28, 30, 30},
                      infoLine("Verify Header 01 76 6F 72 62 69\n"),
                      infoLine("Verify Vorbis Header\n"),
                      // Both searches for the next page reach the end.
                      ReadCall{58, 4, 0}, errorLine("FindPage: readSize = 0"), ReadCall{58, 4, 0},
                      errorLine("FindPage: readSize = 0"),
                      infoLine("Cannot find a page start,LINE:2774 from 58\n")}));
}

TEST_F(HeaderPagesTest, AllStreamsThatAreAnnouncedAreListed) {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    file.addHeader(2, vorbisIdentificationHeader());
    file.addHeader(3, textHeader());
    file.addHeader(4, AudioHeader());
    parse(file);
    ASSERT_EQ(mStreams.size(), 2U);
    EXPECT_EQ(mStreams[0].mSerialNo, 1U);
    EXPECT_EQ(mStreams[1].mSerialNo, 4U);
}

TEST_F(HeaderPagesTest, ThoseAmongTheFirst121PagesAreFoundAfterDataPagesToo) {
    OgmFile file = fileOfPages(120);
    file.addHeader(2, AudioHeader());
    parse(file);
    EXPECT_EQ(mStreams.size(), 2U);
}

TEST_F(HeaderPagesTest, ThoseAfterTheFirst121PagesAreNotFound) {
    OgmFile file = fileOfPages(121);
    file.addHeader(2, AudioHeader());
    parse(file);
    EXPECT_EQ(mStreams.size(), 1U);
    EXPECT_THAT(mEvents.linesBeginning("Cannot find a page start"), IsEmpty());
}

TEST_F(HeaderPagesTest, TheFirstDataPageIsTheFirstThatBeginsNoStream) {
    OgmFile file = fileOfPages(3);
    file.addHeader(2, AudioHeader());
    file.addData(2, 1, {1});
    EXPECT_EQ(parse(file), 81);
    EXPECT_THAT(firstDataPageLines(), ElementsAre(infoLine("mFirstDataPageOffset = 81")));
}

TEST_F(HeaderPagesTest, WithJunkBeforeItItIsWhereTheJunkBegins) {
    OgmFile file = fileOfPages(1);
    file.addJunk(9);
    file.addData(1, 1, {1});
    EXPECT_EQ(parse(file), 81);
    EXPECT_THAT(firstDataPageLines(), ElementsAre(infoLine("mFirstDataPageOffset = 81")));
    // Each of the two searches logs it.
    EXPECT_EQ(mEvents.count(infoLine("*** Skip 9 bytes of junk from 81 to reach page start ***\n")),
              2U);
}

TEST_F(HeaderPagesTest, ItMayLieAtOffsetZeroAndIsThatToo) {
    OgmFile file;
    file.addData(1, 1, {1});
    file.addData(1, 2, {2});
    EXPECT_EQ(parse(file), 0);
    EXPECT_THAT(firstDataPageLines(), ElementsAre(infoLine("mFirstDataPageOffset = 0")));
}

TEST_F(HeaderPagesTest, WithoutADataPageNoneIsLogged) {
    EXPECT_EQ(parse(fileOfPages(1)), 0);
    EXPECT_THAT(firstDataPageLines(), IsEmpty());
}

TEST_F(HeaderPagesTest, ThePacketOfAPageAfterJunkIsReadWithoutTheSkip) {
    OgmFile file;
    file.addJunk(5);
    file.addHeader(1, VideoHeader());
    parse(file);
    EXPECT_THAT(mEvents.reads(), ::testing::Contains(ReadCall{28, 53, 53}));
    EXPECT_EQ(mStreams.size(), 0U);
}

TEST_F(HeaderPagesTest, APacketThatIsCutOffEndsThem) {
    OgmFile file = fileOfPages(1);
    const auto second = static_cast<int64_t>(file.addHeader(2, AudioHeader()));
    file.addHeader(3, AudioHeader());
    auto source = std::make_unique<MemorySource>(file.bytes(), &mEvents);
    source->setFault(faultAtOffset(second + 28, 52));
    parseHeaderPages(openPages(std::move(source)), &mStreams);
    EXPECT_EQ(mStreams.size(), 1U);
    EXPECT_EQ(mEvents.lines().back(), errorLine("Cannot read page data, size 53\n"));
}

TEST_F(HeaderPagesTest, APageHeaderThatCannotBeReadEndsThemAndIsNamedByItsOwnOffset) {
    OgmFile file = fileOfPages(1);
    file.addJunk(2);
    file.add(OggPage(2).version(1));
    file.addHeader(3, AudioHeader());
    parse(file);
    EXPECT_EQ(mStreams.size(), 1U);
    EXPECT_EQ(mEvents.lines().back(), infoLine("Cannot read a page header, at 83\n"));
}

}  // namespace
}  // namespace android::ogm::test::header_pages_test
