// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace ogmprobe {

/**
 * Marks the time during which the plug-in is at work, so that a death or a standstill can be put
 * down to it and to the function that was called.
 *
 * The marks are for the whole process: one call at a time, on the main thread. Other threads and
 * signal handlers may look at them.
 */
class PluginCall {
  public:
    /** The function's name, a text that lives for ever. */
    explicit PluginCall(const char* function);
    ~PluginCall();

    PluginCall(const PluginCall&) = delete;
    PluginCall& operator=(const PluginCall&) = delete;

    /** The function that the plug-in is in, or null. */
    static const char* current() noexcept;

    /** Notes that a data-source read has finished. */
    static void noteProgress() noexcept;

    /** Changes with each call's beginning and end. */
    static uint64_t calls() noexcept;
    /** Changes with each sign of life: what changes `calls`, and finished data-source reads. */
    static uint64_t signsOfLife() noexcept;
};

}  // namespace ogmprobe
