// SPDX-License-Identifier: Apache-2.0
#include "Death.h"

#include <android/log.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>

#include "ExitCode.h"
#include "Output.h"
#include "PluginCall.h"

// Everything here that a signal handler reaches uses static memory and async-signal-safe calls
// only.
namespace ogmprobe::death {
namespace {

struct FatalSignal {
    int number;
    const char* name;
};

constexpr std::array kFatalSignals = {
        FatalSignal{SIGSEGV, "segmentation fault"},
        FatalSignal{SIGBUS, "bus error"},
        FatalSignal{SIGFPE, "arithmetic exception"},
        FatalSignal{SIGILL, "illegal instruction"},
        FatalSignal{SIGTRAP, "trap"},
        FatalSignal{SIGABRT, "abort"},
};

constexpr size_t kSignalStackSize = 65536;

std::array<char, 4096> gSubject = {};
alignas(16) std::array<char, kSignalStackSize> gSignalStack;

/** A line put together without allocating; what does not fit is cut. */
class Message {
  public:
    Message& operator<<(const char* text) {
        const size_t length = std::min(std::strlen(text), mText.size() - mUsed);
        std::memcpy(mText.data() + mUsed, text, length);
        mUsed += length;
        return *this;
    }

    void write() const {
        // Nothing is left to do when standard error fails.
        [[maybe_unused]] const ssize_t ignored = ::write(STDERR_FILENO, mText.data(), mUsed);
    }

  private:
    std::array<char, 8192> mText;
    size_t mUsed = 0;
};

[[noreturn]] void end(const char* what, const char* function, const char* reason) noexcept {
    Output::flushAfterDeath();
    Message message;
    message << "ogmprobe: error: ";
    if (gSubject[0] != '\0') {
        message << gSubject.data() << ": ";
    }
    message << "the extractor " << what << " in " << function << ": " << reason << "\n";
    message.write();
    _exit(static_cast<int>(ExitCode::kDied));
}

void onAssertion(const char* text) {
    const char* function = PluginCall::current();
    if (function == nullptr) {
        __android_log_default_aborter(text);
        return;
    }
    end("died", function, text);
}

const char* signalName(int number) {
    for (const FatalSignal& signal : kFatalSignals) {
        if (signal.number == number) {
            return signal.name;
        }
    }
    return "signal";
}

void onSignal(int number) {
    const char* function = PluginCall::current();
    if (function == nullptr) {
        std::signal(number, SIG_DFL);
        std::raise(number);
        return;
    }
    end("died", function, signalName(number));
}

// A stack overflow leaves no room for a handler on the stack that overflowed.
void useOwnSignalStack() {
    stack_t stack = {};
    stack.ss_sp = gSignalStack.data();
    stack.ss_size = gSignalStack.size();
    sigaltstack(&stack, nullptr);
}

}  // namespace

void catchAll() {
    __android_log_set_aborter(onAssertion);
    useOwnSignalStack();
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_ONSTACK;
    for (const FatalSignal& signal : kFatalSignals) {
        sigaction(signal.number, &action, nullptr);
    }
}

void nameSubject(const std::string& path) {
    const size_t length = std::min(path.size(), gSubject.size() - 1);
    std::memcpy(gSubject.data(), path.data(), length);
    gSubject[length] = '\0';
}

void extractorIsStuck(const char* function, const char* observation) noexcept {
    end("is stuck", function, observation);
}

}  // namespace ogmprobe::death
