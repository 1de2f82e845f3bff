// SPDX-License-Identifier: Apache-2.0
#include "base/SharedBytes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

#include "AllocationHooks.h"

namespace android::ogm::test::shared_bytes_test {
namespace {

TEST(SharedBytesTest, OneWithoutBytesHasNeitherAddressNorSize) {
    const SharedBytes none;
    EXPECT_EQ(none.data(), nullptr);
    EXPECT_EQ(none.size(), 0U);
    EXPECT_FALSE(none.isShared());
    const SharedBytes copy(none);
    EXPECT_FALSE(copy.isShared());
}

TEST(SharedBytesTest, BytesAreAlignedForEveryTypeAndThePointerIsNonNullEvenForSizeZero) {
    for (const size_t size : {0, 1, 100, 32768}) {
        const SharedBytes bytes(size);
        EXPECT_EQ(bytes.size(), size);
        ASSERT_NE(bytes.data(), nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(bytes.data()) % alignof(std::max_align_t), 0U);
        std::memset(bytes.data(), 1, size);
    }
}

TEST(SharedBytesTest, ACopySharesTheBytesUntilOneOfTheTwoIsGone) {
    const SharedBytes bytes(100);
    EXPECT_FALSE(bytes.isShared());
    EXPECT_FALSE(bytes.isSame(SharedBytes(100)));
    {
        const SharedBytes copy(bytes);
        EXPECT_TRUE(copy.isSame(bytes));
        EXPECT_EQ(copy.data(), bytes.data());
        EXPECT_TRUE(bytes.isShared());
        EXPECT_TRUE(copy.isShared());
    }
    EXPECT_FALSE(bytes.isShared());
}

TEST(SharedBytesTest, MovingHandsTheBytesOn) {
    SharedBytes from(100);
    uint8_t* const data = from.data();
    SharedBytes to(std::move(from));
    EXPECT_EQ(from.data(), nullptr);  // NOLINT(bugprone-use-after-move): it is what is tested
    EXPECT_EQ(to.data(), data);
    EXPECT_FALSE(to.isShared());
    from = std::move(to);
    EXPECT_EQ(from.data(), data);
    EXPECT_FALSE(from.isShared());
}

TEST(SharedBytesTest, AssigningReleasesTheFormerBytes) {
    SharedBytes bytes(100);
    const SharedBytes former(bytes);
    bytes = SharedBytes(50);
    EXPECT_FALSE(former.isShared());
    EXPECT_EQ(bytes.size(), 50U);
    bytes = former;
    EXPECT_EQ(bytes.data(), former.data());
    EXPECT_TRUE(former.isShared());
}

TEST(SharedBytesTest, ALargePageHoldsAlmostTwoMebibytes) {
    constexpr size_t kLargePageSize = 2097152;
    const SharedBytes bytes = SharedBytes::inLargePage();
    EXPECT_GT(bytes.size(), kLargePageSize - 100);
    std::memset(bytes.data(), 1, bytes.size());
    EXPECT_EQ(reinterpret_cast<uintptr_t>(bytes.data() + bytes.size()) % kLargePageSize, 0U);
}

}  // namespace
}  // namespace android::ogm::test::shared_bytes_test
