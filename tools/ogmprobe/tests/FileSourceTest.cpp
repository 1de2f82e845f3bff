// SPDX-License-Identifier: Apache-2.0
#include "plugin/FileSource.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <utils/Errors.h>

#include <cerrno>
#include <cstring>
#include <limits>
#include <string>

#include "ExitCode.h"
#include "NextDescriptor.h"
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

TEST_F(FileSourceTest, ReadsTheExistingBytes) {
    EXPECT_EQ(readAt(2, 4), 4);
    EXPECT_EQ(mBytes, "2345");
}

TEST_F(FileSourceTest, ReturnsLessAtTheEndAndNothingAfterIt) {
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

TEST_F(FileSourceTest, ReportsWhereTheLastReadEnded) {
    EXPECT_EQ(mSource.readUpTo(), 0U);
    readAt(0, 5);
    EXPECT_EQ(mSource.readUpTo(), 5U);
    readAt(10, 1);
    EXPECT_EQ(mSource.readUpTo(), 5U);
}

TEST_F(FileSourceTest, GivesAndCountsEachReadOfASearch) {
    for (off64_t offset = 0; offset < 6; ++offset) {
        EXPECT_EQ(readAt(offset, 4), 4);
        EXPECT_EQ(mBytes, std::string("0123456789").substr(static_cast<size_t>(offset), 4));
        EXPECT_EQ(mSource.readUpTo(), static_cast<uint64_t>(offset) + 4);
    }
    EXPECT_EQ(readAt(6, 4), 4);
    EXPECT_EQ(readAt(7, 4), 3);
    EXPECT_EQ(mBytes, "789?");
    EXPECT_EQ(mSource.reads(), 8U);
    EXPECT_EQ(mSource.bytesRead(), 31U);
}

TEST_F(FileSourceTest, RefusesEachReadOfASearchBeforeTheFile) {
    for (off64_t offset = -3; offset < 0; ++offset) {
        EXPECT_EQ(readAt(offset, 4), android::UNKNOWN_ERROR);
    }
    EXPECT_EQ(readAt(0, 4), 4);
}

TEST(FileSource, ReadsAcrossBlocks) {
    const test::TemporaryFolder folder;
    std::string content(5 * BlockCache::kBlockSize / 2, '\0');
    for (size_t i = 0; i < content.size(); ++i) {
        content[i] = static_cast<char>(i * 31 / 7);
    }
    FileSource source(folder.write("long", content));
    android::CDataSource* table = source.table();
    const auto expectRead = [&](size_t offset, size_t size) {
        std::string bytes(size, '?');
        const ssize_t got =
                table->readAt(table->handle, static_cast<off64_t>(offset), bytes.data(), size);
        const std::string expected = content.substr(offset, size);
        ASSERT_EQ(got, static_cast<ssize_t>(expected.size()));
        EXPECT_EQ(bytes.substr(0, expected.size()), expected) << offset;
    };
    for (size_t offset = BlockCache::kBlockSize - 20; offset < BlockCache::kBlockSize + 20;
         ++offset) {
        expectRead(offset, 4);
    }
    expectRead(BlockCache::kBlockSize - 7, 27);
    expectRead(10, 2 * BlockCache::kBlockSize);
    expectRead(content.size() - 2, 4);
}

/** Searches files of zeros for something that they do not contain, as a plug-in does. */
class LongSearchTest : public testing::Test {
  protected:
    static constexpr off64_t kSize = 3 << 20;

    void SetUp() override { ASSERT_EQ(truncate(mPath.c_str(), kSize), 0); }

    /** The reads that the search takes. */
    uint64_t search(FileSource& source, off64_t from) const {
        android::CDataSource* table = source.table();
        char bytes[4] = {};
        // This ends the run of reads before.
        table->readAt(table->handle, 0, bytes, 1);
        uint64_t reads = 1;
        for (; table->readAt(table->handle, from, bytes, 4) == 4; ++from) {
            ++reads;
        }
        return reads;
    }

    test::TemporaryFolder mFolder;
    const std::string mPath = mFolder.write("zeros", "");
};

TEST_F(LongSearchTest, EndsEarlyWhereItIsRepeatedAndIsReportedAsWhole) {
    FileSource source(mPath);
    source.shortenRepeatedSearches();
    const uint64_t whole = search(source, 100);
    EXPECT_EQ(whole, kSize - 100U - 2U);
    const uint64_t reads = source.reads();
    const uint64_t bytes = source.bytesRead();
    EXPECT_LT(search(source, 100), whole / 2);
    EXPECT_EQ(source.reads(), 2 * reads);
    EXPECT_EQ(source.bytesRead(), 2 * bytes);
    EXPECT_EQ(source.readUpTo(), static_cast<uint64_t>(kSize));
}

TEST_F(LongSearchTest, IsDoneInFullFromAnotherPlace) {
    FileSource source(mPath);
    source.shortenRepeatedSearches();
    search(source, 100);
    EXPECT_EQ(search(source, 101), kSize - 101U - 2U);
}

TEST_F(LongSearchTest, IsDoneInFullByDefault) {
    FileSource source(mPath);
    const uint64_t whole = search(source, 100);
    EXPECT_EQ(search(source, 100), whole);
}

/** Searches for a page of another stream in a file with junk, as a plug-in does. */
class RepeatedSearchTest : public testing::Test {
  protected:
    static constexpr off64_t kJunk = 150'000;
    static constexpr uint64_t kPageSize = 1028;

    RepeatedSearchTest() {
        std::string page(kPageSize, 'x');
        page.replace(0, 4, "OggS");
        page.replace(26, 2, std::string("\4\xff", 2));
        page.replace(28, 3, std::string("\xff\xff\xe8"));
        mPath = mFolder.write("junk", std::string(kJunk, '\0') + page);
    }

    struct Result {
        /** The results of all searches. */
        uint64_t pages = 0;
        uint64_t calls = 0;
        bool operator==(const Result&) const = default;
    };

    static Result lookUp(FileSource& source) {
        Result result;
        android::CDataSource* table = source.table();
        char bytes[27] = {};
        const auto read = [&](off64_t offset, size_t size) {
            ++result.calls;
            return table->readAt(table->handle, offset, bytes, size) == static_cast<ssize_t>(size);
        };
        const auto beginsWith = [&](const char(&expected)[5]) {
            return std::memcmp(bytes, expected, 4) == 0;
        };
        for (off64_t begin = 1; begin < kJunk; begin += kPageSize) {
            off64_t found = begin;
            while (read(found, 4) && !beginsWith("OggS")) {
                ++found;
            }
            read(found, 27);
            EXPECT_TRUE(beginsWith("OggS"));
            EXPECT_EQ(bytes[26], 4);
            read(found + 27, 4);
            EXPECT_TRUE(beginsWith("\xff\xff\xff\xe8"));
            ++result.pages;
        }
        return result;
    }

    test::TemporaryFolder mFolder;
    std::string mPath;
};

TEST_F(RepeatedSearchTest, EndsEarlyAndIsReportedAsWhole) {
    FileSource whole(mPath);
    const Result expected = lookUp(whole);
    EXPECT_EQ(whole.reads(), expected.calls);
    FileSource source(mPath);
    source.shortenRepeatedSearches();
    const Result result = lookUp(source);
    EXPECT_EQ(result.pages, expected.pages);
    EXPECT_LT(result.calls, expected.calls / 4);
    EXPECT_EQ(source.reads(), whole.reads());
    EXPECT_EQ(source.bytesRead(), whole.bytesRead());
    EXPECT_EQ(source.readUpTo(), whole.readUpTo());
}

TEST(FileSource, SurvivesAFileThatShrinks) {
    const test::TemporaryFolder folder;
    const std::string path = folder.write("long", std::string(4 * BlockCache::kBlockSize, 'x'));
    FileSource source(path);
    android::CDataSource* table = source.table();
    char bytes[4] = {};
    EXPECT_EQ(table->readAt(table->handle, 0, bytes, 4), 4);
    ASSERT_EQ(truncate(path.c_str(), 2), 0);
    EXPECT_EQ(table->readAt(table->handle, 2 * BlockCache::kBlockSize, bytes, 4), 0);
    EXPECT_EQ(source.error(), 0);
}

TEST_F(FileSourceTest, ReportsAReadThatFailsAndKeepsItsError) {
    const std::string path = mFolder.write("other", "0123456789");
    const test::NextDescriptor descriptor;
    FileSource source(path);
    descriptor.makeUnreadable();
    android::CDataSource* table = source.table();
    char bytes[4] = {};
    EXPECT_EQ(table->readAt(table->handle, 2, bytes, 4), android::UNKNOWN_ERROR);
    EXPECT_EQ(source.error(), EBADF);
    EXPECT_EQ(source.reads(), 1U);
    EXPECT_EQ(source.bytesRead(), 0U);
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

TEST(FileSource, CannotBeMadeFromAFileThatIsNotSeekable) {
    const test::TemporaryFolder folder;
    EXPECT_THROW(FileSource(folder.path("missing")), ProbeError);
    EXPECT_THROW(FileSource(folder.path().string()), ProbeError);
}

}  // namespace
}  // namespace ogmprobe
