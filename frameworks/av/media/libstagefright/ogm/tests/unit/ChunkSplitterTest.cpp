// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <memory>

#include "Bytes.h"
#include "ChildProcess.h"
#include "codec/Ogmavc_utils.h"

namespace android::ogm::test::chunk_splitter_test {
namespace {

int64_t chunkSize(const Bytes& bytes) {
    const auto exact = std::make_unique<uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), exact.get());
    return GetStartCodeChunkSize(ByteView(exact.get(), bytes.size()));
}

TEST(ChunkSplitterTest, AChunkEndsWhereTheNextStartCodeBegins) {
    EXPECT_EQ(chunkSize({0x00, 0x00, 0x01, 0xB0, 0x01, 0x00, 0x00, 0x01, 0xB5}), 5);
}

TEST(ChunkSplitterTest, AStartCodeInTheLastThreeBytesEndsTheChunk) {
    EXPECT_EQ(chunkSize({0x00, 0x00, 0x01, 0xB0, 0x01, 0x00, 0x00, 0x01}), 5);
    EXPECT_EQ(chunkSize({0x00, 0x00, 0x01, 0xB0, 0x01, 0x02, 0x00, 0x00}), -11);
}

TEST(ChunkSplitterTest, TheShortestChunkIsOnlyTheStartCode) {
    EXPECT_EQ(chunkSize({0x00, 0x00, 0x01, 0x00, 0x00, 0x01}), 3);
}

TEST(ChunkSplitterTest, AZeroBeforeTheNextStartCodeBelongsToTheChunk) {
    EXPECT_EQ(chunkSize({0x00, 0x00, 0x01, 0xB0, 0x00, 0x00, 0x00, 0x01, 0xB5}), 5);
}

TEST(ChunkSplitterTest, TheFirstOfSeveralStartCodesEndsTheChunk) {
    const Bytes code{0x00, 0x00, 0x01, 0xB6, 0x55};
    EXPECT_EQ(chunkSize(joined({code, code, code})), 5);
}

TEST(ChunkSplitterTest, WithoutAnotherStartCodeTheEndIsUnknown) {
    EXPECT_EQ(chunkSize(joined({{0x00, 0x00, 0x01, 0xB6}, pattern(1000, 1)})), -11);
}

TEST(ChunkSplitterTest, FewerThanThreeBytesGiveNoEndWhateverTheyAre) {
    EXPECT_EQ(chunkSize({}), -11);
    EXPECT_EQ(chunkSize({0x00, 0x00}), -11);
    EXPECT_EQ(chunkSize({0x55, 0x55}), -11);
}

TEST(ChunkSplitterTest, AStartCodeWithFewerThanThreeBytesAfterItGivesNoEnd) {
    EXPECT_EQ(chunkSize({0x00, 0x00, 0x01}), -11);
    EXPECT_EQ(chunkSize({0x00, 0x00, 0x01, 0x00, 0x00}), -11);
}

TEST(ChunkSplitterTest, BytesThatDoNotBeginWithAStartCodeEndTheProcess) {
    const ChildResult expected = abortedWith(
            "avc_utils",
            "frameworks/av/media/libstagefright/ogm/Ogmavc_utils:816 Should not be here. ");
    for (const Bytes& bytes :
         {Bytes{0x00, 0x00, 0x02}, Bytes{0x00, 0x01, 0x01}, Bytes{0x01, 0x00, 0x01},
          Bytes{0x00, 0x00, 0x00, 0x01, 0xB6, 0x00, 0x00, 0x01}}) {
        EXPECT_EQ(runInChild([&bytes] { chunkSize(bytes); }), expected);
    }
}

}  // namespace
}  // namespace android::ogm::test::chunk_splitter_test
