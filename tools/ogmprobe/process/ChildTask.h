// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "files/Descriptor.h"

namespace ogmprobe {

/** A function in a separate process, which returns a text. */
class ChildTask {
  public:
    using Work = std::function<std::string()>;

    enum class Rights {
        /** It may do the same as this process. */
        kAll,
        /** It may only use memory and send the answer (see Sandbox.h). */
        kSandboxed,
    };

    /**
     * Starts the process. There must be no other threads. An answer of more than `maxBytes` is
     * refused. Throws `ProbeError` with `kFile`.
     */
    ChildTask(const Work& work, Rights rights, uint64_t maxBytes);
    /** Kills the process if it still runs. */
    ~ChildTask();

    ChildTask(ChildTask&& other) noexcept;
    ChildTask& operator=(ChildTask&&) = delete;

    /** Readable if there is more of the answer, or its end. */
    int descriptor() const { return mPipe.get(); }
    /** Reads what has arrived; returns false if nothing more will arrive. */
    bool readMore();

    /** Returns the answer; nothing if the process ended without one. Call once. */
    std::optional<std::string> takeAnswer();
    /** Returns how the process ended if it gave no answer: "signal 9". */
    const std::string& ending() const { return mEnding; }

    /** Waits for the whole answer; returns nothing after that time. */
    std::optional<std::string> waitForAnswer(std::chrono::milliseconds limit);

  private:
    int reap();
    int reapSoon();

    const uint64_t mMaxBytes;
    Descriptor mPipe;
    pid_t mProcess = -1;
    std::string mAnswer;
    std::string mEnding;
};

}  // namespace ogmprobe
