// SPDX-License-Identifier: Apache-2.0
#include "process/Death.h"

#include <android/log.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <new>

#include "ExitCode.h"

// All code here that a signal handler reaches uses only static memory and async-signal-safe calls.
namespace ogmprobe::death {
namespace {

using Cause = DeathNote::Cause;

constexpr std::array kFatalSignals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS};

constexpr size_t kSignalStackSize = 65536;

DeathNote* gNote = nullptr;
alignas(16) std::array<char, kSignalStackSize> gSignalStack;

[[noreturn]] void end(Cause cause, int number, const char* text) noexcept {
    const size_t length = std::min(std::strlen(text), gNote->text.size() - 1);
    std::memcpy(gNote->text.data(), text, length);
    gNote->text[length] = '\0';
    gNote->number = number;
    gNote->cause = cause;
    _exit(static_cast<int>(ExitCode::kDied));
}

void onAssertion(const char* text) {
    end(Cause::kAssertion, 0, text);
}

void onOutOfMemory() {
    end(Cause::kOutOfMemory, 0, "");
}

void onSignal(int number, siginfo_t* info, void*) {
    if (number == SIGSYS) {
        end(Cause::kForbiddenCall, info->si_syscall, "");
    }
    end(Cause::kSignal, number, "");
}

// After a stack overflow the handler cannot run on the same stack.
void useOwnSignalStack() {
    stack_t stack = {};
    stack.ss_sp = gSignalStack.data();
    stack.ss_size = gSignalStack.size();
    sigaltstack(&stack, nullptr);
}

}  // namespace

void catchAll(DeathNote& note) {
    gNote = &note;
    __android_log_set_aborter(onAssertion);
    std::set_new_handler(onOutOfMemory);
    useOwnSignalStack();
    struct sigaction action = {};
    action.sa_sigaction = onSignal;
    action.sa_flags = SA_ONSTACK | SA_SIGINFO;
    for (const int number : kFatalSignals) {
        sigaction(number, &action, nullptr);
    }
}

void ofEndlessReading(const char* text) {
    end(Cause::kEndlessReading, 0, text);
}

void ofException(const char* text) {
    end(Cause::kException, 0, text);
}

}  // namespace ogmprobe::death
