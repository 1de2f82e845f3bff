// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>

#include "plugin/PluginFunction.h"
#include "records/Records.h"

namespace ogmprobe {

/**
 * A number that one thread writes and another process may read, so additions need not be atomic.
 */
template <typename T>
class Shared {
  public:
    explicit Shared(T value = {}) : mValue(value) {}

    T get() const { return mValue.load(std::memory_order_relaxed); }
    void set(T value) { mValue.store(value, std::memory_order_relaxed); }

  private:
    std::atomic<T> mValue;
};

/** What another process can see of the plug-in's work at any time. */
struct Vitals {
    /** Changes with each beginning and end of a call and with each run of reads. */
    Shared<uint64_t> signsOfLife;
    /** The function that the plug-in is running. */
    Shared<PluginFunction> function;
    /** Size of the file, once it is open. */
    Shared<uint64_t> fileSize;

    /** Where a read would continue the current run of reads; `kNoRun`: there is none. */
    Shared<int64_t> runNext{kNoRun};
    // The members of the run's `SourceRead`.
    Shared<int64_t> runOffset;
    Shared<uint64_t> runSize;
    Shared<int64_t> runResult;

    /** No read can be at this offset. */
    static constexpr int64_t kNoRun = std::numeric_limits<int64_t>::max();

    /** Returns the current run; a count of 0 means none. */
    SourceRead run() const {
        const int64_t next = runNext.get();
        const uint64_t count = next == kNoRun ? 0
                                              : static_cast<uint64_t>(next) -
                                                        static_cast<uint64_t>(runOffset.get());
        return {runOffset.get(), runSize.get(), runResult.get(), count};
    }

    /** Changes whenever something happens. */
    uint64_t signs() const { return signsOfLife.get() + static_cast<uint64_t>(runNext.get()); }
};

}  // namespace ogmprobe
