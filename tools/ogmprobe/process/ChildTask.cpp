// SPDX-License-Identifier: Apache-2.0
#include "process/ChildTask.h"

#include <fcntl.h>
#include <fmt/core.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <thread>
#include <utility>

#include "ExitCode.h"
#include "files/LeftoverFiles.h"
#include "process/Sandbox.h"

namespace ogmprobe {
namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kPipeRead = 65536;

/** How long a process may take to end after its answer. */
constexpr auto kNap = std::chrono::milliseconds(1);
constexpr int kMaxWaits = 5000;

void requireStarted(bool success) {
    if (!success) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot start another process: {}", std::strerror(errno)));
    }
}

bool writeAnswer(int descriptor, const std::string& text) {
    for (size_t done = 0; done < text.size();) {
        const ssize_t written = ::write(descriptor, text.data() + done, text.size() - done);
        if (written <= 0) {
            return false;
        }
        done += static_cast<size_t>(written);
    }
    return true;
}

/** Ends this process with its parent, after its files are removed. */
void followParent(pid_t parent) {
    removeOwnLeftoverFilesOnTermination();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        _exit(static_cast<int>(ExitCode::kDied));
    }
}

[[noreturn]] void beChild(const ChildTask::Work& work, ChildTask::Rights rights) {
    bool isDone = false;
    try {
        if (rights == ChildTask::Rights::kSandboxed) {
            enterSandbox();
        }
        isDone = writeAnswer(kParentDescriptor, work());
    } catch (const std::exception&) {
        isDone = false;
    }
    _exit(static_cast<int>(isDone ? ExitCode::kDone : ExitCode::kDied));
}

}  // namespace

ChildTask::ChildTask(const Work& work, Rights rights, uint64_t maxBytes) : mMaxBytes(maxBytes) {
    std::array<int, 2> ends = {-1, -1};
    requireStarted(pipe2(ends.data(), O_CLOEXEC) == 0);
    mPipe = Descriptor(ends[0]);
    Descriptor writing(ends[1]);
    const pid_t parent = getpid();
    mProcess = fork();
    requireStarted(mProcess >= 0);
    if (mProcess == 0) {
        detach(parent, writing.get());
        if (rights == Rights::kAll) {
            followParent(parent);
        }
        beChild(work, rights);
    }
}

ChildTask::ChildTask(ChildTask&& other) noexcept
    : mMaxBytes(other.mMaxBytes),
      mPipe(std::move(other.mPipe)),
      mProcess(std::exchange(other.mProcess, -1)),
      mAnswer(std::move(other.mAnswer)),
      mEnding(std::move(other.mEnding)) {}

ChildTask::~ChildTask() {
    if (mProcess > 0) {
        ::kill(mProcess, SIGKILL);
        reap();
    }
}

bool ChildTask::readMore() {
    std::array<char, kPipeRead> bytes;
    const ssize_t got = ::read(mPipe.get(), bytes.data(), bytes.size());
    if (got < 0 && errno == EINTR) {
        return true;
    }
    if (got <= 0) {
        return false;
    }
    mAnswer.append(bytes.data(), static_cast<size_t>(got));
    return mAnswer.size() <= mMaxBytes;
}

std::optional<std::string> ChildTask::takeAnswer() {
    if (mAnswer.size() > mMaxBytes) {
        mEnding = fmt::format("its answer has more than {} bytes", mMaxBytes);
        return std::nullopt;
    }
    const int status = reapSoon();
    if (WIFEXITED(status) && WEXITSTATUS(status) == static_cast<int>(ExitCode::kDone)) {
        return std::move(mAnswer);
    }
    mEnding = WIFSIGNALED(status) ? fmt::format("signal {}", WTERMSIG(status))
                                  : fmt::format("exit code {}", WEXITSTATUS(status));
    return std::nullopt;
}

std::optional<std::string> ChildTask::waitForAnswer(std::chrono::milliseconds limit) {
    const auto end = Clock::now() + limit;
    while (true) {
        const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
        pollfd event = {mPipe.get(), POLLIN, 0};
        const int count = left > 0 ? poll(&event, 1, static_cast<int>(left)) : 0;
        if (count == 0) {
            mEnding = fmt::format("it took more than {:g} s",
                                  std::chrono::duration<double>(limit).count());
            return std::nullopt;
        }
        if (count > 0 && !readMore()) {
            return takeAnswer();
        }
    }
}

/** A process that has closed its end of the pipe must end soon. */
int ChildTask::reapSoon() {
    int status = 0;
    for (int i = 0; i < kMaxWaits; ++i) {
        if (waitpid(mProcess, &status, WNOHANG) == mProcess) {
            mProcess = -1;
            return status;
        }
        std::this_thread::sleep_for(kNap);
    }
    ::kill(mProcess, SIGKILL);
    return reap();
}

int ChildTask::reap() {
    int status = 0;
    while (waitpid(mProcess, &status, 0) < 0 && errno == EINTR) {
    }
    mProcess = -1;
    return status;
}

}  // namespace ogmprobe
