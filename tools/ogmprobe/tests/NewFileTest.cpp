// SPDX-License-Identifier: Apache-2.0
#include "files/NewFile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <vector>

#include "ExitCode.h"
#include "TemporaryFolder.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<uint8_t>;

/** During its lifetime no file grows beyond the size, as on a full disk. */
class FullDisk {
  public:
    explicit FullDisk(rlim_t size) : mHandler(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &mBefore);
        const rlimit limit = {size, mBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &mBefore);
        std::signal(SIGXFSZ, mHandler);
    }

    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    const sighandler_t mHandler;
    rlimit mBefore = {};
};

class NewFileTest : public testing::Test {
  protected:
    std::string path() const { return mFolder.path("x"); }
    bool exists(const std::string& name) const { return fs::exists(mFolder.path() / name); }

    const test::TemporaryFolder mFolder;
};

TEST_F(NewFileTest, GetsItsNameOnlyWhenItIsWhole) {
    NewFile file(path(), Existing::kRefuse);
    file.append(Bytes{'a', 'b', 'c'});
    EXPECT_TRUE(exists("x.part"));
    EXPECT_FALSE(exists("x"));
    file.commit();
    EXPECT_FALSE(exists("x.part"));
    EXPECT_EQ(mFolder.read("x"), "abc");
}

TEST_F(NewFileTest, CanHaveItsStartReplacedBetweenAdditions) {
    NewFile file(path(), Existing::kRefuse);
    file.append(Bytes{'a', 'b', 'c'});
    file.overwriteStart(Bytes{'X'});
    file.append(Bytes{'d'});
    EXPECT_EQ(file.size(), 4U);
    file.commit();
    EXPECT_EQ(mFolder.read("x"), "Xbcd");
}

TEST_F(NewFileTest, IsRemovedIfItNeverBecomesWhole) {
    { NewFile(path(), Existing::kRefuse).append(Bytes{'n'}); }
    EXPECT_TRUE(fs::is_empty(mFolder.path()));
}

TEST_F(NewFileTest, CanStayAsAPart) {
    {
        NewFile file(path(), Existing::kRefuse);
        file.append(Bytes{'n'});
        file.keepPart();
    }
    EXPECT_FALSE(exists("x"));
    EXPECT_EQ(mFolder.read("x.part"), "n");
}

TEST_F(NewFileTest, ReplacesAnotherOneOnlyIfItIsToAndOnlyWhenItIsWhole) {
    mFolder.write("x", "old");
    mFolder.write("x.part", "old part");
    NewFile file(path(), Existing::kOverwrite);
    file.append(Bytes{'n'});
    EXPECT_EQ(mFolder.read("x"), "old");
    file.commit();
    EXPECT_EQ(mFolder.read("x"), "n");
    EXPECT_FALSE(exists("x.part"));
}

TEST_F(NewFileTest, FailsWhereAnotherOneIs) {
    mFolder.write("x", "old");
    EXPECT_THROW(NewFile(path(), Existing::kRefuse), ProbeError);
    EXPECT_FALSE(exists("x.part"));
}

TEST_F(NewFileTest, FailsWhereThePartOfAnotherOneIs) {
    mFolder.write("x.part", "old part");
    EXPECT_THROW(NewFile(path(), Existing::kRefuse), ProbeError);
    EXPECT_EQ(mFolder.read("x.part"), "old part");
}

TEST_F(NewFileTest, FailsWhenAnotherOneHasAppearedInTheMeantime) {
    {
        NewFile file(path(), Existing::kRefuse);
        mFolder.write("x", "newer");
        EXPECT_THROW(file.commit(), ProbeError);
    }
    EXPECT_EQ(mFolder.read("x"), "newer");
    EXPECT_FALSE(exists("x.part"));
}

TEST_F(NewFileTest, FollowsNoLinkToAnotherPlace) {
    const std::string target = mFolder.write("target", "old");
    for (const char* name : {"x", "x.part"}) {
        fs::create_symlink(target, mFolder.path(name));
        EXPECT_THROW(NewFile(path(), Existing::kRefuse), ProbeError) << name;
        NewFile file(path(), Existing::kOverwrite);
        file.append(Bytes{'n'});
        file.commit();
        EXPECT_EQ(mFolder.read("target"), "old") << name;
        EXPECT_FALSE(fs::is_symlink(mFolder.path("x"))) << name;
        fs::remove(mFolder.path("x"));
    }
}

TEST_F(NewFileTest, FailsWhereALinkLeadsNowhere) {
    fs::create_symlink(mFolder.path("nowhere"), path());
    EXPECT_THROW(NewFile(path(), Existing::kRefuse), ProbeError);
    EXPECT_FALSE(exists("nowhere"));
}

TEST_F(NewFileTest, FailsWhereNothingCanBeWritten) {
    EXPECT_THROW(NewFile(mFolder.path("missing/x"), Existing::kRefuse), ProbeError);
}

TEST_F(NewFileTest, FailsAndIsRemovedWhenTheDiskIsFull) {
    const FullDisk disk(100000);
    {
        NewFile file(path(), Existing::kRefuse);
        EXPECT_THROW(file.append(Bytes(200000)), ProbeError);
    }
    EXPECT_TRUE(fs::is_empty(mFolder.path()));
}

TEST_F(NewFileTest, FailsAndIsRemovedWhenTheDiskIsFullOnlyAtTheEnd) {
    const FullDisk disk(0);
    {
        NewFile file(path(), Existing::kRefuse);
        file.append(Bytes{'a'});
        EXPECT_THROW(file.commit(), ProbeError);
    }
    EXPECT_TRUE(fs::is_empty(mFolder.path()));
}

}  // namespace
}  // namespace ogmprobe
