// SPDX-License-Identifier: Apache-2.0
#include "InstructionCount.h"

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace android::ogm::bench {

namespace {

int openCounter() {
    perf_event_attr attributes{};
    attributes.size = sizeof(attributes);
    attributes.type = PERF_TYPE_HARDWARE;
    attributes.config = PERF_COUNT_HW_INSTRUCTIONS;
    attributes.exclude_kernel = 1;
    attributes.exclude_hv = 1;
    constexpr pid_t kThisThread = 0;
    constexpr int kAnyProcessor = -1;
    constexpr int kNoGroup = -1;
    return static_cast<int>(syscall(SYS_perf_event_open, &attributes, kThisThread, kAnyProcessor,
                                    kNoGroup, PERF_FLAG_FD_CLOEXEC));
}

}  // namespace

std::optional<uint64_t> instructionCount() {
    static const int counter = openCounter();
    uint64_t count = 0;
    if (counter < 0 || read(counter, &count, sizeof(count)) != sizeof(count)) {
        return std::nullopt;
    }
    return count;
}

}  // namespace android::ogm::bench
