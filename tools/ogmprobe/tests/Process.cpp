// SPDX-License-Identifier: Apache-2.0
#include "Process.h"

#include <fcntl.h>
#include <linux/seccomp.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace ogmprobe::test {
namespace {

std::string fromEnvironment(const char* name, const char* otherwise) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : otherwise;
}

std::vector<const char*> commandOf(const std::string& program) {
    if (testedBuild().isEmulated()) {
        return {testedBuild().emulator.c_str(), program.c_str()};
    }
    return {program.c_str()};
}

/** The two ends of a standard stream: the program's end, and the end that is read here (or -1). */
struct Ends {
    int program = -1;
    int reader = -1;
};

Ends connect(StandardStream kind, uint16_t columns) {
    int ends[2] = {-1, -1};
    switch (kind) {
        case StandardStream::kCaptured:
        case StandardStream::kClosedPipe:
            if (pipe2(ends, O_CLOEXEC) != 0) {
                throw std::runtime_error("no pipe");
            }
            break;
        case StandardStream::kFullDevice:
            return {open("/dev/full", O_WRONLY | O_CLOEXEC), -1};
        case StandardStream::kTerminal: {
            const winsize size = {24, columns, 0, 0};
            if (openpty(&ends[0], &ends[1], nullptr, nullptr, &size) != 0) {
                throw std::runtime_error("no terminal");
            }
            break;
        }
    }
    if (kind == StandardStream::kClosedPipe) {
        close(ends[0]);
        return {ends[1], -1};
    }
    return {ends[1], ends[0]};
}

// When the last writer is gone, reading a terminal fails instead of reaching the end.
void readToEnd(int descriptor, std::string& text) {
    char bytes[4096];
    ssize_t got = 0;
    while (descriptor >= 0 && (got = read(descriptor, bytes, sizeof(bytes))) > 0) {
        text.append(bytes, static_cast<size_t>(got));
    }
    close(descriptor);
}

/** A pipe that a thread fills. */
class StandardInput {
  public:
    explicit StandardInput(const std::string& bytes) {
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw std::runtime_error("no pipe");
        }
        mProgramEnd = ends[0];
        mWriterEnd = ends[1];
        mBytes = &bytes;
    }

    int programEnd() const { return mProgramEnd; }

    /** For this process, once the program has its end. */
    void startWriting() {
        close(mProgramEnd);
        mWriter = std::thread([this] {
            size_t done = 0;
            ssize_t written = 0;
            while (done < mBytes->size() && (written = write(mWriterEnd, mBytes->data() + done,
                                                             mBytes->size() - done)) > 0) {
                done += static_cast<size_t>(written);
            }
            close(mWriterEnd);
        });
    }
    void finish() { mWriter.join(); }

  private:
    int mProgramEnd = -1;
    int mWriterEnd = -1;
    const std::string* mBytes = nullptr;
    std::thread mWriter;
};

[[noreturn]] void execProgram(const std::string& program, const std::vector<std::string>& arguments,
                              const ProcessSetup& setup, int in, int out, int err) {
    dup2(in, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(setup.joined ? out : err, STDERR_FILENO);
    if (setup.fileSizeLimit) {
        const rlimit limit = {*setup.fileSizeLimit, *setup.fileSizeLimit};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    for (const auto& [name, value] : setup.environment) {
        setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<const char*> argv = commandOf(program);
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    argv.push_back(nullptr);
    execvp(argv.front(), const_cast<char* const*>(argv.data()));
    _exit(127);
}

}  // namespace

TestedBuild buildFromEnvironment() {
    return {
            fromEnvironment("TESTED_PROGRAM", OGMPROBE_PROGRAM),
            fromEnvironment("TESTED_FAKE_PLUGIN", OGMPROBE_FAKE_PLUGIN),
            fromEnvironment("TESTED_OWN_PLUGIN", OGMPROBE_OWN_PLUGIN),
            fromEnvironment("TESTED_OTHER_LIBRARY", OGMPROBE_OTHER_LIBRARY),
            fromEnvironment("TESTED_EMULATOR", OGMPROBE_EMULATOR),
            fromEnvironment("TESTED_SANITIZER", OGMPROBE_SANITIZER),
    };
}

const TestedBuild& testedBuild() {
    static const TestedBuild build = buildFromEnvironment();
    return build;
}

bool canOpenTerminal() {
    int ends[2] = {-1, -1};
    if (openpty(&ends[0], &ends[1], nullptr, nullptr, nullptr) != 0) {
        return false;
    }
    close(ends[0]);
    close(ends[1]);
    return true;
}

bool canFilterSystemCalls() {
    if (testedBuild().isEmulated()) {
        return false;
    }
    // If filters are allowed, this call fails because of the filter's address.
    return syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, 0, nullptr) != 0 && errno == EFAULT;
}

ProcessResult runProbe(const std::vector<std::string>& arguments, const ProcessSetup& setup) {
    return runProgram(testedBuild().program, arguments, setup);
}

ProcessResult runProgram(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessSetup& setup) {
    // A program that does not read its input to the end must not end the test.
    std::signal(SIGPIPE, SIG_IGN);
    StandardInput in(setup.in);
    const Ends out = connect(setup.out, setup.columns);
    const Ends err = connect(setup.err, setup.columns);
    const pid_t child = fork();
    if (child == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        execProgram(program, arguments, setup, in.programEnd(), out.program, err.program);
    }
    in.startWriting();
    close(out.program);
    close(err.program);
    ProcessResult result;
    std::thread errReader(readToEnd, err.reader, std::ref(result.err));
    std::thread outReader(readToEnd, out.reader, std::ref(result.out));
    if (setup.meanwhile) {
        setup.meanwhile(child);
    }
    outReader.join();
    errReader.join();
    in.finish();
    int status = 0;
    waitpid(child, &status, 0);
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    return result;
}

}  // namespace ogmprobe::test
