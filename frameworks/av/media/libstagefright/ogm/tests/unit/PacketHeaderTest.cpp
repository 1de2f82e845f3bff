// SPDX-License-Identifier: Apache-2.0
#include "packet/PacketHeader.h"

#include "LogTest.h"
#include "Views.h"
#include "stream/StreamTypes.h"

namespace android::ogm::test {
namespace {

TEST(PacketHeaderTest, TheUsualAudioHeadersHaveThreeBytes) {
    EXPECT_EQ(audioPacketHeaderSize(0x00), 3u);
    EXPECT_EQ(audioPacketHeaderSize(0x80), 3u);
    EXPECT_EQ(audioPacketHeaderSize(0x88), 3u);
}

TEST(PacketHeaderTest, BitsOneZeroAndSixAddUpToSevenBytes) {
    EXPECT_EQ(audioPacketHeaderSize(0x40), 4u);
    EXPECT_EQ(audioPacketHeaderSize(0x01), 5u);
    EXPECT_EQ(audioPacketHeaderSize(0x02), 7u);
    EXPECT_EQ(audioPacketHeaderSize(0x43), 10u);
}

TEST(PacketHeaderTest, NoOtherBitCounts) {
    for (unsigned byte = 0; byte < 256; ++byte) {
        const auto size = audioPacketHeaderSize(static_cast<uint8_t>(byte));
        EXPECT_EQ(size, audioPacketHeaderSize(static_cast<uint8_t>(byte & 0x43))) << byte;
    }
}

using FrameHeaderTest = LogTest;

TEST_F(FrameHeaderTest, VideoHasOneByteWhateverItHolds) {
    for (const uint32_t type : {16u, 18u, 19u, 21u, 22u, 23u, 24u, 25u, 26u}) {
        EXPECT_EQ(frameHeaderSize(type, viewOf({0xFF, 1, 2})), 1u) << type;
        EXPECT_EQ(frameHeaderSize(type, {}), 1u) << type;
    }
    EXPECT_TRUE(mEvents.lines().empty());
}

TEST_F(FrameHeaderTest, AudioHasTheSizeThatItsFirstByteSays) {
    for (const uint32_t type : {2u, 3u, 4u, 5u, 6u, 9u}) {
        EXPECT_EQ(frameHeaderSize(type, viewOf({0x88, 1, 2, 3})), 3u) << type;
        // Also where the packet is shorter.
        EXPECT_EQ(frameHeaderSize(type, viewOf({0xC3, 1, 2, 3})), 10u) << type;
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

TEST_F(FrameHeaderTest, AnAccessUnitHasNoneAndIsLogged) {
    for (const uint32_t type : {1u, 7u, 8u}) {
        mEvents.clear();
        EXPECT_EQ(frameHeaderSize(type, {}), 0u);
        EXPECT_EQ(mEvents.lines(),
                  (std::vector{infoLine(formatted("DequeueFrame type:%u", type))}));
    }
}

TEST_F(FrameHeaderTest, APacketOfAnUnknownTypeHoldsNoFrame) {
    for (const uint32_t type : {0u, 10u, 15u, 17u, 20u, 27u, 30u}) {
        mEvents.clear();
        EXPECT_EQ(frameHeaderSize(type, viewOf({0x08, 1, 2, 3})), std::nullopt);
        EXPECT_EQ(mEvents.lines(),
                  (std::vector{errorLine(formatted("dequeueFrame:Unknow track type:%u\n", type))}));
    }
}

}  // namespace
}  // namespace android::ogm::test
