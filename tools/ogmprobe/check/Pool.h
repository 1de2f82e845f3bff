// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace ogmprobe::check {

/** Work on one of many files, in a process of its own. */
struct PoolTask {
    std::function<std::string()> work;
    /** The process is killed after that time; 0: never. */
    double mostSeconds = 0;
};

struct PoolAnswer {
    /** The number of the task, in the order in which tasks were asked for. */
    size_t task = 0;
    /** What the work gave; nothing if its process ended without. */
    std::optional<std::string> text;
    /** How it ended then: "signal 9", "it took more than 5 s". */
    std::string ending = {};
};

struct PoolRun {
    size_t jobs = 1;
    /** Gives the next task; nothing when there are no more. */
    std::function<std::optional<PoolTask>()> next;
    /** In the order in which the tasks end. What it throws ends the run, and all processes. */
    std::function<void(PoolAnswer)> done;
    /** Called a few times a second. */
    std::function<void()> tick;
};

/** Works off all tasks, so many at a time. There must be no other threads. */
void runPool(const PoolRun& run);

/** The processors that this process may use. */
size_t availableProcessors();

}  // namespace ogmprobe::check
