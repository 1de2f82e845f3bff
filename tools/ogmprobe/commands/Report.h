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
 * What went wrong with one file, or with the whole run. Each entry is printed at once and kept for
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

    /** The largest code of all errors; `kDone` without any. */
    ExitCode worst() const { return mWorst; }

    const std::vector<Failure>& errors() const { return mErrors; }

    /** Lists of {"exit_code", "message"} and {"message"}, empty ones included. */
    nlohmann::ordered_json errorsJson() const;
    nlohmann::ordered_json warningsJson() const;

    /** Calls the function; a `ProbeError` that it throws becomes an entry. */
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
