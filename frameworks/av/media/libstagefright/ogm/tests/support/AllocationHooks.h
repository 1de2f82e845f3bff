// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

/**
 * Counts heap allocations: operator new in the whole program, malloc and the like in statically
 * linked objects. To use it, link the CMake target ogm_allocation_hooks. For one thread at a time.
 */
namespace android::ogm::test {

struct AllocationCounts {
    /** Bytes in use, without those that were in use before counting began. */
    ptrdiff_t live = 0;
    ptrdiff_t peak = 0;
    /** Bytes of the largest single request. */
    size_t largest = 0;
    /** Number of requests. */
    size_t count = 0;
};

enum class AllocationKind { kNew, kMalloc };

/** Called before each allocation while counting; for kNew it may throw. It must not allocate. */
using AllocationObserver = void (*)(AllocationKind kind, size_t size);

/** Counts from 0; `observer` may be null. */
void startCountingAllocations(AllocationObserver observer = nullptr);
void stopCountingAllocations();
const AllocationCounts& allocationCounts();

/** Counts during its lifetime. */
class CountedAllocations {
  public:
    explicit CountedAllocations(AllocationObserver observer = nullptr) {
        startCountingAllocations(observer);
    }
    ~CountedAllocations() { stopCountingAllocations(); }
    CountedAllocations(const CountedAllocations&) = delete;
    CountedAllocations& operator=(const CountedAllocations&) = delete;
};

/** Stops counting during its lifetime: for the test's own allocations. */
class UncountedAllocations {
  public:
    UncountedAllocations();
    ~UncountedAllocations();
    UncountedAllocations(const UncountedAllocations&) = delete;
    UncountedAllocations& operator=(const UncountedAllocations&) = delete;

  private:
    const bool mWasCounting;
};

}  // namespace android::ogm::test
