// SPDX-License-Identifier: Apache-2.0
#include "commands/Report.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace ogmprobe {

void Report::error(ExitCode code, const std::string& message) {
    mConsole.error(mSubject, message);
    mErrors.push_back({code, message});
    mWorst = std::max(mWorst, code);
}

void Report::warning(const std::string& message) {
    mConsole.warning(mSubject, message);
    mWarnings.push_back(message);
}

nlohmann::ordered_json Report::errorsJson() const {
    auto list = nlohmann::ordered_json::array();
    for (const Failure& failure : mErrors) {
        list.push_back(
                {{"exit_code", static_cast<int>(failure.code)}, {"message", failure.message}});
    }
    return list;
}

nlohmann::ordered_json Report::warningsJson() const {
    auto list = nlohmann::ordered_json::array();
    for (const std::string& message : mWarnings) {
        list.push_back({{"message", message}});
    }
    return list;
}

}  // namespace ogmprobe
