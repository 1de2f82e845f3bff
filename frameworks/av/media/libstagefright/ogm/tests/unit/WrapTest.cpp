// SPDX-License-Identifier: Apache-2.0
#include "base/Wrap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

namespace android::ogm {
namespace {

constexpr int32_t kMin32 = std::numeric_limits<int32_t>::min();
constexpr int32_t kMax32 = std::numeric_limits<int32_t>::max();
constexpr int64_t kMin64 = std::numeric_limits<int64_t>::min();
constexpr int64_t kMax64 = std::numeric_limits<int64_t>::max();
constexpr uint64_t kMaxUnsigned = std::numeric_limits<uint64_t>::max();

TEST(WrapTest, SumsWrap) {
    EXPECT_EQ(wrapAdd(1, 2), 3);
    EXPECT_EQ(wrapAdd(kMax32, 1), kMin32);
    EXPECT_EQ(wrapAdd(kMax64, int64_t{1}), kMin64);
    EXPECT_EQ(wrapAdd(kMaxUnsigned, uint64_t{2}), 1U);
}

TEST(WrapTest, DifferencesWrap) {
    EXPECT_EQ(wrapSub(1, 2), -1);
    EXPECT_EQ(wrapSub(kMin32, 1), kMax32);
    EXPECT_EQ(wrapSub(kMin64, int64_t{1}), kMax64);
    EXPECT_EQ(wrapSub(uint64_t{0}, uint64_t{1}), kMaxUnsigned);
}

TEST(WrapTest, ProductsWrap) {
    EXPECT_EQ(wrapMul(6, 7), 42);
    EXPECT_EQ(wrapMul(1000, 10000000), 1410065408);
    EXPECT_EQ(wrapMul(uint64_t{400000}, kMaxUnsigned), kMaxUnsigned - 399999);
    EXPECT_EQ(wrapMul(kMin64, int64_t{-1}), kMin64);
}

TEST(WrapTest, QuotientsAreTruncatedTowardsZero) {
    EXPECT_EQ(wrapDiv(7, 2), 3);
    EXPECT_EQ(wrapDiv(-7, 2), -3);
    EXPECT_EQ(wrapDiv(kMaxUnsigned, uint64_t{10}), 1844674407370955161U);
}

TEST(WrapTest, ADivisionByZeroGivesZero) {
    EXPECT_EQ(wrapDiv(7, 0), 0);
    EXPECT_EQ(wrapDiv(uint64_t{7}, uint64_t{0}), 0U);
    EXPECT_EQ(wrapDiv(kMin64, int64_t{0}), 0);
}

TEST(WrapTest, TheMostNegativeNumberDividedByMinusOneIsItself) {
    EXPECT_EQ(wrapDiv(kMin32, -1), kMin32);
    EXPECT_EQ(wrapDiv(kMin64, int64_t{-1}), kMin64);
    EXPECT_EQ(wrapDiv(kMax32, -1), -kMax32);
}

}  // namespace
}  // namespace android::ogm
