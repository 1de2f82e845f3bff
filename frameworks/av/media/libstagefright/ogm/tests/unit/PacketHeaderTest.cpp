// SPDX-License-Identifier: Apache-2.0
#include "packet/PacketHeader.h"

#include "LogTest.h"
#include "Views.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test::packet_header_test {
namespace {

TEST(PacketHeaderTest, TheUsualAudioHeadersHaveThreeBytes) {
    EXPECT_EQ(audioPacketHeaderSize(0x00), 3U);
    EXPECT_EQ(audioPacketHeaderSize(0x80), 3U);
    EXPECT_EQ(audioPacketHeaderSize(0x88), 3U);
}

TEST(PacketHeaderTest, BitsOneZeroAndSixAddUpToSevenBytes) {
    EXPECT_EQ(audioPacketHeaderSize(0x40), 4U);
    EXPECT_EQ(audioPacketHeaderSize(0x01), 5U);
    EXPECT_EQ(audioPacketHeaderSize(0x02), 7U);
    EXPECT_EQ(audioPacketHeaderSize(0x43), 10U);
}

TEST(PacketHeaderTest, NoOtherBitCounts) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const auto size = audioPacketHeaderSize(static_cast<uint8_t>(byte));
        EXPECT_EQ(size, audioPacketHeaderSize(static_cast<uint8_t>(byte & 0x43))) << byte;
    }
}

using FrameHeaderTest = LogTest;

TEST_F(FrameHeaderTest, VideoHasOneByteWhateverItHolds) {
    for (const uint32_t type : {16U, 18U, 19U, 21U, 22U, 23U, 24U, 25U, 26U}) {
        EXPECT_EQ(frameHeaderSize(type, viewOf({0xFF, 1, 2})), 1U) << type;
        EXPECT_EQ(frameHeaderSize(type, {}), 1U) << type;
    }
    EXPECT_TRUE(mEvents.lines().empty());
}

TEST_F(FrameHeaderTest, AudioHasTheSizeGivenByItsFirstByte) {
    for (const uint32_t type : {2U, 3U, 4U, 5U, 6U, 9U}) {
        EXPECT_EQ(frameHeaderSize(type, viewOf({0x88, 1, 2, 3})), 3U) << type;
        // Even if the packet is shorter.
        EXPECT_EQ(frameHeaderSize(type, viewOf({0xC3, 1, 2, 3})), 10U) << type;
    }
    EXPECT_TRUE(mEvents.lines().empty());
}

TEST_F(FrameHeaderTest, AnAudioPacketOfThreeBytesOrFewerHoldsNoFrame) {
    for (size_t size = 0; size <= 3; ++size) {
        mEvents.clear();
        EXPECT_EQ(frameHeaderSize(OGA_AUDIO_PCM, viewOf(filled(size, 0))), std::nullopt);
        EXPECT_EQ(mEvents.lines(),
                  (std::vector{errorLine(formatted("invalid audio packet size:%zu", size))}));
    }
}

TEST_F(FrameHeaderTest, AnAccessUnitHasNoHeaderAndIsLogged) {
    for (const uint32_t type : {1U, 7U, 8U}) {
        mEvents.clear();
        EXPECT_EQ(frameHeaderSize(type, {}), 0U);
        EXPECT_EQ(mEvents.lines(),
                  (std::vector{infoLine(formatted("DequeueFrame type:%u", type))}));
    }
}

TEST_F(FrameHeaderTest, APacketOfAnUnknownTypeHoldsNoFrame) {
    for (const uint32_t type : {0U, 10U, 15U, 17U, 20U, 27U, 30U}) {
        mEvents.clear();
        EXPECT_EQ(frameHeaderSize(type, viewOf({0x08, 1, 2, 3})), std::nullopt);
        EXPECT_EQ(mEvents.lines(),
                  (std::vector{errorLine(formatted("dequeueFrame:Unknow track type:%u\n", type))}));
    }
}

}  // namespace
}  // namespace android::ogm::test::packet_header_test
