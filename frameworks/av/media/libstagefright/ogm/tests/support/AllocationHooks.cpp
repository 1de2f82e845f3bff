// SPDX-License-Identifier: Apache-2.0
#include "AllocationHooks.h"

#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

// The linker redirects calls of malloc, calloc, realloc and free in this program's own objects to
// __wrap_..., and calls of __real_... to the C library.
extern "C" {
void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);
}

namespace android::ogm::test {
namespace {

bool gCounting = false;
AllocationObserver gObserver = nullptr;
AllocationCounts gCounts;

void announce(AllocationKind kind, size_t size) {
    if (!gCounting) {
        return;
    }
    ++gCounts.count;
    gCounts.largest = std::max(gCounts.largest, size);
    if (gObserver != nullptr) {
        gObserver(kind, size);
    }
}

void* taken(void* block) {
    if (gCounting && block != nullptr) {
        gCounts.live += static_cast<ptrdiff_t>(malloc_usable_size(block));
        gCounts.peak = std::max(gCounts.peak, gCounts.live);
    }
    return block;
}

void givenBack(void* block) {
    if (gCounting && block != nullptr) {
        gCounts.live -= static_cast<ptrdiff_t>(malloc_usable_size(block));
    }
}

void* takeNew(size_t size) {
    announce(AllocationKind::kNew, size);
    void* const block = taken(__real_malloc(size));
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void giveBack(void* block) {
    givenBack(block);
    __real_free(block);
}

}  // namespace

void startCountingAllocations(AllocationObserver observer) {
    gCounts = {};
    gObserver = observer;
    gCounting = true;
}

void stopCountingAllocations() {
    gCounting = false;
}

const AllocationCounts& allocationCounts() {
    return gCounts;
}

UncountedAllocations::UncountedAllocations() : mWasCounting(gCounting) {
    gCounting = false;
}

UncountedAllocations::~UncountedAllocations() {
    gCounting = mWasCounting;
}

}  // namespace android::ogm::test

using android::ogm::test::AllocationKind;

extern "C" {

void* __wrap_malloc(size_t size) {
    android::ogm::test::announce(AllocationKind::kMalloc, size);
    return android::ogm::test::taken(__real_malloc(size));
}

void* __wrap_calloc(size_t count, size_t size) {
    android::ogm::test::announce(AllocationKind::kMalloc, count * size);
    return android::ogm::test::taken(__real_calloc(count, size));
}

void* __wrap_realloc(void* block, size_t size) {
    android::ogm::test::announce(AllocationKind::kMalloc, size);
    android::ogm::test::givenBack(block);
    return android::ogm::test::taken(__real_realloc(block, size));
}

void __wrap_free(void* block) {
    android::ogm::test::giveBack(block);
}

}  // extern "C"

void* operator new(size_t size) {
    return android::ogm::test::takeNew(size);
}

void* operator new[](size_t size) {
    return android::ogm::test::takeNew(size);
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return android::ogm::test::taken(__real_malloc(size));
}

void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return android::ogm::test::taken(__real_malloc(size));
}

void operator delete(void* block) noexcept {
    android::ogm::test::giveBack(block);
}

void operator delete[](void* block) noexcept {
    android::ogm::test::giveBack(block);
}

void operator delete(void* block, size_t) noexcept {
    android::ogm::test::giveBack(block);
}

void operator delete[](void* block, size_t) noexcept {
    android::ogm::test::giveBack(block);
}
