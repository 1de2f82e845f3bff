// SPDX-License-Identifier: Apache-2.0
#include "files/ReadableFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "ExitCode.h"
#include "NextDescriptor.h"
#include "TemporaryFolder.h"

namespace ogmprobe {
namespace {

class ReadableFileTest : public testing::Test {
  protected:
    /** Returns the bytes that are read. */
    std::string read(uint64_t offset, size_t size) const {
        std::vector<uint8_t> bytes(size);
        const auto got = mFile.read(offset, bytes);
        return {bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(got.value())};
    }

    test::TemporaryFolder mFolder;
    std::string mPath = mFolder.write("file", "0123456789");
    ReadableFile mFile{mPath};
};

TEST_F(ReadableFileTest, ReadsAtAnyOffset) {
    EXPECT_EQ(read(7, 2), "78");
    EXPECT_EQ(read(0, 3), "012");
    EXPECT_EQ(read(4, 0), "");
}

TEST_F(ReadableFileTest, ReadsLessAtTheEndAndNothingAfterIt) {
    EXPECT_EQ(read(8, 4), "89");
    EXPECT_EQ(read(10, 4), "");
    EXPECT_EQ(read(std::numeric_limits<uint64_t>::max(), 4), "");
}

TEST_F(ReadableFileTest, IsAsLongAsWhenItWasOpened) {
    mFolder.write("file", "0123456789abcdef");
    EXPECT_EQ(mFile.size(), 10U);
    EXPECT_EQ(read(8, 4), "89");
}

TEST_F(ReadableFileTest, ReadsLessFromAFileThatHasShrunk) {
    ASSERT_EQ(truncate(mPath.c_str(), 3), 0);
    EXPECT_EQ(read(1, 4), "12");
    EXPECT_EQ(read(5, 4), "");
}

TEST_F(ReadableFileTest, ReturnsNothingAndTheErrorOfAReadThatFails) {
    const std::string path = mFolder.write("other", "0123456789");
    const test::NextDescriptor descriptor;
    const ReadableFile file(path);
    descriptor.makeUnreadable();
    std::vector<uint8_t> bytes(4);
    EXPECT_FALSE(file.read(2, bytes));
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(file.read(10, bytes), 0U) << "nothing to read there";
}

TEST_F(ReadableFileTest, KnowsHowManyBytesAreFromAnOffsetOn) {
    EXPECT_EQ(mFile.sizeFrom(0), 10U);
    EXPECT_EQ(mFile.sizeFrom(7), 3U);
    EXPECT_EQ(mFile.sizeFrom(10), 0U);
    EXPECT_EQ(mFile.sizeFrom(std::numeric_limits<uint64_t>::max()), 0U);
}

TEST_F(ReadableFileTest, CannotBeMadeFromAFolderOrANameWithoutAFile) {
    EXPECT_THROW(ReadableFile(mFolder.path("missing")), ProbeError);
    EXPECT_THROW(ReadableFile(mFolder.path().string()), ProbeError);
}

}  // namespace
}  // namespace ogmprobe
