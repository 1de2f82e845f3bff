// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <pthread.h>

#include <utils/Errors.h>
#include <utils/Mutex.h>
#include <utils/Timers.h>

namespace android {

/**
 * A POSIX condition variable on the monotonic clock. A wait may also end without a signal, so the
 * caller looks at the awaited state again each time.
 */
class Condition {
  public:
    Condition();
    ~Condition() { pthread_cond_destroy(&mCond); }

    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    /** Waits with `mutex` released, which the caller holds before and after. 0 or negative errno.
     */
    status_t wait(Mutex& mutex) { return -pthread_cond_wait(&mCond, &mutex.mMutex); }

    /** As wait(), for at most `reltime`; gives TIMED_OUT when that is over. */
    status_t waitRelative(Mutex& mutex, nsecs_t reltime);

    /** Wakes one waiting thread. */
    void signal() { pthread_cond_signal(&mCond); }

    /** Wakes all waiting threads. */
    void broadcast() { pthread_cond_broadcast(&mCond); }

  private:
    pthread_cond_t mCond;
};

}  // namespace android
