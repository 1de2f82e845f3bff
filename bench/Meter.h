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

// The names of the results' counters in JSON.
inline constexpr char kItems[] = "items";
inline constexpr char kBestNs[] = "best_ns_per_item";
inline constexpr char kMeanNs[] = "mean_ns_per_item";
inline constexpr char kThroughput[] = "best_bytes_per_second";
inline constexpr char kInstructions[] = "instructions_per_item";
inline constexpr char kAllocations[] = "allocations_per_item";
inline constexpr char kReadsPerPage[] = "reads_per_page";
inline constexpr char kMedianUs[] = "median_us";
inline constexpr char kNinetyFifthUs[] = "95th_percentile_us";
inline constexpr char kPeakKiB[] = "peak_kib";

/**
 * Returns the nanoseconds of processor time that this thread has used so far: other programs
 * disturb it less than a clock.
 */
inline int64_t threadTimeNs() {
    constexpr int64_t kNsPerSecond = 1'000'000'000;
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return int64_t{time.tv_sec} * kNsPerSecond + time.tv_nsec;
}

/**
 * Measures time, instructions and allocations, sums them over the rounds and reports them per
 * item, a buffer or a packet. Also reports the time of the best round, which other programs have
 * disturbed least:
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
        pause(items);
        endRound();
    }

    /** Like stop(), but the round continues with the next start(). */
    void pause(uint64_t items) {
        const int64_t timeNs = std::max<int64_t>(1, threadTimeNs() - mTimeAtStart);
        if (const auto count = instructionCount(); count && mInstructionsAtStart) {
            mInstructions = mInstructions.value_or(0) + (*count - *mInstructionsAtStart);
        }
        mAllocations += allocationCount() - mAllocationsAtStart;
        mRoundItems += items;
        mRoundNs += timeNs;
    }

    void endRound() {
        ++mRounds;
        mItems += mRoundItems;
        mTimeNs += mRoundNs;
        if (mBestNs == 0 || mRoundNs < mBestNs) {
            mBestNs = mRoundNs;
            mBestItems = mRoundItems;
        }
        mRoundItems = 0;
        mRoundNs = 0;
    }

    /** Reports a throughput too if `bytesPerRound` is not 0. */
    void report(benchmark::State& state, uint64_t bytesPerRound = 0) const {
        const auto items = static_cast<double>(mItems);
        const auto bestNs = static_cast<double>(mBestNs);
        state.counters[kItems] = items / static_cast<double>(mRounds);
        state.counters[kBestNs] = bestNs / static_cast<double>(mBestItems);
        state.counters[kMeanNs] = static_cast<double>(mTimeNs) / items;
        state.counters[kAllocations] = static_cast<double>(mAllocations) / items;
        if (mInstructions) {
            state.counters[kInstructions] = static_cast<double>(*mInstructions) / items;
        }
        if (bytesPerRound != 0) {
            constexpr double kNsPerSecond = 1e9;
            state.counters[kThroughput] =
                    static_cast<double>(bytesPerRound) / bestNs * kNsPerSecond;
        }
    }

  private:
    int64_t mTimeAtStart = 0;
    uint64_t mAllocationsAtStart = 0;
    std::optional<uint64_t> mInstructionsAtStart;

    uint64_t mRounds = 0;
    int64_t mRoundNs = 0;
    uint64_t mRoundItems = 0;
    int64_t mTimeNs = 0;
    int64_t mBestNs = 0;
    uint64_t mBestItems = 0;
    uint64_t mAllocations = 0;
    std::optional<uint64_t> mInstructions;
    uint64_t mItems = 0;
};

}  // namespace android::ogm::bench
