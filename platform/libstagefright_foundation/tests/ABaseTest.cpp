// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ABase.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

class Uncopyable {
  public:
    Uncopyable() = default;

  private:
    DISALLOW_EVIL_CONSTRUCTORS(Uncopyable);
};

TEST(ABase, DisallowEvilConstructorsForbidsCopyingAndAssignment) {
    EXPECT_TRUE(std::is_default_constructible_v<Uncopyable>);
    EXPECT_FALSE(std::is_copy_constructible_v<Uncopyable>);
    EXPECT_FALSE(std::is_copy_assignable_v<Uncopyable>);
}

}  // namespace
