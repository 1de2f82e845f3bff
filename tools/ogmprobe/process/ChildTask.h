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

/** A function in a process of its own, which answers with a text. */
class ChildTask {
  public:
    using Work = std::function<std::string()>;

    enum class Rights {
        /** Those of this process. */
        kAll,
        /** None but memory and the answer (see Sandbox.h). */
        kSandboxed,
    };

    /**
     * Begins at once. There must be no other threads. An answer of more bytes is refused. Throws
     * `ProbeError` with `kFile`.
     */
    ChildTask(const Work& work, Rights rights, uint64_t mostBytes);
    /** Kills the process if it is still there. */
    ~ChildTask();

    ChildTask(ChildTask&& other) noexcept;
    ChildTask& operator=(ChildTask&&) = delete;

    /** Can be read when there is more of the answer, or its end. */
    int descriptor() const { return mPipe.get(); }
    /** Takes what has come; false when nothing more will. */
    bool readMore();

    /** The answer; nothing if the process ended in another way than by giving it. Once only. */
    std::optional<std::string> takeAnswer();
    /** How the process ended, after an answer that was not given: "signal 9". */
    const std::string& ending() const { return mEnding; }

    /** The whole answer, or nothing after that time. */
    std::optional<std::string> waitForAnswer(std::chrono::milliseconds limit);

  private:
    int reap();
    int reapSoon();

    const uint64_t mMostBytes;
    Descriptor mPipe;
    pid_t mProcess = -1;
    std::string mAnswer;
    std::string mEnding;
};

}  // namespace ogmprobe
