// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "plugin/PluginFunction.h"
#include "records/Records.h"

namespace ogmprobe {

/** What another process can see of the work with the plug-in at any time. */
struct Vitals {
    /** Changes with each beginning and end of a call and with each finished data-source read. */
    std::atomic<uint64_t> signsOfLife{0};
    /** What the plug-in is busy with. */
    std::atomic<PluginFunction> function{PluginFunction::kNone};
};

/**
 * Marks the time during which the plug-in is at work, so that a death or a standstill can be put
 * down to the function that was called.
 *
 * The marks are for the whole process: one call at a time, on one thread.
 */
class PluginCall {
  public:
    explicit PluginCall(PluginFunction function, std::optional<size_t> track = {});
    ~PluginCall();

    PluginCall(const PluginCall&) = delete;
    PluginCall& operator=(const PluginCall&) = delete;

    /** Notes what the call has returned; gives it back. */
    media_status_t returned(media_status_t status);

    /** Whether the plug-in is at work. */
    static bool active() noexcept;

    /** The function that an exception has left, which none may do; no function at first. */
    static PluginFunction leftByException() noexcept;

    /** Notes that a data-source read has finished. */
    static void noteProgress() noexcept;

    /** Keeps the marks there from now on; null: in this process alone. */
    static void keepIn(Vitals* vitals) noexcept;

  private:
    CallEnded mEnd;
    const int mExceptionsBefore;
};

}  // namespace ogmprobe
