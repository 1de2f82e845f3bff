// SPDX-License-Identifier: Apache-2.0
#include "base/PacketStorage.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

#include "Random.h"
#include "Views.h"

namespace android::ogm::test::packet_storage_test {
namespace {

constexpr size_t kShortQueue = 10;

ByteBuffer filledPacket(PacketStorage& storage, size_t size, uint32_t seed, size_t queued) {
    ByteBuffer packet = storage.take(size, queued);
    const Bytes bytes = pattern(size, seed);
    std::copy(bytes.begin(), bytes.end(), packet.data());
    return packet;
}

TEST(PacketStorageTest, PacketsInAQueueKeepTheirBytes) {
    PacketStorage storage;
    std::deque<ByteBuffer> queue;
    for (uint32_t i = 0; i < 2000; ++i) {
        queue.push_back(filledPacket(storage, i * 37 % 20000, i, queue.size()));
        if (queue.size() > kShortQueue) {
            ASSERT_EQ(bytesOf(queue.front()), pattern(queue.front().size(), i - kShortQueue)) << i;
            queue.pop_front();
        }
    }
}

TEST(PacketStorageTest, PacketsInALongQueueKeepTheirBytes) {
    constexpr uint32_t kPackets =
            2000;  // several times as many as in a queue before it uses large pages
    const auto sizeOf = [](uint32_t number) { return size_t{number} * 37 % 65025; };
    PacketStorage storage;
    std::deque<ByteBuffer> queue;
    for (uint32_t i = 0; i < kPackets; ++i) {
        queue.push_back(filledPacket(storage, sizeOf(i), i, queue.size()));
    }
    for (uint32_t i = 0; i < kPackets; ++i) {
        ASSERT_EQ(bytesOf(queue[i]), pattern(sizeOf(i), i)) << i;
    }
}

TEST(PacketStorageTest, LargePacketsOfAQueueThatHasBecomeShortKeepTheirBytes) {
    PacketStorage storage;
    std::deque<ByteBuffer> queue;
    for (uint32_t i = 0; i < 2000; ++i) {
        queue.push_back(storage.take(3001, queue.size()));
    }
    queue.clear();
    for (uint32_t i = 0; i < 200; ++i) {
        const size_t size = i % 2 == 0 ? 65025 : 100;
        queue.push_back(filledPacket(storage, size, i, queue.size()));
        if (queue.size() > kShortQueue) {
            ASSERT_EQ(bytesOf(queue.front()), pattern(queue.front().size(), i - kShortQueue)) << i;
            queue.pop_front();
        }
    }
}

TEST(PacketStorageTest, QueuedPacketsKeepTheirBytesHoweverTheQueueGrowsAndShrinks) {
    constexpr size_t kLongest = 1500;
    PacketStorage storage;
    std::deque<std::pair<uint32_t, ByteBuffer>> queue;
    Random random;
    bool isGrowing = true;
    for (uint32_t i = 0; i < 12000; ++i) {
        if (queue.empty() || queue.size() > kLongest) {
            isGrowing = queue.empty();
        }
        if (random.happens(3, 4) == isGrowing) {
            const size_t size = random.below(random.happens(1, 4) ? 65026 : 3000);
            queue.emplace_back(i, filledPacket(storage, size, i, queue.size()));
            storage.giveBack(filledPacket(storage, size / 2, i, queue.size()));
        } else if (!queue.empty()) {
            const auto& [seed, packet] = queue.front();
            ASSERT_EQ(bytesOf(packet), pattern(packet.size(), seed)) << i;
            queue.pop_front();
        }
    }
}

TEST(PacketStorageTest, ALonePacketTakesThePlaceOfTheOneBefore) {
    PacketStorage storage;
    const uint8_t* const place = storage.take(100, 0).data();
    for (size_t size = 1; size < 1000; ++size) {
        ASSERT_EQ(storage.take(size, 0).data(), place) << size;
    }
}

TEST(PacketStorageTest, TheNextPacketTakesThePlaceOfOneThatIsGivenBack) {
    PacketStorage storage;
    const ByteBuffer queued = filledPacket(storage, 100, 1, 0);
    ByteBuffer packet = storage.take(200, 1);
    const uint8_t* const place = packet.data();
    packet.dropFront(7);
    storage.giveBack(std::move(packet));
    EXPECT_EQ(storage.take(300, 1).data(), place);
    EXPECT_EQ(bytesOf(queued), pattern(100, 1));
}

TEST(PacketStorageTest, APacketThatIsGivenBackUntouchedLeavesItsPlaceToo) {
    PacketStorage storage;
    const ByteBuffer queued = storage.take(100, 0);
    ByteBuffer packet = storage.take(200, 1);
    const uint8_t* const place = packet.data();
    storage.giveBack(std::move(packet));
    EXPECT_EQ(storage.take(300, 1).data(), place);
}

TEST(PacketStorageTest, OnlyTheLatestPacketLeavesItsPlace) {
    PacketStorage storage;
    ByteBuffer packet = storage.take(200, 0);
    const ByteBuffer latest = filledPacket(storage, 100, 1, 1);
    storage.giveBack(std::move(packet));
    const ByteBuffer next = filledPacket(storage, 100, 2, 1);
    EXPECT_EQ(bytesOf(latest), pattern(100, 1));
    EXPECT_EQ(next.view().data(), latest.view().data() + 112);
}

TEST(PacketStorageTest, PacketsBeginAtMultiplesOf16BytesWithNothingElseBetweenThem) {
    PacketStorage storage;
    std::deque<ByteBuffer> queue;
    const uint8_t* place = storage.take(0, 0).data();
    for (size_t size = 0; size < 50; ++size) {
        queue.push_back(storage.take(size, queue.size()));
        EXPECT_EQ(queue.back().data(), place) << size;
        EXPECT_EQ(reinterpret_cast<uintptr_t>(place) % 16, 0U) << size;
        place += (size + 15) / 16 * 16;
    }
}

TEST(PacketStorageTest, GivingBackBytesOfAnotherStorageChangesNothing) {
    PacketStorage storage;
    const ByteBuffer first = filledPacket(storage, 100, 1, 0);
    ByteBuffer moved = storage.take(100, 1);
    const ByteBuffer queued(std::move(moved));
    storage.giveBack(std::move(moved));  // NOLINT(bugprone-use-after-move): it is what is tested
    storage.giveBack(ByteBuffer(100));
    const ByteBuffer next = filledPacket(storage, 100, 3, 2);
    EXPECT_NE(next.view().data(), queued.view().data());
    EXPECT_EQ(bytesOf(first), pattern(100, 1));
}

TEST(PacketStorageTest, APacketOfMoreThanALargePageKeepsItsBytes) {
    constexpr size_t kLargerThanALargePage = 3000000;
    PacketStorage storage;
    std::deque<ByteBuffer> queue;
    for (uint32_t i = 0; i < 2000; ++i) {
        queue.push_back(storage.take(3001, queue.size()));
    }
    const ByteBuffer large = filledPacket(storage, kLargerThanALargePage, 1, queue.size());
    EXPECT_EQ(bytesOf(large), pattern(kLargerThanALargePage, 1));
}

/** Packets of half a small block, all of which stay queued. */
class StorageBlocksTest : public ::testing::Test {
  protected:
    /** Takes packets; returns the numbers of packets between gaps in memory. */
    std::vector<size_t> packetsInARow(size_t count, size_t queued) {
        constexpr size_t kHalfABlock = 16384;
        std::vector<size_t> rows;
        for (size_t i = 0; i < count; ++i) {
            ByteBuffer packet = mStorage.take(kHalfABlock, queued);
            if (i == 0 || packet.data() != mQueue.back().data() + kHalfABlock) {
                rows.push_back(0);
            }
            ++rows.back();
            mQueue.push_back(std::move(packet));
        }
        return rows;
    }

