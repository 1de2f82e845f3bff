// SPDX-License-Identifier: Apache-2.0
#include "check/PlayedPackets.h"

#include <gtest/gtest.h>

namespace ogmprobe::check {
namespace {

Packet packet(int64_t timeUs, bool isSync, size_t size) {
    Packet made;
    made.timeUs = timeUs;
    made.isSync = isSync;
    made.bytes.assign(size, 1);
    return made;
}

TEST(PlayedPacketsTest, TheBitrateIsThatOfAllBytesOverAllTime) {
    PlayedPackets packets;
    packets.add(packet(0, true, 500));
    EXPECT_FALSE(packets.bitrate());
    packets.add(packet(2'000'000, false, 500));
    EXPECT_DOUBLE_EQ(*packets.bitrate(), 4000);
}

TEST(PlayedPacketsTest, TimesThatSpanAllNumbersDoNoHarm) {
    PlayedPackets packets;
    packets.add(packet(INT64_MIN, true, 1));
    packets.add(packet(INT64_MAX, true, 1));
    packets.add(packet(0, false, 1));
    EXPECT_EQ(packets.count(), 3U);
    EXPECT_EQ(packets.syncCount(), 2U);
}

TEST(PlayedPacketsTest, TheHeadHoldsTheFirstBytesAndNoMore) {
    PlayedPackets packets;
    packets.add(packet(0, true, 65'000));
    packets.add(packet(0, true, 65'000));
    EXPECT_EQ(packets.head().size(), 65'536U);
}

TEST(PlayedPacketsTest, TheTimeWithoutSyncBeginsWithTheFirstPacketAndEndsWithTheLast) {
    PlayedPackets packets;
    packets.add(packet(0, false, 1));
    packets.add(packet(3'000'000, true, 1));
    packets.add(packet(4'000'000, true, 1));
    EXPECT_EQ(packets.longestWithoutSyncUs(), 3'000'000);
    packets.add(packet(9'000'000, false, 1));
    EXPECT_EQ(packets.longestWithoutSyncUs(), 5'000'000);
}

TEST(PlayedPacketsTest, PacketsOfOneTimeAreCountedWithTheStepAfterThem) {
    PlayedPackets packets;
    for (const int64_t timeUs : {0, 0, 0, 120'000, 160'000, 160'000, 200'000}) {
        packets.add(packet(timeUs, false, 1));
    }
    EXPECT_EQ(packets.sharedTimes(), 3U);
    EXPECT_EQ(packets.mostWithOneTime(), 3U);
    EXPECT_EQ(packets.longestStepUs(), 120'000);
}

}  // namespace
}  // namespace ogmprobe::check
