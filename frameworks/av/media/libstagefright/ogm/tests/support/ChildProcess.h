// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <ostream>
#include <string>

#include "EventLog.h"

/** Runs what may end the process, or never ends, in a process of its own. */
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

/** What an assertion gives that logs `text` under `tag`. */
ChildResult abortedWith(std::string tag, std::string text);
/** What code gives that does not end within its processor time. */
ChildResult outOfTime();
ChildResult returned();

/**
 * Calls `body` in a copy of this process. The limit counts processor time, not time on the clock:
 * a busy machine does not make a call that ends look like one that does not.
 */
ChildResult runInChild(const std::function<void()>& body,
                       std::chrono::milliseconds processorTime = std::chrono::seconds(20));

}  // namespace android::ogm::test
