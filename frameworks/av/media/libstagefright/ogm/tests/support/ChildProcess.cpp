// SPDX-License-Identifier: Apache-2.0
#include "ChildProcess.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace android::ogm::test {
namespace {

// Only for a child that sleeps forever: one that works runs out of processor time first.
constexpr unsigned kLongestSleepSeconds = 300;

int gReportPipe = -1;

void writeAll(const void* data, size_t size) {
    const char* next = static_cast<const char*>(data);
    while (size > 0) {
        const ssize_t written = write(gReportPipe, next, size);
        if (written <= 0) {
            return;
        }
        next += written;
        size -= static_cast<size_t>(written);
    }
}

/** Sends the tag and the text of a fatal line, each with its final zero. */
void reportFatalLine(const __android_log_message* message) {
    if (message->priority == ANDROID_LOG_FATAL) {
        writeAll(message->tag, strlen(message->tag) + 1);
        writeAll(message->message, strlen(message->message) + 1);
    }
}

void limitProcessorTime(std::chrono::milliseconds limit) {
    itimerval timer{};
    timer.it_value.tv_sec = limit.count() / 1000;
    timer.it_value.tv_usec = limit.count() % 1000 * 1000;
    signal(SIGPROF, SIG_DFL);
    signal(SIGALRM, SIG_DFL);
    setitimer(ITIMER_PROF, &timer, nullptr);
    alarm(kLongestSleepSeconds);
}

[[noreturn]] void runAsChild(const std::function<void()>& body, std::chrono::milliseconds limit) {
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    // Hides the text that the expected assertion writes to standard error.
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDERR_FILENO);
    __android_log_set_logger(reportFatalLine);
    limitProcessorTime(limit);
    try {
        body();
    } catch (...) {
        _exit(1);
    }
    _exit(0);
}

std::string readToEnd(int pipe) {
    std::string text;
    std::array<char, 1024> chunk;
    for (;;) {
        const ssize_t count = read(pipe, chunk.data(), chunk.size());
        if (count <= 0) {
            return text;
        }
        text.append(chunk.data(), static_cast<size_t>(count));
    }
}

std::optional<LogLine> fatalLineOf(const std::string& report) {
    const size_t tagEnd = report.find('\0');
    if (tagEnd == std::string::npos) {
        return std::nullopt;
    }
    return LogLine{ANDROID_LOG_FATAL, report.substr(0, tagEnd), report.c_str() + tagEnd + 1};
}

ChildResult::End endOf(int status) {
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0) {
        return ChildResult::End::kReturned;
    }
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT) {
        return ChildResult::End::kAborted;
    }
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGPROF) {
        return ChildResult::End::kOutOfTime;
    }
    return ChildResult::End::kOther;
}

}  // namespace

bool ChildResult::operator==(const ChildResult& other) const {
    return end == other.end && fatal == other.fatal;
}

std::ostream& operator<<(std::ostream& stream, const ChildResult& result) {
    constexpr const char* kEnds[] = {"returned", "aborted", "ran out of time",
                                     "ended in another way"};
    stream << kEnds[static_cast<size_t>(result.end)];
    if (result.fatal) {
        stream << ", " << *result.fatal;
    }
    return stream;
}

ChildResult abortedWith(std::string tag, std::string text) {
    return {ChildResult::End::kAborted,
            LogLine{ANDROID_LOG_FATAL, std::move(tag), std::move(text)}};
}

ChildResult outOfTime() {
    return {ChildResult::End::kOutOfTime, std::nullopt};
}

ChildResult returned() {
    return {ChildResult::End::kReturned, std::nullopt};
}

ChildResult runInChild(const std::function<void()>& body, std::chrono::milliseconds processorTime) {
    int pipeEnds[2];
    if (pipe2(pipeEnds, O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot make a pipe");
    }
    const pid_t child = fork();
    if (child < 0) {
        throw std::runtime_error("cannot make a process");
    }
    if (child == 0) {
        close(pipeEnds[0]);
        gReportPipe = pipeEnds[1];
        runAsChild(body, processorTime);
    }
    close(pipeEnds[1]);
    const std::string report = readToEnd(pipeEnds[0]);
    close(pipeEnds[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return {endOf(status), fatalLineOf(report)};
}

}  // namespace android::ogm::test
