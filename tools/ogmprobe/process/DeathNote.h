// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>

#include "plugin/PluginFunction.h"

namespace ogmprobe {

/** Why a process ends, left by itself in memory that another one sees. It is zeros at first. */
struct DeathNote {
    enum class Cause : uint32_t {
        kNone,
        /** `text` says which. */
        kAssertion,
        /** `number` is the signal. */
        kSignal,
        /** `number` is the system call. */
        kForbiddenCall,
        kOutOfMemory,
        /** `text` is what it says. */
        kException,
        /** `text` says of what. */
        kEndlessReading,
    };

    std::atomic<Cause> cause;
    std::atomic<int32_t> number;
    std::array<char, 1024> text;
};

/**
 * A sentence about the death of an extractor. Trusts neither the note nor the function, which the
 * dying process may have overwritten. `waitStatus` is what `waitpid` gives.
 */
std::string deathSentence(const DeathNote& note, PluginFunction function, int waitStatus);

/** As " in read"; empty for no function or none that there is. */
std::string inFunction(PluginFunction function);

}  // namespace ogmprobe
