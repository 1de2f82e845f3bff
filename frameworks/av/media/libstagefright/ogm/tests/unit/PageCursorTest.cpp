// SPDX-License-Identifier: Apache-2.0
#include "page/PageCursor.h"

#include <memory>

#include "LogTest.h"
#include "MemorySource.h"
#include "OgmFile.h"

namespace android::ogm::test {
namespace {

constexpr size_t kHeaderPages = 81;

/** A header page of 81 bytes, so that no page of interest begins at offset 0. */
OgmFile fileWithAHeader() {
    OgmFile file;
    file.addHeader(1, VideoHeader());
    return file;
}

class PageCursorTest : public LogTest {
  protected:
    PageReader& openFile(const OgmFile& file) {
        mSource = std::make_unique<MemorySource>(file.bytes(), &mEvents);
        mPages.emplace(std::make_unique<DataSourceHelper>(mSource->table()));
        mPages->readDataSourceSize();
        return *mPages;
    }

    std::unique_ptr<MemorySource> mSource;
    std::optional<PageReader> mPages;
    PageCursor mCursor;
};

TEST_F(PageCursorTest, GoingToAPlaceAfterTheLastPageGoesToTheEnd) {
    EXPECT_EQ(mCursor.goToPage(openFile(fileWithAHeader()), 50, 0), AMEDIA_OK);
    EXPECT_EQ(mEvents.lines().back(), infoLine("Seek to file end\n"));
    EXPECT_TRUE(mCursor.isSet());
    EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages});
    mEvents.clear();
    // The next page is looked for at the end of the data.
    EXPECT_EQ(mCursor.enterNextPage(*mPages), AMEDIA_ERROR_END_OF_STREAM);
    EXPECT_EQ(mEvents.reads(), (std::vector{ReadCall{kHeaderPages, 4, 0}}));
}

TEST_F(PageCursorTest, GoingToAPlaceWithinALimitFailsWithoutAChange) {
    OgmFile file = fileWithAHeader();
    file.addJunk(10);
    file.addData(1, 1, {0});
    EXPECT_EQ(mCursor.goToPage(openFile(file), kHeaderPages, 4), AMEDIA_ERROR_UNSUPPORTED);
    EXPECT_FALSE(mCursor.isSet());
    EXPECT_EQ(mEvents.lines(),
              (std::vector{infoLine("Skip 4 bytes of junk from 81 still cannot reach page start\n"),
                           infoLine("Cannot find a page start, from 0x00000051 in size 4\n")}));
}

TEST_F(PageCursorTest, GoingToAPlaceReadsThePageThatItFinds) {
    OgmFile file = fileWithAHeader();
    file.addJunk(3);
    file.addData(1, 1, {0});
    EXPECT_EQ(mCursor.goToPage(openFile(file), kHeaderPages, 0), AMEDIA_OK);
    EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages + 3});
    EXPECT_EQ(mCursor.page().mSerialNo, 1u);
    EXPECT_TRUE(mCursor.isAtPageStart());
    EXPECT_EQ(
            mEvents.events(),
            (std::vector<Event>{
                    ReadCall{81, 4, 4}, ReadCall{82, 4, 4}, ReadCall{83, 4, 4}, ReadCall{84, 4, 4},
                    infoLine("*** Skip 3 bytes of junk from 81 to reach page start ***\n"),
                    ReadCall{84, 27, 27}, ReadCall{111, 1, 1}}));
}

TEST_F(PageCursorTest, GoesAlsoToAPageThatCannotBeRead) {
    OgmFile file = fileWithAHeader();
    file.add(OggPage(1).version(1));
    EXPECT_EQ(mCursor.goToPage(openFile(file), kHeaderPages, 0), AMEDIA_OK);
    EXPECT_EQ(mCursor.pageOffset(), int64_t{kHeaderPages});
}

}  // namespace
}  // namespace android::ogm::test
