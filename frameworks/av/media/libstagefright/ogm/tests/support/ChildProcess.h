// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "EventLog.h"

/** Runs code that may end the process, or may never end, in a separate process. */
namespace android::ogm::test {

struct ChildResult {
    enum class End {
        kReturned,
        kAborted,
        /** It has used up its processor time. */
        kOutOfTime,
        kOther,
    };
    End end;
    /** The fatal line that was logged before the end. */
    std::optional<LogLine> fatal;

    bool operator==(const ChildResult& other) const;
};

std::ostream& operator<<(std::ostream& stream, const ChildResult& result);

/** The result of an assertion that logs `text` with `tag`. */
ChildResult abortedWith(std::string tag, std::string text);
/** The result of code that does not end within its processor time. */
ChildResult outOfTime();
ChildResult returned();

/**
 * Calls `body` in a copy of this process. The limit is processor time, so a call that ends does so
 * even on a busy machine.
 */
ChildResult runInChild(const std::function<void()>& body,
                       std::chrono::milliseconds processorTime = std::chrono::seconds(20));

}  // namespace android::ogm::test
