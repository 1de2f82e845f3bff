// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include "files/Descriptor.h"
#include "plugin/PluginFunction.h"
#include "process/JobRunner.h"
#include "process/SharedRing.h"
#include "process/StandstillWatch.h"
#include "records/RecordSink.h"

namespace ogmprobe {

/** The memory that both processes share. */
struct SharedState;

/**
 * A job in a separate process, which can only read the file and use its memory (see Sandbox.h), and
 * passes its records through shared memory. This process continues whatever happens to it.
 */
class ExtractorProcess {
  public:
    /** Starts the process. There must be no other threads. Throws `ProbeError` with `kFile`. */
    ExtractorProcess(const JobRequest& request, const GlobalOptions& options);
    /** Kills the process if it still runs. */
    ~ExtractorProcess();

    ExtractorProcess(const ExtractorProcess&) = delete;
    ExtractorProcess& operator=(const ExtractorProcess&) = delete;

    /** Passes on all records; the last one reports a death or standstill. Call once. */
    void deliver(const RecordSink& handler);

  private:
    struct Unmap {
        void operator()(SharedState* state) const;
    };

    void deliverAll(const RecordSink& handler);
    void deliverLastRun(const RecordSink& handler);
    void reportProgress() const;
    bool waitForMore();
    void sleep(std::chrono::milliseconds atMost);
    PluginFunction function() const;
    /** Waits for the end of the process and returns the status of `waitpid`. */
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
