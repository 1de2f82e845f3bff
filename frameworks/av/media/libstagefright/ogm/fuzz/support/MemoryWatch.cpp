// SPDX-License-Identifier: Apache-2.0
#include "MemoryWatch.h"

#include <algorithm>
#include <utility>

#include "Ends.h"

namespace android::ogm::fuzz {

namespace {

using test::AllocationKind;

/** The body of the largest possible page, and rounding up to 64 KiB. */
constexpr uint64_t kPageAndRounding = 131072;
/** 8-bit samples are widened into a buffer that is half as large again as needed. */
constexpr uint64_t kLargestPerByte = 3;

/** Extractor, tracks and their packet buffers. */
constexpr uint64_t kAlwaysInUse = 4 << 20;
/** An empty packet needs one lacing value in the file, but a buffer and a queue entry in memory. */
constexpr uint64_t kInUsePerByte = 1024;

/** An access unit has at least 2 bytes and takes less than 16 requests. */
constexpr uint64_t kRequestsPerByte = 8;
constexpr uint64_t kRequestsOfACall = 4096;
/** A queue that is filled without reading allocates blocks of some KiB, each for many packets. */
constexpr uint64_t kRequestsOfAGrowingQueue = 512;

MemoryWatch* gWatch = nullptr;

}  // namespace

MemoryWatch::MemoryWatch(const ScriptedSource& source) : mSource(source) {
    gWatch = this;
    test::startCountingAllocations(onAllocation);
}

MemoryWatch::~MemoryWatch() {
    test::stopCountingAllocations();
    gWatch = nullptr;
}

void MemoryWatch::onAllocation(AllocationKind kind, size_t size) {
    gWatch->check(kind, size);
}

void MemoryWatch::check(AllocationKind kind, size_t size) {
    if (std::exchange(mReads, mSource.reads()) != mSource.reads()) {
        mRequests = 0;
    }
    ++mRequests;
    const uint64_t delivered = mSource.delivered();
    const auto live = static_cast<uint64_t>(std::max<ptrdiff_t>(test::allocationCounts().live, 0));
    const bool isTooLarge = size > kPageAndRounding + kLargestPerByte * delivered;
    const bool isTooMuch = live > kAlwaysInUse + kInUsePerByte * delivered;
    const bool isTooOften = mRequests > kRequestsOfACall + kRequestsPerByte * delivered;
    if (mMayGrow && mRequests > kRequestsOfAGrowingQueue) {
        if ((isTooLarge || isTooMuch || isTooOften) && kind == AllocationKind::kNew) {
            throw IntendedEnd{};
        }
        return;
    }
    if (isTooLarge) {
        finding("%zu bytes are requested after %llu have been read", size,
                static_cast<unsigned long long>(delivered));
    }
    if (isTooMuch) {
        finding("%llu bytes are in use after %llu have been read",
                static_cast<unsigned long long>(live), static_cast<unsigned long long>(delivered));
    }
    require(!isTooOften, "the plug-in goes on taking memory without reading");
}

}  // namespace android::ogm::fuzz
