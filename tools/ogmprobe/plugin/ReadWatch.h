// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "plugin/PluginCall.h"

namespace ogmprobe {

/**
 * Watches the plug-in's reads in the whole process: combines those of a byte-by-byte search into
 * one record, and detects a call that repeats the same reads forever.
 */
class ReadWatch {
  public:
    /** The same reads again and again within one call. */
    struct Cycle {
        uint64_t reads;
        int64_t offset;
        uint64_t rounds;
    };
    using CycleHandler = void (*)(const Cycle&);

    /** To be called after each read. */
    static void add(int64_t offset, uint64_t size, int64_t result) noexcept;

    /**
     * Returns whether a read of the same size and result as the last one would continue its run.
     */
    static bool continues(int64_t offset) noexcept {
        return PluginCall::vitals().runNext.get() == offset;
    }
    /** To be called after such a read. This is the only work for each byte of a search. */
    static void goOn(int64_t offset) noexcept { PluginCall::vitals().runNext.set(offset + 1); }

    /** To be called before any other record: records the current run of reads. */
    static void endRun();

    /** To be called when the plug-in is called. */
    static void beginCall();

    /**
     * Sets the handler for a call that has repeated the same reads for so many seconds. A null
     * handler or a limit of 0 means never.
     */
    static void onCycle(CycleHandler handler, double limitSeconds);

  private:
    static void beginRun(const SourceRead& read) noexcept;
    static void judge() noexcept;
};

}  // namespace ogmprobe
