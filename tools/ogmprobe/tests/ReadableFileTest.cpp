// SPDX-License-Identifier: Apache-2.0
#include "files/ReadableFile.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "ExitCode.h"
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

TEST_F(ReadableFileTest, CannotBeMadeFromAFolderOrANameWithoutAFile) {
    EXPECT_THROW(ReadableFile(mFolder.path("missing")), ProbeError);
    EXPECT_THROW(ReadableFile(mFolder.path().string()), ProbeError);
}

}  // namespace
}  // namespace ogmprobe
