// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cstdint>
#include <optional>

#include "AllocationCount.h"
#include "InstructionCount.h"

namespace android::ogm::bench {

/**
 * Nanoseconds of processor time that this thread has used so far: what other programs do at the
 * same time counts less than on a clock.
 */
inline int64_t threadTimeNs() {
    constexpr int64_t kNsPerSecond = 1'000'000'000;
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return int64_t{time.tv_sec} * kNsPerSecond + time.tv_nsec;
}

/**
 * Time, instructions and allocations while something is measured, summed up over its rounds and
 * reported for each of its items, a buffer or a packet:
 *
 *     Meter meter;
 *     for (auto _ : state) { meter.start(); ...; meter.stop(items); }
 *     meter.report(state);
 */
class Meter {
  public:
    void start() {
        mAllocationsAtStart = allocationCount();
        mInstructionsAtStart = instructionCount();
        mTimeAtStart = threadTimeNs();
    }

    void stop(uint64_t items) {
        mTimeNs += threadTimeNs() - mTimeAtStart;
        if (const auto count = instructionCount(); count && mInstructionsAtStart) {
            mInstructions = mInstructions.value_or(0) + (*count - *mInstructionsAtStart);
        }
        mAllocations += allocationCount() - mAllocationsAtStart;
        mItems += items;
    }

    void report(benchmark::State& state) const {
        const auto items = static_cast<double>(mItems);
        state.counters["items"] =
                items / static_cast<double>(std::max<int64_t>(1, state.iterations()));
        state.counters["ns/item"] = static_cast<double>(mTimeNs) / items;
        state.counters["allocs/item"] = static_cast<double>(mAllocations) / items;
        if (mInstructions) {
            state.counters["instr/item"] = static_cast<double>(*mInstructions) / items;
        }
    }

  private:
    int64_t mTimeAtStart = 0;
    uint64_t mAllocationsAtStart = 0;
    std::optional<uint64_t> mInstructionsAtStart;

    int64_t mTimeNs = 0;
    uint64_t mAllocations = 0;
    std::optional<uint64_t> mInstructions;
    uint64_t mItems = 0;
};

}  // namespace android::ogm::bench
