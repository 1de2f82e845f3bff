// SPDX-License-Identifier: Apache-2.0
#include "EventLog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace android::ogm::test {
namespace {

std::atomic<EventLog*> gCapturing{nullptr};

void captureMessage(const __android_log_message* message) {
    if (EventLog* events = gCapturing.load()) {
        events->add(LogLine{message->priority, message->tag, message->message});
    }
}

template <typename Kind>
std::vector<Kind> only(const std::vector<Event>& events) {
    std::vector<Kind> kept;
    for (const Event& event : events) {
        if (const auto* value = std::get_if<Kind>(&event)) {
            kept.push_back(*value);
        }
    }
    return kept;
}

}  // namespace

bool LogLine::operator==(const LogLine& other) const {
    return priority == other.priority && tag == other.tag && text == other.text;
}

bool ReadCall::operator==(const ReadCall& other) const {
    return offset == other.offset && size == other.size && result == other.result;
}

std::vector<Event> joinedEvents(std::initializer_list<std::vector<Event>> parts) {
    std::vector<Event> all;
    for (const std::vector<Event>& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

std::ostream& operator<<(std::ostream& stream, const LogLine& line) {
    constexpr char kLetters[] = "??VDIWEF";
    return stream << kLetters[line.priority & 7] << ' ' << line.tag << ": \"" << line.text << '"';
}

std::ostream& operator<<(std::ostream& stream, const ReadCall& call) {
    return stream << "read " << call.size << " at " << call.offset << " gives " << call.result;
}

LogLine debugLine(std::string text) {
    return {ANDROID_LOG_DEBUG, kExtractorTag, std::move(text)};
}

LogLine infoLine(std::string text) {
    return {ANDROID_LOG_INFO, kExtractorTag, std::move(text)};
}

LogLine warningLine(std::string text) {
    return {ANDROID_LOG_WARN, kExtractorTag, std::move(text)};
}

LogLine errorLine(std::string text) {
    return {ANDROID_LOG_ERROR, kExtractorTag, std::move(text)};
}

std::string formatted(const char* format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    return text;
}

void EventLog::add(Event event) {
    const std::lock_guard lock(mMutex);
    mEvents.push_back(std::move(event));
}

void EventLog::clear() {
    const std::lock_guard lock(mMutex);
    mEvents.clear();
}

std::vector<Event> EventLog::events() const {
    const std::lock_guard lock(mMutex);
    return mEvents;
}

std::vector<LogLine> EventLog::lines() const {
    return only<LogLine>(events());
}

std::vector<ReadCall> EventLog::reads() const {
    return only<ReadCall>(events());
}

size_t EventLog::count(const LogLine& line) const {
    size_t found = 0;
    for (const LogLine& candidate : lines()) {
        found += candidate == line ? 1 : 0;
    }
    return found;
}

std::vector<LogLine> EventLog::linesBeginning(const std::string& prefix) const {
    std::vector<LogLine> found;
    for (const LogLine& line : lines()) {
        if (line.text.compare(0, prefix.size(), prefix) == 0) {
            found.push_back(line);
        }
    }
    return found;
}

LogCapture::LogCapture(EventLog& events) {
    EventLog* none = nullptr;
    if (!gCapturing.compare_exchange_strong(none, &events)) {
        throw std::logic_error("the log is already being captured");
    }
    __android_log_set_logger(captureMessage);
}

LogCapture::~LogCapture() {
    gCapturing.store(nullptr);
    __android_log_set_logger(__android_log_stderr_logger);
}

}  // namespace android::ogm::test
