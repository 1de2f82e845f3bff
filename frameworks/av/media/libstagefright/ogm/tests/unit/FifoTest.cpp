// SPDX-License-Identifier: Apache-2.0
#include "base/Fifo.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "Random.h"

namespace android::ogm::test::fifo_test {
namespace {

TEST(FifoTest, ANewOneIsEmpty) {
    const Fifo<int> fifo;
    EXPECT_TRUE(fifo.empty());
    EXPECT_EQ(fifo.size(), 0U);
}

TEST(FifoTest, HoldsWhatADequeHoldsWhateverIsPushedAndPopped) {
    Fifo<uint32_t> fifo;
    std::deque<uint32_t> model;
    Random random;
    for (uint32_t i = 0; i < 20000; ++i) {
        // Alternately grows and shrinks, many times until it is empty.
        const bool isGrowing = i / 500 % 2 == 0;
        if (model.empty() || random.happens(5, 8) == isGrowing) {
            fifo.emplace_back(uint32_t{i});
            model.emplace_back(i);
        } else {
            fifo.pop_front();
            model.pop_front();
        }
        ASSERT_EQ(fifo.size(), model.size());
        ASSERT_EQ(fifo.empty(), model.empty());
        if (!model.empty()) {
            ASSERT_EQ(fifo.front(), model.front());
            ASSERT_EQ(fifo.back(), model.back());
            const size_t index = random.below(model.size());
            ASSERT_EQ(fifo[index], model[index]);
        }
    }
}

TEST(FifoTest, ItemsStayInPlace) {
    Fifo<int> fifo;
    std::vector<const int*> places;
    for (int i = 0; i < 1000; ++i) {
        fifo.emplace_back(int{i});
        places.emplace_back(&fifo.back());
    }
    for (const int* place : places) {
        ASSERT_EQ(&fifo.front(), place);
        fifo.pop_front();
    }
}

TEST(FifoTest, AnItemEndsWhenItIsPopped) {
    const auto item = std::make_shared<int>(1);
    Fifo<std::shared_ptr<int>> fifo;
    fifo.emplace_back(std::shared_ptr<int>(item));
    fifo.emplace_back(std::shared_ptr<int>(item));
    EXPECT_EQ(item.use_count(), 3);
    fifo.pop_front();
    EXPECT_EQ(item.use_count(), 2);
}

TEST(FifoTest, ClearingEndsAllItemsAndLeavesAUsableQueue) {
    const auto item = std::make_shared<int>(1);
    Fifo<std::shared_ptr<int>> fifo;
    for (int i = 0; i < 100; ++i) {
        fifo.emplace_back(std::shared_ptr<int>(item));
    }
    fifo.clear();
    EXPECT_TRUE(fifo.empty());
    EXPECT_EQ(item.use_count(), 1);
    fifo.emplace_back(std::shared_ptr<int>(item));
    EXPECT_EQ(fifo.front(), item);
}

TEST(FifoTest, ItsEndEndsAllItemsHoweverMany) {
    constexpr int kManyMoreThanTheStackCouldNest = 1000000;
    const auto item = std::make_shared<int>(1);
    {
        Fifo<std::shared_ptr<int>> fifo;
        for (int i = 0; i < kManyMoreThanTheStackCouldNest; ++i) {
            fifo.emplace_back(std::shared_ptr<int>(item));
        }
    }
    EXPECT_EQ(item.use_count(), 1);
}

}  // namespace
}  // namespace android::ogm::test::fifo_test
