// SPDX-License-Identifier: Apache-2.0
#include <media/MediaExtractorPluginHelper.h>

#include <string.h>

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

using android::CDataSource;
using android::DataSourceHelper;
using android::status_t;

#ifdef __LP64__
static_assert(sizeof(DataSourceHelper) == 16);
#endif

namespace {

constexpr uint8_t kBytes[] = {0x81, 0x82, 0x83, 0x84, 0x85, 0x86, 0x87, 0x88, 0x89};
constexpr off64_t kSize = sizeof kBytes;

/** A source over kBytes that records its calls. */
class FakeSource {
  public:
    FakeSource() {
        mTable.handle = this;
        mTable.readAt = [](void* handle, off64_t offset, void* data, size_t size) -> ssize_t {
            self(handle)->reads.push_back(size);
            if (self(handle)->readError != 0) {
                return self(handle)->readError;
            }
            const size_t count = std::min(size, static_cast<size_t>(kSize - offset));
            memcpy(data, kBytes + offset, count);
            return static_cast<ssize_t>(count);
        };
        mTable.getSize = [](void* handle, off64_t* size) {
            *size = kSize;
            return self(handle)->sizeStatus;
        };
        mTable.flags = [](void*) { return 0x12345678U; };
        mTable.getUri = [](void* handle, char* uriString, size_t bufferSize) {
            self(handle)->uriBufferSize = bufferSize;
            *uriString = 'u';
            return self(handle)->uriResult;
        };
    }
    FakeSource(const FakeSource&) = delete;
    FakeSource& operator=(const FakeSource&) = delete;

    CDataSource* table() { return &mTable; }

    ssize_t readError = 0;
    status_t sizeStatus = android::OK;
    bool uriResult = true;
    std::vector<size_t> reads;
    size_t uriBufferSize = 0;

  private:
    static FakeSource* self(void* handle) { return static_cast<FakeSource*>(handle); }

