// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>

#include "plugin/Vitals.h"

namespace ogmprobe {

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

    /** Where the marks are kept. */
    static Vitals& vitals() noexcept { return *sVitals; }
    /** Keeps the marks there from now on; null: in this process alone. */
    static void keepIn(Vitals* vitals) noexcept;

  private:
    static inline Vitals sOwnVitals;
    static inline Vitals* sVitals = &sOwnVitals;

    CallEnded mEnd;
    const int mExceptionsBefore;
};

}  // namespace ogmprobe