    /** 64 blocks of two packets, and two large pages. */
    static std::vector<size_t> largePagesAfter64Blocks() {
        std::vector<size_t> rows(64, 2);
        rows.insert(rows.end(), 2, 127);
        return rows;
    }

    PacketStorage mStorage;
    std::deque<ByteBuffer> mQueue;
};

constexpr size_t kPacketsTwoLargePagesOn = 64 * 2 + 2 * 127;

TEST_F(StorageBlocksTest, AQueueOf256PacketsContinuesInLargePagesAfter64Blocks) {
    EXPECT_EQ(packetsInARow(kPacketsTwoLargePagesOn, 256), largePagesAfter64Blocks());
}

TEST_F(StorageBlocksTest, AQueueOf255PacketsStaysInSmallBlocks) {
    EXPECT_EQ(packetsInARow(kPacketsTwoLargePagesOn, 255),
              std::vector<size_t>(kPacketsTwoLargePagesOn / 2, 2));
}

TEST_F(StorageBlocksTest, BlocksOfALongQueueAreCountedAgainAfterItWasShort) {
    EXPECT_EQ(packetsInARow(126, 256), std::vector<size_t>(63, 2));
    EXPECT_EQ(packetsInARow(2, 255), std::vector<size_t>(1, 2));
    EXPECT_EQ(packetsInARow(kPacketsTwoLargePagesOn, 256), largePagesAfter64Blocks());
}

TEST(PacketStorageTest, APacketOfNoBytesHasAnAddressToReadTo) {
    PacketStorage storage;
    EXPECT_NE(storage.take(0, 0).data(), nullptr);
}

TEST(PacketStorageTest, APacketThatGrowsDoesNotChangeItsNeighbours) {
    PacketStorage storage;
    ByteBuffer first = filledPacket(storage, 5, 1, 0);
    const ByteBuffer second = filledPacket(storage, 50, 2, 1);
    const Bytes more = pattern(100, 3);
    first.append(viewOf(more));
    EXPECT_EQ(bytesOf(first), joined({pattern(5, 1), more}));
    EXPECT_EQ(bytesOf(second), pattern(50, 2));
}

TEST(PacketStorageTest, APacketOutlivesItsStorage) {
    auto storage = std::make_unique<PacketStorage>();
    const ByteBuffer packet = filledPacket(*storage, 100, 1, 0);
    storage.reset();
    EXPECT_EQ(bytesOf(packet), pattern(100, 1));
}

}  // namespace
}  // namespace android::ogm::test::packet_storage_test
