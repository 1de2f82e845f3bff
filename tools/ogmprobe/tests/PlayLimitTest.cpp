// SPDX-License-Identifier: Apache-2.0
#include "jobs/PlayLimit.h"

#include <gtest/gtest.h>

namespace ogmprobe {
namespace {

constexpr uint64_t kManyPages = 10'000;
constexpr uint64_t kPageHeader = 27;
constexpr uint64_t kLacings = 255;

void play(PlayLimit& limit, uint64_t packets, size_t size) {
    Packet packet;
    packet.bytes.resize(size);
    for (uint64_t i = 0; i < packets; ++i) {
        limit.add(packet);
    }
}

TEST(PlayLimit, IsNotReachedByAFileOfEmptyPackets) {
    PlayLimit limit(kManyPages * (kPageHeader + kLacings));
    EXPECT_NO_THROW(play(limit, kManyPages * kLacings, 0));
}

TEST(PlayLimit, IsNotReachedByAFileOfPacketsOfOneByte) {
    PlayLimit limit(kManyPages * (kPageHeader + 2 * kLacings));
    EXPECT_NO_THROW(play(limit, kManyPages * kLacings, 1));
}

TEST(PlayLimit, IsReachedByEmptyPacketsWithoutEnd) {
    PlayLimit limit(1000);
    EXPECT_THROW(play(limit, 200'000, 0), EndlessRepetition);
}

TEST(PlayLimit, IsReachedByTheSameBytesAgainAndAgain) {
    PlayLimit limit(1000);
    EXPECT_THROW(play(limit, 1'200, 1000), EndlessRepetition);
}

}  // namespace
}  // namespace ogmprobe
