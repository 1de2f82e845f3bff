// SPDX-License-Identifier: Apache-2.0
#include <utils/Condition.h>

#include <time.h>

#include <algorithm>
#include <limits>

namespace android {

namespace {

constexpr nsecs_t kNsPerSecond = 1000000000;

/** The point on the monotonic clock that lies `reltime` ahead, at latest the last one there is. */
timespec deadline(nsecs_t reltime) {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    const nsecs_t nowNs = now.tv_sec * kNsPerSecond + now.tv_nsec;
    const nsecs_t wait =
            std::clamp<nsecs_t>(reltime, 0, std::numeric_limits<nsecs_t>::max() - nowNs);
    timespec end;
    end.tv_sec = (nowNs + wait) / kNsPerSecond;
    end.tv_nsec = (nowNs + wait) % kNsPerSecond;
    return end;
}

}  // namespace

Condition::Condition() {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&mCond, &attributes);
    pthread_condattr_destroy(&attributes);
}

status_t Condition::waitRelative(Mutex& mutex, nsecs_t reltime) {
    const timespec end = deadline(reltime);
    return -pthread_cond_timedwait(&mCond, &mutex.mMutex, &end);
}

}  // namespace android
