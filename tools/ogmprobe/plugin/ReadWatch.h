// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>

#include "plugin/CycleFinder.h"
#include "plugin/PluginCall.h"

namespace ogmprobe {

/**
 * Watches the reads of the plug-in, in the whole process: puts those of a byte-by-byte search
 * together in one record, and notices when a call repeats the same reads for ever.
 */
class ReadWatch {
  public:
    using Seconds = std::chrono::duration<double>;

    /** The same reads over and over, without a call's end. */
    struct Cycle {
        uint64_t reads;
        int64_t offset;
        uint64_t rounds;
    };
    using CycleHandler = void (*)(const Cycle&);

    /** A read has finished. */
    static void add(int64_t offset, uint64_t size, int64_t result) noexcept;

    /** Whether a read of the same size and result as the last one would go on with its run. */
    static bool goesOn(int64_t offset) noexcept {
        return PluginCall::vitals().runNext.get() == offset;
    }
    /** Such a read has finished: all there is to do for each byte of a search. */
    static void goOn(int64_t offset) noexcept { PluginCall::vitals().runNext.set(offset + 1); }

    /** To be called before anything else is recorded: hands over the run of reads so far. */
    static void endRun();

    /** To be called when the plug-in is called. */
    static void beginCall();

    /**
     * Calls the handler when a call has repeated the same reads for so long; null, or a limit of
     * 0: never.
     */
    static void onCycle(CycleHandler handler, Seconds limit);

  private:
    static void beginRun(const SourceRead& read) noexcept;
    static void judge() noexcept;

    static inline CycleFinder sFinder;
    static inline CycleHandler sHandler = nullptr;
    static inline Seconds sLimit{};
    static inline std::chrono::steady_clock::time_point sCallBegan;
};

}  // namespace ogmprobe
