// SPDX-License-Identifier: Apache-2.0
#include "Source.h"

#include <gtest/gtest.h>

namespace android::ogm::trace {
namespace {

class SourceTest : public ::testing::Test {
  protected:
    SourceTest() { mPlan.file = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}; }

    ssize_t read(int64_t offset, size_t size) {
        CDataSource* const table = mSource.table();
        return table->readAt(table->handle, offset, mData, size);
    }

    Plan mPlan;
    Source mSource{mPlan};
    uint8_t mData[16] = {};
};

TEST_F(SourceTest, AReadIsShortAtTheEndAndReturnsNothingAfterIt) {
    EXPECT_EQ(4, read(6, 8));
    EXPECT_EQ(7, mData[0]);
    EXPECT_EQ(0, read(10, 4));
    EXPECT_EQ(0, read(int64_t{1} << 40, 4));
}

TEST_F(SourceTest, ANegativeOffsetIsRefused) {
    EXPECT_EQ(-2147483648LL, read(-1, 4));
}

TEST_F(SourceTest, AFaultHitsTheReadsThatItNames) {
    mPlan.faults = {{fuzz::FaultKind::kIoError, 1, 2}};
    EXPECT_EQ(4, read(0, 4));
    EXPECT_EQ(-1004, read(0, 4));
    EXPECT_EQ(-1004, read(0, 4));
    EXPECT_EQ(4, read(0, 4));
}

TEST_F(SourceTest, AFaultWithoutCountStays) {
    mPlan.faults = {{fuzz::FaultKind::kHalf, 1, 0}};
    EXPECT_EQ(4, read(0, 4));
    EXPECT_EQ(2, read(0, 4));
    EXPECT_EQ(5, read(0, 10));
}

TEST_F(SourceTest, ASizeCanBeStoredAndRefusedAtOnce) {
    mPlan.size = {-1010, -1};
    off64_t size = 5;
    EXPECT_EQ(-1010, mSource.table()->getSize(mSource.table()->handle, &size));
    EXPECT_EQ(-1, size);
    mPlan.size = {-1010, std::nullopt};
    size = 5;
    EXPECT_EQ(-1010, mSource.table()->getSize(mSource.table()->handle, &size));
    EXPECT_EQ(5, size);
}

}  // namespace
}  // namespace android::ogm::trace
