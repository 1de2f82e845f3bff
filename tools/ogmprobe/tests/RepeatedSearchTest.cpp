// SPDX-License-Identifier: Apache-2.0
#include "plugin/RepeatedSearch.h"

#include <gtest/gtest.h>

#include <vector>

namespace ogmprobe {
namespace {

constexpr off64_t kPage = 1'000'000;
constexpr size_t kHeaderSize = 27;
const std::vector<uint8_t> kLacing = {255, 255, 100};
constexpr off64_t kPageSize = kHeaderSize + 3 + 255 + 255 + 100;

class RepeatedSearchUnitTest : public testing::Test {
  protected:
    void findPage() {
        readHeader();
        mSearch.read(kPage + kHeaderSize, kLacing, kPage);
    }
    void readHeader() { mSearch.read(kPage, std::vector<uint8_t>(kHeaderSize), kPage); }

    RepeatedSearch mSearch;
};

TEST_F(RepeatedSearchUnitTest, IsKnownToEndAtThePageFoundBefore) {
    EXPECT_EQ(mSearch.begin(100), 0);
    findPage();
    EXPECT_EQ(mSearch.begin(100 + kPageSize), kPage - 100 - kPageSize);
    EXPECT_EQ(mSearch.ahead(), kPage - 100 - kPageSize);
    findPage();
    EXPECT_EQ(mSearch.begin(100 + 2 * kPageSize), kPage - 100 - 2 * kPageSize);
    EXPECT_EQ(mSearch.takeRounds(), 2U);
    EXPECT_EQ(mSearch.takeRounds(), 0U);
    EXPECT_EQ(mSearch.found(), kPage);
}

TEST_F(RepeatedSearchUnitTest, IsNotKnownFromAnyOtherPlace) {
    for (const off64_t begin :
         {off64_t{100}, 100 + kPageSize - 1, 100 + kPageSize + 1, kPage, kPage + kPageSize}) {
        mSearch.begin(100);
        findPage();
        EXPECT_EQ(mSearch.begin(begin), 0) << begin;
    }
    EXPECT_EQ(mSearch.takeRounds(), 0U);
}

TEST_F(RepeatedSearchUnitTest, IsNotKnownIfAnythingElseWasRead) {
    mSearch.begin(100);
    findPage();
    mSearch.read(kPage + kPageSize, std::vector<uint8_t>(10), kPage);
    EXPECT_EQ(mSearch.begin(100 + kPageSize), 0);
}

TEST_F(RepeatedSearchUnitTest, IsNotKnownIfThePagesHeaderIsNotReadWhereTheSearchEnded) {
    mSearch.begin(100);
    mSearch.read(kPage, std::vector<uint8_t>(kHeaderSize), kPage - 1);
    mSearch.read(kPage + kHeaderSize, kLacing, kPage);
    EXPECT_EQ(mSearch.begin(100 + kPageSize), 0);
}

TEST_F(RepeatedSearchUnitTest, IsNotKnownAfterAHeaderWithoutALacingTable) {
    mSearch.begin(100);
    readHeader();
    EXPECT_EQ(mSearch.begin(100 + kHeaderSize), 0);
}

TEST_F(RepeatedSearchUnitTest, IsDoneInFullWhereItIsShort) {
    mSearch.begin(kPage - 5000);
    findPage();
    EXPECT_EQ(mSearch.begin(kPage - 5000 + kPageSize), 0);
}

TEST_F(RepeatedSearchUnitTest, MovesOnlyTheReadsOfTheHeader) {
    mSearch.begin(100);
    findPage();
    mSearch.begin(100 + kPageSize);
    findPage();
    mSearch.read(kPage + kPageSize, std::vector<uint8_t>(10), kPage);
    EXPECT_EQ(mSearch.ahead(), 0);
}

}  // namespace
}  // namespace ogmprobe
