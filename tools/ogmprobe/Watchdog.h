// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace ogmprobe {

/**
 * Ends the process when the plug-in is stuck: when nothing at all moves in a call (no data-source
 * read finishes, the call does not return) for the given time, or when a single call goes on
 * reading for many times as long.
 */
class Watchdog {
  public:
    using Duration = std::chrono::duration<double>;

    /** How much longer than the limit a single call may go on as long as its reads finish. */
    static constexpr int kBusyFactor = 10;

    /** A limit of 0 watches nothing. */
    explicit Watchdog(Duration limit);
    ~Watchdog();

    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

  private:
    void watch();
    bool waitForEnd(Duration time);

    const Duration mLimit;
    std::mutex mMutex;
    std::condition_variable mEnding;
    bool mEnded = false;
    std::thread mThread;
};

}  // namespace ogmprobe
