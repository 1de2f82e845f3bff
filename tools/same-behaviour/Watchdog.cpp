// SPDX-License-Identifier: Apache-2.0
#include "Watchdog.h"

#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>
#include <ctime>

#include "Record.h"

namespace android::ogm::trace {

namespace {

constexpr int64_t kMicrosecondsASecond = 1'000'000;
constexpr int64_t kTickUs = 100'000;
/** Calls that end never compute this long between two events. */
constexpr int64_t kMaxComputingUs = 2 * kMicrosecondsASecond;
/** If a process uses less time than this for many ticks, it waits for something that never comes.
 */
constexpr int64_t kWaitingUs = 1000;
constexpr int kMaxWaitingTicks = 30;
/** Sessions need only a small part of it. */
constexpr int64_t kMaxMemoryKiB = int64_t{3} << 19;

uint64_t gLastEvents = 0;
int64_t gTimeOfLastEventUs = 0;
int64_t gTimeOfLastTickUs = 0;
int gWaitingTicks = 0;

int64_t processorTimeUs() {
    timespec time{};
    (void)clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return time.tv_sec * kMicrosecondsASecond + time.tv_nsec / 1000;
}

bool usesTooMuchMemory() {
    rusage usage{};
    (void)getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss > kMaxMemoryKiB;
}

void onTick(int /*signal*/) {
    const int64_t nowUs = processorTimeUs();
    const bool waits = nowUs - gTimeOfLastTickUs < kWaitingUs;
    gTimeOfLastTickUs = nowUs;
    if (recordedEvents() != gLastEvents) {
        gLastEvents = recordedEvents();
        gTimeOfLastEventUs = nowUs;
        gWaitingTicks = 0;
        return;
    }
    gWaitingTicks = waits ? gWaitingTicks + 1 : 0;
    if (nowUs - gTimeOfLastEventUs > kMaxComputingUs || gWaitingTicks > kMaxWaitingTicks ||
        usesTooMuchMemory()) {
        _exit(kStoodStill);
    }
}

}  // namespace

void watchThisProcess() {
    gTimeOfLastEventUs = gTimeOfLastTickUs = processorTimeUs();
    struct sigaction action {};
    action.sa_handler = onTick;
    action.sa_flags = SA_RESTART;
    (void)sigaction(SIGALRM, &action, nullptr);
    const itimerval interval{{0, kTickUs}, {0, kTickUs}};
    (void)setitimer(ITIMER_REAL, &interval, nullptr);
}

}  // namespace android::ogm::trace
