// SPDX-License-Identifier: Apache-2.0
#include "packet/PacketHeader.h"

#include <gtest/gtest.h>

namespace android::ogm {
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

}  // namespace
}  // namespace android::ogm
