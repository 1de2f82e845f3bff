// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "AllocationHooks.h"
#include "ScriptedSource.h"

namespace android::ogm::fuzz {

/**
 * Watches the heap during a session. The bytes that the source has returned limit the size of a
 * request and the memory in use. Endless cutting of access units takes memory without reading:
 * that is a intended end if there is an AC-3 track, whose frames may be empty, and a finding
 * otherwise.
 */
class MemoryWatch {
  public:
    explicit MemoryWatch(const ScriptedSource& source);
    ~MemoryWatch();
    MemoryWatch(const MemoryWatch&) = delete;
    MemoryWatch& operator=(const MemoryWatch&) = delete;

    /** Once allowed, it stays allowed. */
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