    CDataSource mTable;
};

class DataSourceHelperTest : public testing::Test {
  protected:
    FakeSource mSource;
    DataSourceHelper mHelper{mSource.table()};
};

TEST_F(DataSourceHelperTest, ReadAtGivesTheSourcesResultUnchanged) {
    uint8_t data[20] = {};
    EXPECT_EQ(4, mHelper.readAt(2, data, 4));
    EXPECT_EQ(0x83, data[0]);
    EXPECT_EQ(1, mHelper.readAt(kSize - 1, data, 20));
    EXPECT_EQ(0, mHelper.readAt(kSize, data, 20));
    mSource.readError = -2147483648LL;
    EXPECT_EQ(-2147483648LL, mHelper.readAt(0, data, 4));
}

TEST_F(DataSourceHelperTest, GetSizeGivesTheSourcesResultUnchanged) {
    off64_t size = 0;
    EXPECT_EQ(android::OK, mHelper.getSize(&size));
    EXPECT_EQ(kSize, size);
    mSource.sizeStatus = -1010;
    EXPECT_EQ(-1010, mHelper.getSize(&size));
}

TEST_F(DataSourceHelperTest, FlagsForward) {
    EXPECT_EQ(0x12345678U, mHelper.flags());
}

TEST_F(DataSourceHelperTest, GetUriForwards) {
    char uri[8] = {};
    EXPECT_TRUE(mHelper.getUri(uri, sizeof uri));
    EXPECT_EQ('u', uri[0]);
    EXPECT_EQ(8U, mSource.uriBufferSize);
    mSource.uriResult = false;
    EXPECT_FALSE(mHelper.getUri(uri, sizeof uri));
}

TEST_F(DataSourceHelperTest, NumbersAreBigEndianAndTakeOneReadEach) {
    uint16_t u16 = 0;
    uint32_t u24 = 0;
    uint32_t u32 = 0;
    uint64_t u64 = 0;
    EXPECT_TRUE(mHelper.getUInt16(1, &u16));
    EXPECT_EQ(0x8283U, u16);
    EXPECT_TRUE(mHelper.getUInt24(1, &u24));
    EXPECT_EQ(0x828384U, u24);
    EXPECT_TRUE(mHelper.getUInt32(1, &u32));
    EXPECT_EQ(0x82838485U, u32);
    EXPECT_TRUE(mHelper.getUInt64(1, &u64));
    EXPECT_EQ(0x8283848586878889U, u64);
    EXPECT_EQ((std::vector<size_t>{2, 3, 4, 8}), mSource.reads);
}

TEST_F(DataSourceHelperTest, ANumberThatIsNotWholeIsFalseAnd0) {
    uint16_t u16 = 1;
    uint32_t u24 = 1;
    uint32_t u32 = 1;
    uint64_t u64 = 1;
    EXPECT_FALSE(mHelper.getUInt16(kSize - 1, &u16));
    EXPECT_FALSE(mHelper.getUInt24(kSize - 2, &u24));
    EXPECT_FALSE(mHelper.getUInt32(kSize - 3, &u32));
    EXPECT_FALSE(mHelper.getUInt64(kSize - 7, &u64));
    EXPECT_EQ(0U, u16);
    EXPECT_EQ(0U, u24);
    EXPECT_EQ(0U, u32);
    EXPECT_EQ(0U, u64);
}

TEST_F(DataSourceHelperTest, AFailedReadIsFalseAnd0) {
    mSource.readError = -5;
    uint32_t u32 = 1;
    EXPECT_FALSE(mHelper.getUInt32(0, &u32));
    EXPECT_EQ(0U, u32);
}

TEST_F(DataSourceHelperTest, AVariableWidthMayBeTheFullOne) {
    uint16_t u16 = 0;
    uint32_t u32 = 0;
    uint64_t u64 = 0;
    EXPECT_TRUE(mHelper.getUInt16Var(0, &u16, 2));
    EXPECT_EQ(0x8182U, u16);
    EXPECT_TRUE(mHelper.getUInt32Var(0, &u32, 4));
    EXPECT_EQ(0x81828384U, u32);
    EXPECT_TRUE(mHelper.getUInt64Var(0, &u64, 8));
    EXPECT_EQ(0x8182838485868788U, u64);
    EXPECT_EQ((std::vector<size_t>{2, 4, 8}), mSource.reads);
}

TEST_F(DataSourceHelperTest, AVariableWidthMayBeHalf) {
    uint16_t u16 = 0;
    uint32_t u32 = 0;
    uint64_t u64 = 0;
    EXPECT_TRUE(mHelper.getUInt16Var(0, &u16, 1));
    EXPECT_EQ(0x81U, u16);
    EXPECT_TRUE(mHelper.getUInt32Var(0, &u32, 2));
    EXPECT_EQ(0x8182U, u32);
    EXPECT_TRUE(mHelper.getUInt64Var(0, &u64, 4));
    EXPECT_EQ(0x81828384U, u64);
    EXPECT_EQ((std::vector<size_t>{1, 2, 4}), mSource.reads);
}

TEST_F(DataSourceHelperTest, AnyOtherWidthIsFalseWithoutARead) {
    uint16_t u16 = 7;
    uint32_t u32 = 7;
    uint64_t u64 = 7;
    for (const size_t size : {0, 3, 4, 8}) {
        EXPECT_FALSE(mHelper.getUInt16Var(0, &u16, size)) << size;
    }
    for (const size_t size : {0, 1, 3, 8}) {
        EXPECT_FALSE(mHelper.getUInt32Var(0, &u32, size)) << size;
    }
    for (const size_t size : {0, 1, 2, 16}) {
        EXPECT_FALSE(mHelper.getUInt64Var(0, &u64, size)) << size;
    }
    EXPECT_EQ(7U, u16);
    EXPECT_EQ(7U, u32);
    EXPECT_EQ(7U, u64);
    EXPECT_TRUE(mSource.reads.empty());
}

TEST_F(DataSourceHelperTest, AFailedHalfWidthDoesNotChangeTheOutputAndAFullOneSetsIt0) {
    mSource.readError = -1;
    uint16_t u16 = 7;
    uint32_t u32 = 7;
    uint64_t u64 = 7;
    EXPECT_FALSE(mHelper.getUInt16Var(0, &u16, 1));
    EXPECT_FALSE(mHelper.getUInt32Var(0, &u32, 2));
    EXPECT_FALSE(mHelper.getUInt64Var(0, &u64, 4));
    EXPECT_EQ(7U, u16);
    EXPECT_EQ(7U, u32);
    EXPECT_EQ(7U, u64);
    EXPECT_FALSE(mHelper.getUInt16Var(0, &u16, 2));
    EXPECT_FALSE(mHelper.getUInt32Var(0, &u32, 4));
    EXPECT_FALSE(mHelper.getUInt64Var(0, &u64, 8));
    EXPECT_EQ(0U, u16);
    EXPECT_EQ(0U, u32);
    EXPECT_EQ(0U, u64);
}

/** A helper that reads from an offset on, as a plug-in might define it. */
class ConstantHelper : public DataSourceHelper {
  public:
    using DataSourceHelper::DataSourceHelper;
    ssize_t readAt(off64_t, void* data, size_t size) override {
        memset(data, 0x11, size);
        return static_cast<ssize_t>(size);
    }
};

TEST_F(DataSourceHelperTest, NumbersAreReadThroughTheVirtualReadAt) {
    ConstantHelper helper(mSource.table());
    uint16_t u16 = 0;
    EXPECT_TRUE(helper.getUInt16(0, &u16));
    EXPECT_EQ(0x1111U, u16);
    EXPECT_TRUE(mSource.reads.empty());
}

TEST_F(DataSourceHelperTest, AHelperMadeFromAnotherReadsTheSameSourceDirectly) {
    ConstantHelper original(mSource.table());
    DataSourceHelper shared(&original);
    uint16_t u16 = 0;
    EXPECT_TRUE(shared.getUInt16(0, &u16));
    EXPECT_EQ(0x8182U, u16);
}

TEST_F(DataSourceHelperTest, DestroyingAHelperDoesNotTouchTheSource) {
    delete new DataSourceHelper(mSource.table());
    EXPECT_EQ(0x12345678U, mHelper.flags());
    EXPECT_TRUE(mSource.reads.empty());
}

}  // namespace
