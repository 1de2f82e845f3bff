// SPDX-License-Identifier: Apache-2.0
#include "AllocationCount.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

std::atomic<int> gLive{0};

}  // namespace

int liveAllocations() {
    return gLive.load();
}

void* operator new(std::size_t size) {
    void* block = std::malloc(size);
    if (block == nullptr) {
        std::abort();
    }
    ++gLive;
    return block;
}

void operator delete(void* block) noexcept {
    if (block != nullptr) {
        --gLive;
        std::free(block);
    }
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}
