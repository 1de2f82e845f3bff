// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <random>

namespace android::ogm::test {

/** Random numbers, the same in every run. */
class Random {
  public:
    explicit Random(uint64_t seed = 1) : mNumbers(seed) {}

    /** A number below `count`. */
    uint64_t below(uint64_t count) { return mNumbers() % count; }
    /** True in `part` of `whole` cases. */
    bool happens(uint64_t part, uint64_t whole) { return below(whole) < part; }

  private:
    std::mt19937_64 mNumbers;
};

}  // namespace android::ogm::test
