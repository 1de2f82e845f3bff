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
    /** Negative: the signal that ended it. */
    int exitCode = -1;
    std::string out;
    std::string err;
};

enum class StandardStream {
    /** Collected in the result. */
    kCaptured,
    /** A pipe that nobody reads. */
    kClosedPipe,
    /** A device that is always full. */
    kFullDevice,
    /** A terminal, whose contents are collected in the result. */
    kTerminal,
};

/** How to run a program. */
struct ProcessSetup {
    std::vector<std::pair<std::string, std::string>> environment;
    /** Passed to standard input through a pipe. */
    std::string in;
    StandardStream out = StandardStream::kCaptured;
    StandardStream err = StandardStream::kCaptured;
    /** Both standard streams go into `out` of the result, in the order of writing. */
    bool joined = false;
    /** The terminal's columns; 0: unknown. */
    uint16_t columns = 0;
    /** No file may grow larger. */
    std::optional<uint64_t> fileSizeLimit;
    /** Called with the program's process while it runs. */
    std::function<void(pid_t)> meanwhile;
};

/** The files of the build that is tested. */
struct TestedBuild {
    std::string program;
    /** The plug-in that follows a script. */
    std::string fakePlugin;
    /** The plug-in beside the program. */
    std::string ownPlugin;
    /** A library that is no plug-in. */
    std::string otherLibrary;
    /** What runs the build's programs; empty if this machine does. */
    std::string emulator;
    /** Its sanitizers: "address-undefined", "thread" or none. */
    std::string sanitizer;

    bool isEmulated() const { return !emulator.empty(); }
    bool isSanitized() const { return !sanitizer.empty(); }
};

/** This program's build, or another one that the environment names in TESTED_PROGRAM and so on. */
TestedBuild buildFromEnvironment();

/** The same, as it was at the first call. */
const TestedBuild& testedBuild();

/** Whether this machine has terminals; a container may have none. */
bool canOpenTerminal();

/** Whether system calls can be filtered here; an emulator cannot do this. */
bool canFilterSystemCalls();

/** Runs the program, of the tested build, and waits for its end. */
ProcessResult runProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessSetup& setup = {});

/** The same with `ogmprobe`. */
ProcessResult runProbe(const std::vector<std::string>& arguments, const ProcessSetup& setup = {});

}  // namespace ogmprobe::test
