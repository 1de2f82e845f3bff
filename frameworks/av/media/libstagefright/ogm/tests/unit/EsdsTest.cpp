// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <array>

#include "ChildProcess.h"
#include "Views.h"
#include "codec/Ogmavc_utils.h"

namespace android::ogm::test::esds_test {
namespace {

constexpr char kLimit[] =
        "frameworks/av/media/libstagefright/ogm/Ogmavc_utils:768 CHECK_LE( size,0x3fff) failed: ";

Bytes esdsOf(const Bytes& configuration) {
    const sp<ABuffer> esds = MakeESDS(viewOf(configuration));
    return Bytes(esds->data(), esds->data() + esds->size());
}

Bytes sizeBytes(size_t size) {
    std::array<uint8_t, 3> bytes{0xEE, 0xEE, 0xEE};
    uint8_t* position = bytes.data();
    WriteSize14(&position, size);
    EXPECT_EQ(position, bytes.data() + 2);
    EXPECT_EQ(bytes[2], 0xEE);
    return {bytes[0], bytes[1]};
}

TEST(EsdsTest, TenBytesOfConfigurationMakeThirtyFive) {
    const Bytes configuration = pattern(10, 1);
    EXPECT_EQ(esdsOf(configuration), joined({{0x03, 0x80, 0x20, 0x00, 0x00, 0x00},
                                             {0x04, 0x80, 0x1A, 0x40},
                                             filled(12, 0),
                                             {0x05, 0x80, 0x0A},
                                             configuration}));
}

TEST(EsdsTest, AnEmptyConfigurationMakesTwentyFiveBytes) {
    EXPECT_EQ(esdsOf({}), joined({{0x03, 0x80, 0x16, 0x00, 0x00, 0x00},
                                  {0x04, 0x80, 0x10, 0x40},
                                  filled(12, 0),
                                  {0x05, 0x80, 0x00}}));
}

TEST(EsdsTest, SizesOfMoreThanSevenBitsUseBothBytes) {
    const Bytes configuration = pattern(200, 1);
    EXPECT_EQ(esdsOf(configuration), joined({{0x03, 0x81, 0x5E, 0x00, 0x00, 0x00},
                                             {0x04, 0x81, 0x58, 0x40},
                                             filled(12, 0),
                                             {0x05, 0x81, 0x48},
                                             configuration}));
}

TEST(EsdsTest, TheLongestConfigurationUsesAllFourteenBits) {
    const Bytes configuration = pattern(16361, 1);
    const Bytes esds = esdsOf(configuration);
    EXPECT_EQ(esds.size(), 16386U);
    EXPECT_EQ(head(esds, 10), (Bytes{0x03, 0xFF, 0x7F, 0x00, 0x00, 0x00, 0x04, 0xFF, 0x79, 0x40}));
    EXPECT_EQ(tail(esds, 22), joined({{0x05, 0xFF, 0x69}, configuration}));
}

TEST(EsdsTest, OneByteMoreEndsTheProcessWithTheOutermostSize) {
    const Bytes configuration = pattern(16362, 1);
    EXPECT_EQ(runInChild([&] { esdsOf(configuration); }),
              abortedWith("avc_utils", std::string(kLimit) + "16384 vs. 16383"));
}

TEST(EsdsTest, ASizeIsWrittenInTwoGroupsOfSevenBits) {
    EXPECT_EQ(sizeBytes(0), (Bytes{0x80, 0x00}));
    EXPECT_EQ(sizeBytes(1), (Bytes{0x80, 0x01}));
    EXPECT_EQ(sizeBytes(127), (Bytes{0x80, 0x7F}));
    EXPECT_EQ(sizeBytes(128), (Bytes{0x81, 0x00}));
    EXPECT_EQ(sizeBytes(0x2AAA), (Bytes{0xD5, 0x2A}));
    EXPECT_EQ(sizeBytes(0x3FFF), (Bytes{0xFF, 0x7F}));
}

TEST(EsdsTest, ASizeOfFifteenBitsEndsTheProcess) {
    EXPECT_EQ(runInChild([] { sizeBytes(0x4000); }),
              abortedWith("avc_utils", std::string(kLimit) + "16384 vs. 16383"));
    EXPECT_EQ(runInChild([] { sizeBytes(1000000); }),
              abortedWith("avc_utils", std::string(kLimit) + "1000000 vs. 16383"));
}

}  // namespace
}  // namespace android::ogm::test::esds_test
