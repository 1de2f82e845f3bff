// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <stdexcept>
#include <string>

namespace ogmprobe {

/** The program's exit codes. With several files the largest one applies. */
enum class ExitCode : int {
    kDone = 0,
    /** The command line is wrong. */
    kUsage = 1,
    /** A file cannot be opened, read or written. */
    kFile = 2,
    /** The plug-in does not take the file. */
    kNotTaken = 3,
    /** The extractor died or got stuck. */
    kDied = 4,
    /** The compared files differ. */
    kDiffer = 5,
    /** The checked file plays with faults. */
    kFaults = 6,
    /** The checked file does not play. */
    kDoesNotPlay = 7,
};

constexpr ExitCode lastOf(ExitCode) {
    return ExitCode::kDoesNotPlay;
}

/** Ends the work on a file; `what()` is a sentence for users, without the file's name. */
class ProbeError : public std::runtime_error {
  public:
    ProbeError(ExitCode code, const std::string& message)
        : std::runtime_error(message), mCode(code) {}

    ExitCode code() const { return mCode; }

  private:
    ExitCode mCode;
};

}  // namespace ogmprobe
