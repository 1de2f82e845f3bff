// SPDX-License-Identifier: Apache-2.0
#include "AllocationCount.h"

#include <atomic>
#include <cstddef>

namespace {

std::atomic<uint64_t> gCount{0};

void countOne() {
    gCount.store(gCount.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
}

}  // namespace

// These replace the C library's functions, also for the libraries of this process. The measured
// code runs in one thread, so no count is lost.
extern "C" {

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);

void* malloc(size_t size) {
    countOne();
    return __libc_malloc(size);
}

void* calloc(size_t count, size_t size) {
    countOne();
    return __libc_calloc(count, size);
}

void* realloc(void* block, size_t size) {
    countOne();
    return __libc_realloc(block, size);
}

}  // extern "C"

uint64_t android::ogm::bench::allocationCount() {
    return gCount.load(std::memory_order_relaxed);
}
