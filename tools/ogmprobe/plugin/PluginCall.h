// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>

#include <cstddef>
#include <optional>

#include "plugin/Vitals.h"

namespace ogmprobe {

/**
 * Marks the time during which the plug-in runs, so that a death or a standstill can be attributed
 * to the called function.
 *
 * The marks are for the whole process: one call at a time, on one thread.
 */
class PluginCall {
  public:
    explicit PluginCall(PluginFunction function, std::optional<size_t> track = {});
    ~PluginCall();

    PluginCall(const PluginCall&) = delete;
    PluginCall& operator=(const PluginCall&) = delete;

    /** Records the status that the call has returned, and returns it. */
    media_status_t returned(media_status_t status);

    /** Returns whether the plug-in is running. */
    static bool active() noexcept;

    /**
     * Returns the function that an exception has left, which is forbidden; `kNone` if there is
     * none.
     */
    static PluginFunction leftByException() noexcept;

    /** Returns the marks. */
    static Vitals& vitals() noexcept { return *sVitals; }
    /** Stores the marks there from now on; null: only in this process. */
    static void keepIn(Vitals* vitals) noexcept;

  private:
    static inline Vitals sOwnVitals;
    static inline Vitals* sVitals = &sOwnVitals;

    CallEnded mEnd;
    const int mExceptionsBefore;
};

}  // namespace ogmprobe
