// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>

#include "plugin/PluginFunction.h"

namespace ogmprobe {

/** Why a process ended. The process writes it into shared memory, which is initially zero. */
struct DeathNote {
    enum class Cause : uint32_t {
        kNone,
        /** `text` is the assertion. */
        kAssertion,
        /** `number` is the signal. */
        kSignal,
        /** `number` is the system call. */
        kForbiddenCall,
        kOutOfMemory,
        /** `text` is the exception's. */
        kException,
        /** `text` describes the reads. */
        kEndlessReading,
    };

    std::atomic<Cause> cause;
    std::atomic<int32_t> number;
    std::array<char, 1024> text;
};

/**
 * Returns a sentence about the death of an extractor. Trusts neither the note nor the function,
 * which the dying process may have overwritten. `waitStatus` is that of `waitpid`.
 */
std::string deathSentence(const DeathNote& note, PluginFunction function, int waitStatus);

/** Returns text like " in read"; empty for no function or an invalid one. */
std::string inFunction(PluginFunction function);

}  // namespace ogmprobe
