// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ogmprobe::test {

/** How a program ended and what it wrote. */
struct ProcessResult {
    /** Less than 0: the signal that ended it. */
    int exitCode = -1;
    std::string out;
    std::string err;
};

enum class StandardStream {
    /** Into the result. */
    kCaptured,
    /** A pipe that nobody reads. */
    kClosedPipe,
    /** A device that is always full. */
    kFullDevice,
    /** A terminal; what is shown on it goes into the result. */
    kTerminal,
};

/** How to run a program. */
struct ProcessSetup {
    std::vector<std::pair<std::string, std::string>> environment;
    /** What standard input has, through a pipe. */
    std::string in;
    StandardStream out = StandardStream::kCaptured;
    StandardStream err = StandardStream::kCaptured;
    /** Both standard streams go into `out` of the result, in the order of writing. */
    bool joined = false;
    /** Of a terminal; 0: it does not say. */
    uint16_t columns = 0;
    /** No file may grow larger. */
    std::optional<uint64_t> fileSizeLimit;
    /** Called with the program's process while it runs. */
    std::function<void(pid_t)> meanwhile;
};

/** Whether there are terminals here; a container may have none. */
bool canOpenTerminal();

/** Whether the system calls of a process can be filtered here; an emulator cannot. */
bool canFilterSystemCalls();

/** Runs the program, of this build, and waits for its end. */
ProcessResult runProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessSetup& setup = {});

/** The same with `ogmprobe`. */
ProcessResult runProbe(const std::vector<std::string>& arguments, const ProcessSetup& setup = {});

}  // namespace ogmprobe::test
