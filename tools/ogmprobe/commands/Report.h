// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <utility>
#include <vector>

#include "ExitCode.h"
#include "console/Console.h"

namespace ogmprobe {

/**
 * The errors and warnings of one file, or of the whole run. Each is printed at once and kept for
 * the machine-readable output.
 */
class Report {
  public:
    struct Failure {
        ExitCode code;
        std::string message;
    };

    /** The subject is the file's path, or empty for the whole run. */
    Report(Console& console, std::string subject)
        : mConsole(console), mSubject(std::move(subject)) {}

    void error(ExitCode code, const std::string& message);
    void error(const ProbeError& failure) { error(failure.code(), failure.what()); }
    void warning(const std::string& message);

    /** Returns the largest code of all errors; `kDone` without any. */
    ExitCode worst() const { return mWorst; }

    const std::vector<Failure>& errors() const { return mErrors; }

    /** Return lists of {"exit_code", "message"} and {"message"}, which may be empty. */
    nlohmann::ordered_json errorsJson() const;
    nlohmann::ordered_json warningsJson() const;

    /** Calls the function and reports a `ProbeError` that it throws. */
    template <typename Function>
    void guard(Function&& function) {
        try {
            std::forward<Function>(function)();
        } catch (const ProbeError& failure) {
            error(failure);
        }
    }

  private:
    Console& mConsole;
    const std::string mSubject;
    ExitCode mWorst = ExitCode::kDone;
    std::vector<Failure> mErrors;
    std::vector<std::string> mWarnings;
};

}  // namespace ogmprobe
