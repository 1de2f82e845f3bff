// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

namespace android::ogm::trace {

/** Random choices that depend only on the seed: the same on every machine. */
class Random {
  public:
    explicit Random(uint64_t seed) : mEngine(seed) {}

    uint64_t bits() { return mEngine(); }
    /** Returns 0 to `count` - 1; 0 for a count of 0. */
    size_t below(size_t count) { return count == 0 ? 0 : mEngine() % count; }
    size_t between(size_t least, size_t most) { return least + below(most - least + 1); }
    bool oneIn(size_t count) { return below(count) == 0; }
    bool percent(size_t share) { return below(100) < share; }
    uint8_t byte() { return static_cast<uint8_t>(mEngine() & 0xFF); }

    template <typename Value, size_t count>
    const Value& oneOf(const Value (&values)[count]) {
        return values[below(count)];
    }

  private:
    std::mt19937_64 mEngine;
};

}  // namespace android::ogm::trace
