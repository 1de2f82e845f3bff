// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>

namespace ogmprobe {

/**
 * Detects that a plug-in is stuck: nothing moves for the given time (no data-source read finishes,
 * no call returns), or it returns nothing for many times as long.
 */
class StandstillWatch {
  public:
    using Duration = std::chrono::duration<double>;

    enum class State {
        kAlive,
        /** Nothing moves. */
        kStandsStill,
        /** It moves but returns nothing. */
        kNeverEnds,
    };

    /** How many times longer than the limit it may take while something moves. */
    static constexpr int kBusyFactor = 10;

    /** A limit of 0 means none. `signsOfLife` is the current count. */
    StandstillWatch(Duration limit, uint64_t signsOfLife) : mLimit(limit), mSigns(signsOfLife) {}

    /** To be called after each stretch of time. */
    State observe(Duration time, uint64_t signsOfLife) {
        mStill = signsOfLife == mSigns ? mStill + time : Duration{};
        mSigns = signsOfLife;
        mSilent += time;
        if (mLimit.count() <= 0) {
            return State::kAlive;
        }
        if (mStill > mLimit) {
            return State::kStandsStill;
        }
        return mSilent > mLimit * kBusyFactor ? State::kNeverEnds : State::kAlive;
    }

  private:
    const Duration mLimit;
    uint64_t mSigns;
    Duration mStill{};
    Duration mSilent{};
};

}  // namespace ogmprobe
