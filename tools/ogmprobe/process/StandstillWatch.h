// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>

namespace ogmprobe {

/**
 * Tells when a plug-in that is being waited for is stuck: when nothing at all moves for the given
 * time (no data-source read finishes, no call returns), or when for many times as long nothing
 * comes out of it.
 */
class StandstillWatch {
  public:
    using Duration = std::chrono::duration<double>;

    enum class State {
        kAlive,
        /** Nothing moves. */
        kStandsStill,
        /** It moves, and nothing comes out. */
        kNeverEnds,
    };

    /** How much longer than the limit it may go on as long as something moves. */
    static constexpr int kBusyFactor = 10;

    /** A limit of 0 is none. The watch begins with what is known of the signs of life. */
    StandstillWatch(Duration limit, uint64_t signsOfLife) : mLimit(limit), mSigns(signsOfLife) {}

    /** So much more time has gone by. */
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
