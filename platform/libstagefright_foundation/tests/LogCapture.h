// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/** A line of the log, as the logger gets it. */
struct LogLine {
    int priority;
    std::string tag;
    std::string message;
};

/** Collects all log lines during its lifetime instead of printing them. One at a time. */
class LogCapture {
  public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    const std::vector<LogLine>& lines() const;
};
