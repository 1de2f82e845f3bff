// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <android/log.h>
#include <sys/types.h>

#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <ostream>
#include <string>
#include <variant>
#include <vector>

namespace android::ogm::test {

struct LogLine {
    int priority;
    std::string tag;
    std::string text;

    bool operator==(const LogLine& other) const;
};

struct ReadCall {
    int64_t offset;
    size_t size;
    ssize_t result;

    bool operator==(const ReadCall& other) const;
};

using Event = std::variant<LogLine, ReadCall>;

std::vector<Event> joinedEvents(std::initializer_list<std::vector<Event>> parts);

std::ostream& operator<<(std::ostream& stream, const LogLine& line);
std::ostream& operator<<(std::ostream& stream, const ReadCall& call);

inline constexpr char kExtractorTag[] = "OgmExtractor";

/** Lines with the tag of the extractor. */
LogLine debugLine(std::string text);
LogLine infoLine(std::string text);
LogLine warningLine(std::string text);
LogLine errorLine(std::string text);

/** What printf would write. */
std::string formatted(const char* format, ...) __attribute__((format(printf, 1, 2)));

/** Log lines and data-source reads of all threads, in the order in which they happened. */
class EventLog {
  public:
    void add(Event event);
    void clear();

    std::vector<Event> events() const;
    std::vector<LogLine> lines() const;
    std::vector<ReadCall> reads() const;
    size_t count(const LogLine& line) const;
    bool holds(const LogLine& line) const { return count(line) > 0; }
    /** The lines whose text begins with `prefix`. */
    std::vector<LogLine> linesBeginning(const std::string& prefix) const;

  private:
    mutable std::mutex mMutex;
    std::vector<Event> mEvents;
};

/** Collects log lines during its lifetime. One at a time, because the logger is global. */
class LogCapture {
  public:
    explicit LogCapture(EventLog& events);
    ~LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
};

}  // namespace android::ogm::test
