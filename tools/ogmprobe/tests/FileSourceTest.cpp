// SPDX-License-Identifier: Apache-2.0
#include "plugin/FileSource.h"

#include <gtest/gtest.h>
#include <utils/Errors.h>

#include <limits>
#include <string>

#include "ExitCode.h"
#include "TemporaryFolder.h"

namespace ogmprobe {
namespace {

class FileSourceTest : public testing::Test {
  protected:
    ssize_t readAt(off64_t offset, size_t size) {
        mBytes.assign(size, '?');
        android::CDataSource* table = mSource.table();
        return table->readAt(table->handle, offset, mBytes.data(), size);
    }

    test::TemporaryFolder mFolder;
    FileSource mSource{mFolder.write("file", "0123456789")};
    std::string mBytes;
};

TEST_F(FileSourceTest, ReadsWhatIsThere) {
    EXPECT_EQ(readAt(2, 4), 4);
    EXPECT_EQ(mBytes, "2345");
}

TEST_F(FileSourceTest, GivesLessAtTheEndAndNothingBehindIt) {
    EXPECT_EQ(readAt(8, 4), 2);
    EXPECT_EQ(mBytes, "89??");
    EXPECT_EQ(readAt(10, 4), 0);
    EXPECT_EQ(readAt(std::numeric_limits<off64_t>::max(), 4), 0);
}

TEST_F(FileSourceTest, RefusesNegativeOffsetsEvenForNoBytes) {
    EXPECT_EQ(readAt(-1, 4), android::UNKNOWN_ERROR);
    EXPECT_EQ(readAt(std::numeric_limits<off64_t>::min(), 0), android::UNKNOWN_ERROR);
    EXPECT_EQ(mSource.error(), 0) << "the plug-in's mistake, not the file's";
}

TEST_F(FileSourceTest, ReadsNoBytesAnywhereElse) {
    EXPECT_EQ(readAt(0, 0), 0);
    EXPECT_EQ(readAt(100, 0), 0);
}

TEST_F(FileSourceTest, CountsReadsAndTheBytesTheyGave) {
    readAt(0, 4);
    readAt(8, 4);
    readAt(-1, 4);
    EXPECT_EQ(mSource.reads(), 3U);
    EXPECT_EQ(mSource.bytesRead(), 6U);
}

TEST_F(FileSourceTest, TellsWhereTheLastReadEnded) {
    EXPECT_EQ(mSource.readUpTo(), 0U);
    readAt(0, 5);
    EXPECT_EQ(mSource.readUpTo(), 5U);
    readAt(10, 1);
    EXPECT_EQ(mSource.readUpTo(), 5U);
}

TEST_F(FileSourceTest, DescribesItselfAsALocalFile) {
    android::CDataSource* table = mSource.table();
    off64_t size = 0;
    EXPECT_EQ(table->getSize(table->handle, &size), android::OK);
    EXPECT_EQ(size, 10);
    EXPECT_EQ(table->flags(table->handle), 16U);
    char uri[4] = "xxx";
    EXPECT_TRUE(table->getUri(table->handle, uri, sizeof(uri)));
    EXPECT_STREQ(uri, "");
    EXPECT_FALSE(table->getUri(table->handle, uri, 0));
}

TEST(FileSource, CannotBeMadeOfWhatIsNoSeekableFile) {
    const test::TemporaryFolder folder;
    EXPECT_THROW(FileSource(folder.path("missing")), ProbeError);
    EXPECT_THROW(FileSource(folder.path().string()), ProbeError);
}

}  // namespace
}  // namespace ogmprobe
