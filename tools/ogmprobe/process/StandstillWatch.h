// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>

namespace ogmprobe {

/**
 * Detects that a plug-in is stuck: for the given time no data-source read finishes and no call
 * returns, or for many times as long it returns nothing.
 */
class StandstillWatch {
  public:
    using Duration = std::chrono::duration<double>;

    enum class State {
        kAlive,
        /** No read finishes and no call returns. */
        kStandsStill,
        /** It reads, but returns nothing. */
        kNeverEnds,
    };

    /** How many times the limit it may take while reads finish or calls return. */
    static constexpr int kBusyFactor = 10;

    /** A limit of 0 means none. `signsOfLife` is the current count. */
    StandstillWatch(Duration limit, uint64_t signsOfLife) : mLimit(limit), mSigns(signsOfLife) {}

    /** To be called after each period of time. */
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
