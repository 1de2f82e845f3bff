// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AllocationHooks.h"
#include "ScriptedSource.h"

namespace android::ogm::fuzz {

/**
 * Watches what a session takes from the heap while it lives: no request may be larger, and no more
 * may be in use, than the bytes that the source has handed over justify. A cutting of access units
 * that never ends takes memory without reading; it is a demanded end where a track is AC-3, whose
 * frames may have no bytes, and a finding elsewhere.
 */
class MemoryWatch {
  public:
    explicit MemoryWatch(const ScriptedSource& source);
    ~MemoryWatch();
    MemoryWatch(const MemoryWatch&) = delete;
    MemoryWatch& operator=(const MemoryWatch&) = delete;

    /** Stays allowed once it is. */
    void allowEndlessGrowth(bool allowed) { mMayGrow |= allowed; }

  private:
    static void onAllocation(test::AllocationKind kind, size_t size);
    void check(test::AllocationKind kind, size_t size);

    const ScriptedSource& mSource;
    bool mMayGrow = false;
    /** Requests since the latest read. */
    uint64_t mRequests = 0;
    size_t mReads = 0;
};

}  // namespace android::ogm::fuzz
