// SPDX-License-Identifier: Apache-2.0
#include "Watchdog.h"

#include <algorithm>
#include <cstdint>

#include "Death.h"
#include "PluginCall.h"

namespace ogmprobe {
namespace {

using Clock = std::chrono::steady_clock;

constexpr Watchdog::Duration kLongestNap{0.25};

/** Remembers since when a count has stayed the same. */
class Standstill {
  public:
    Watchdog::Duration observe(uint64_t count, Clock::time_point now) {
        if (count != mCount) {
            mCount = count;
            mSince = now;
        }
        return now - mSince;
    }

  private:
    uint64_t mCount = 0;
    Clock::time_point mSince = Clock::now();
};

}  // namespace

Watchdog::Watchdog(Duration limit) : mLimit(limit) {
    if (mLimit.count() > 0) {
        mThread = std::thread(&Watchdog::watch, this);
    }
}

Watchdog::~Watchdog() {
    {
        const std::lock_guard lock(mMutex);
        mEnded = true;
    }
    mEnding.notify_one();
    if (mThread.joinable()) {
        mThread.join();
    }
}

void Watchdog::watch() {
    Standstill life;
    Standstill call;
    while (!waitForEnd(std::min(mLimit / 4, kLongestNap))) {
        const auto now = Clock::now();
        const Duration still = life.observe(PluginCall::signsOfLife(), now);
        const Duration busy = call.observe(PluginCall::calls(), now);
        const char* function = PluginCall::current();
        if (function == nullptr) {
            continue;
        }
        if (still > mLimit) {
            death::extractorIsStuck(function, "no read of the file and no buffer came to an end");
        }
        if (busy > mLimit * kBusyFactor) {
            death::extractorIsStuck(function, "it reads the file without end");
        }
    }
}

bool Watchdog::waitForEnd(Duration time) {
    std::unique_lock lock(mMutex);
    return mEnding.wait_for(lock, time, [this] { return mEnded; });
}

}  // namespace ogmprobe
