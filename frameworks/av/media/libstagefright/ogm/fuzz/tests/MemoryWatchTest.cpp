// SPDX-License-Identifier: Apache-2.0
#include "MemoryWatch.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <vector>

#include "Ends.h"
#include "base/Fifo.h"

namespace android::ogm::fuzz {
namespace {

constexpr size_t kMegabyte = 1 << 20;

/** Allocates small blocks one after the other, and holds one at a time. */
void takeForever() {
    for (;;) {
        std::make_unique<std::vector<int>>(1);
    }
}

class MemoryWatchTest : public ::testing::Test {
  protected:
    const SessionInput mInput{};
    const Bytes mFile = Bytes(kMegabyte, 0);
    ScriptedSource mSource{mInput, mFile};
};

TEST_F(MemoryWatchTest, ARequestThatNothingReadJustifiesEndsTheProcess) {
    EXPECT_DEATH(
            {
                const MemoryWatch watch(mSource);
                void* volatile block = ::malloc(kMegabyte);
                ::free(block);
            },
            "finding: 1048576 bytes are requested after 0 have been read");
}

TEST_F(MemoryWatchTest, ARequestOfThreeTimesTheBytesReadIsJustified) {
    std::vector<uint8_t> bytes(kMegabyte);
    CDataSource* const table = mSource.table();
    ASSERT_EQ(table->readAt(table->handle, 0, bytes.data(), bytes.size()),
              static_cast<ssize_t>(kMegabyte));
    const MemoryWatch watch(mSource);
    const auto block = std::make_unique<uint8_t[]>(3 * kMegabyte);
    EXPECT_GE(test::allocationCounts().live, static_cast<ptrdiff_t>(3 * kMegabyte));
}

TEST_F(MemoryWatchTest, ManySmallBlocksThatNothingReadJustifiesEndTheProcess) {
    EXPECT_DEATH(
            {
                const MemoryWatch watch(mSource);
                std::vector<std::unique_ptr<uint8_t[]>> blocks;
                blocks.reserve(100);
                for (int i = 0; i < 100; ++i) {
                    blocks.push_back(std::make_unique<uint8_t[]>(100000));
                }
            },
            "finding: [0-9]+ bytes are in use after 0 have been read");
}

TEST_F(MemoryWatchTest, TakingMemoryForeverIsAFindingWithoutAnAc3Track) {
    EXPECT_DEATH(
            {
                const MemoryWatch watch(mSource);
                takeForever();
            },
            "finding: the plug-in goes on taking memory without reading");
}

TEST_F(MemoryWatchTest, TakingMemoryForeverLeavesTheRunWithAnAc3Track) {
    MemoryWatch watch(mSource);
    watch.allowEndlessGrowth(true);
    watch.allowEndlessGrowth(false);
    EXPECT_FALSE(endsByItself(takeForever));
}

TEST_F(MemoryWatchTest, AQueueThatGrowsForeverLeavesTheRunWithAnAc3Track) {
    MemoryWatch watch(mSource);
    watch.allowEndlessGrowth(true);
    EXPECT_FALSE(endsByItself([] {
        Fifo<std::array<uint8_t, 64>> queue;
        for (;;) {
            queue.emplace_back();
        }
    }));
}

}  // namespace
}  // namespace android::ogm::fuzz
