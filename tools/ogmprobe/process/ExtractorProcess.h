// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <chrono>
#include <memory>
#include <optional>

#include "files/Descriptor.h"
#include "plugin/PluginFunction.h"
#include "process/JobRunner.h"
#include "process/SharedRing.h"
#include "process/StandstillWatch.h"

namespace ogmprobe {

/** The memory that both processes see. */
struct SharedState;

/**
 * A job in a process of its own, which has nothing but the file and its memory (see Sandbox.h) and
 * hands its records over in shared memory. Whatever becomes of it, this process goes on.
 */
class ExtractorProcess {
  public:
    /** Begins at once. There must be no other threads. Throws `ProbeError` with `kFile`. */
    ExtractorProcess(const JobRequest& request, const GlobalOptions& options);
    /** Kills the process if it is still there. */
    ~ExtractorProcess();

    ExtractorProcess(const ExtractorProcess&) = delete;
    ExtractorProcess& operator=(const ExtractorProcess&) = delete;

    /** Hands over all records; one about a death or standstill comes last. Once only. */
    void deliver(const RecordSink& handler);

  private:
    struct Unmap {
        void operator()(SharedState* state) const;
    };

    void deliverAll(const RecordSink& handler);
    void deliverLastRun(const RecordSink& handler);
    void tellProgress() const;
    bool waitForMore();
    void sleep(std::chrono::milliseconds atMost);
    PluginFunction function() const;
    /** The process is gone; gives the status of `waitpid`. */
    int reap();
    int kill();

    const StandstillWatch::Duration mLimit;
    const bool mTraced;
    const std::function<void(const Advance&)> mProgress;
    std::unique_ptr<SharedState, Unmap> mShared;
    Descriptor mDoorbell;
    pid_t mProcess = -1;
    Descriptor mProcessDescriptor;
    bool mGone = false;
    std::optional<RingReader> mRing;
};

}  // namespace ogmprobe
