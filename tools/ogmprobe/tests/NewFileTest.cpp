// SPDX-License-Identifier: Apache-2.0
#include "NewFile.h"

#include <gtest/gtest.h>

#include <vector>

#include "ExitCode.h"
#include "TemporaryFolder.h"

namespace ogmprobe {
namespace {

using Bytes = std::vector<uint8_t>;

TEST(NewFile, GetsItsNameOnlyWhenItIsWhole) {
    const test::TemporaryFolder folder;
    NewFile file(folder.path("x.wav"));
    file.append(Bytes{'a', 'b', 'c'});
    EXPECT_TRUE(std::filesystem::exists(folder.path("x.wav.part")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("x.wav")));
    file.commit();
    EXPECT_FALSE(std::filesystem::exists(folder.path("x.wav.part")));
    EXPECT_EQ(folder.read("x.wav"), "abc");
}

TEST(NewFile, CanHaveItsStartReplacedBetweenAdditions) {
    const test::TemporaryFolder folder;
    NewFile file(folder.path("x"));
    file.append(Bytes{'a', 'b', 'c'});
    file.overwriteStart(Bytes{'X'});
    file.append(Bytes{'d'});
    EXPECT_EQ(file.size(), 4U);
    file.commit();
    EXPECT_EQ(folder.read("x"), "Xbcd");
}

TEST(NewFile, LeavesAnOlderFileAloneUntilItIsWhole) {
    const test::TemporaryFolder folder;
    folder.write("x", "old");
    {
        NewFile file(folder.path("x"));
        file.append(Bytes{'n'});
    }
    EXPECT_EQ(folder.read("x"), "old");
    EXPECT_EQ(folder.read("x.part"), "n");
}

TEST(NewFile, FailsWhereNothingCanBeWritten) {
    const test::TemporaryFolder folder;
    EXPECT_THROW(NewFile(folder.path("missing/x")), ProbeError);
}

TEST(NewFile, FailsWhenTheDiskIsFull) {
    const test::TemporaryFolder folder;
    std::filesystem::create_symlink("/dev/full", folder.path("x.part"));
    NewFile file(folder.path("x"));
    file.append(Bytes{'a'});
    EXPECT_THROW(file.commit(), ProbeError);
    EXPECT_FALSE(std::filesystem::exists(folder.path("x")));
}

}  // namespace
}  // namespace ogmprobe
