// SPDX-License-Identifier: Apache-2.0
#include "process/SharedRing.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <thread>
#include <vector>

#include "RingFixture.h"

namespace ogmprobe {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint64_t kCapacity = RingMemory::kCapacity;

Bytes numbered(size_t size) {
    Bytes bytes(size);
    std::iota(bytes.begin(), bytes.end(), static_cast<uint8_t>(size));
    return bytes;
}

class SharedRingTest : public testing::Test {
  protected:
    Bytes read(size_t size) {
        Bytes bytes(size);
        mRing.reader().read(bytes.data(), size);
        return bytes;
    }

    test::RingFixture mRing;
};

TEST_F(SharedRingTest, ReturnsWhatWasWritten) {
    mRing.writer().write("abc", 3);
    mRing.writer().publish();
    EXPECT_EQ(read(2), (Bytes{'a', 'b'}));
    EXPECT_EQ(read(1), (Bytes{'c'}));
}

TEST_F(SharedRingTest, EndsWhenAllIsReadAndTheWriterIsGone) {
    mRing.writer().write("abc", 3);
    mRing.endWriting();
    EXPECT_EQ(read(3), (Bytes{'a', 'b', 'c'}));
    EXPECT_THROW(read(1), RingEnded);
}

TEST_F(SharedRingTest, EndsInTheMiddleOfARequest) {
    mRing.writer().write("abc", 3);
    mRing.endWriting();
    EXPECT_THROW(read(4), RingEnded);
}

TEST_F(SharedRingTest, KeepsWhatWasNotPublished) {
    mRing.writer().write("abc", 3);
    EXPECT_TRUE(mRing.reader().prepareToSleep());
    mRing.writer().publish();
    EXPECT_FALSE(mRing.reader().prepareToSleep());
}

TEST_F(SharedRingTest, CarriesPiecesOfAnySizeBetweenThreads) {
    // Some are longer than the ring; together they fill it many times.
    std::minstd_rand random(1);
    std::vector<size_t> sizes = {kCapacity - 1, kCapacity, kCapacity + 1, 3 * kCapacity + 7};
    for (int i = 0; i < 2000; ++i) {
        sizes.push_back(random() % (i % 10 == 0 ? 100000 : 300));
    }
    std::thread writing([&] {
        for (const size_t size : sizes) {
            const Bytes bytes = numbered(size);
            mRing.writer().write(bytes.data(), size);
            mRing.writer().publish();
        }
        mRing.endWriting();
    });
    for (const size_t size : sizes) {
        EXPECT_EQ(read(size), numbered(size));
    }
    EXPECT_THROW(read(1), RingEnded);
    writing.join();
}

TEST_F(SharedRingTest, IsFoundDamagedWhenMoreIsAnnouncedThanItHolds) {
    mRing.memory().written = kCapacity + 1;
    EXPECT_THROW(read(1), RingDamaged);
}

TEST_F(SharedRingTest, IsFoundDamagedWhenItGoesBack) {
    mRing.writer().write("abc", 3);
    mRing.writer().publish();
    read(3);
    mRing.memory().written = 2;
    EXPECT_THROW(read(1), RingDamaged);
}

}  // namespace
}  // namespace ogmprobe
