// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace ogmprobe::check {

/** The work on one of many files, in a separate process. */
struct PoolTask {
    std::function<std::string()> work;
    /** The process is killed after this time; 0: never. */
    double maxSeconds = 0;
};

struct PoolAnswer {
    /** The number of the task, in the order in which tasks were started. */
    size_t task = 0;
    /** The result of the work; nothing if its process ended without one. */
    std::optional<std::string> text;
    /** How it ended in that case: "signal 9", "it took more than 5 s". */
    std::string ending = {};
};

struct PoolRun {
    size_t jobs = 1;
    /** Returns the next task; nothing if there are no more. */
    std::function<std::optional<PoolTask>()> next;
    /** Called in the order in which tasks end. An exception ends the run and all processes. */
    std::function<void(PoolAnswer)> done;
    /** Called a few times a second. */
    std::function<void()> tick;
};

/** Runs all tasks, `jobs` at a time. There must be no other threads. */
void runPool(const PoolRun& run);

/** Returns the number of processors that this process may use. */
size_t availableProcessors();

}  // namespace ogmprobe::check
