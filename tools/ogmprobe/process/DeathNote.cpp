// SPDX-License-Identifier: Apache-2.0
#include "process/DeathNote.h"

#include <fmt/core.h>
#include <seccomp.h>
#include <sys/wait.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "process/Sandbox.h"

namespace ogmprobe {
namespace {

std::string signalText(int number) {
    const char* description = sigdescr_np(number);
    const char* name = sigabbrev_np(number);
    if (description == nullptr || name == nullptr) {
        return fmt::format("signal {}", number);
    }
    return fmt::format("{} (SIG{})", description, name);
}

std::string systemCallName(int number) {
    struct Free {
        void operator()(char* text) const { std::free(text); }
    };
    const std::unique_ptr<char, Free> name(
            seccomp_syscall_resolve_num_arch(SCMP_ARCH_NATIVE, number));
    return name != nullptr ? name.get() : fmt::format("number {}", number);
}

std::string textOf(const DeathNote& note) {
    return {note.text.data(), strnlen(note.text.data(), note.text.size())};
}

std::string causeByStatus(int waitStatus) {
    if (WIFSIGNALED(waitStatus)) {
        return signalText(WTERMSIG(waitStatus));
    }
    return fmt::format("it ended the process with exit code {}", WEXITSTATUS(waitStatus));
}

std::string died(PluginFunction function, const std::string& cause) {
    return fmt::format("the extractor died{}: {}", inFunction(function), cause);
}

}  // namespace

std::string inFunction(PluginFunction function) {
    if (function == PluginFunction::kNone || function > lastOf(function)) {
        return "";
    }
    return fmt::format(" in {}", functionName(function));
}

std::string deathSentence(const DeathNote& note, PluginFunction function, int waitStatus) {
    const int number = note.number;
    switch (note.cause) {
        case DeathNote::Cause::kAssertion:
        case DeathNote::Cause::kException:
            return died(function, textOf(note));
        case DeathNote::Cause::kSignal:
            return died(function, signalText(number));
        case DeathNote::Cause::kForbiddenCall:
            return fmt::format("the extractor made a forbidden system call{}: {}",
                               inFunction(function), systemCallName(number));
        case DeathNote::Cause::kOutOfMemory:
            return died(function, fmt::format("out of memory (the limit is {} MiB)",
                                              kMemoryLimitBytes >> 20));
        case DeathNote::Cause::kEndlessReading:
            return fmt::format("the extractor is stuck{}: {}", inFunction(function), textOf(note));
        case DeathNote::Cause::kNone:
            break;
    }
    return died(function, causeByStatus(waitStatus));
}

}  // namespace ogmprobe
