// SPDX-License-Identifier: Apache-2.0
#include "base/SharedBytes.h"

#include <sys/mman.h>

#include <new>

namespace android::ogm {

namespace {

constexpr std::align_val_t kLargePageAlignment{SharedBytes::kLargePageSize};

}  // namespace

SharedBytes::SharedBytes(size_t size)
    : mBlock(new (operator new(sizeof(Block) + size)) Block{1, size, false}) {}

SharedBytes SharedBytes::inLargePage() {
    void* const memory = operator new(kLargePageSize, kLargePageAlignment);
    // If the kernel refuses, the memory is in small pages, which work as well.
    (void)madvise(memory, kLargePageSize, MADV_HUGEPAGE);
    return SharedBytes(new (memory) Block{1, kLargePageSize - sizeof(Block), true});
}

void SharedBytes::destroy(Block* block) {
    if (block->isLargePage) {
        operator delete(block, kLargePageAlignment);
    } else {
        operator delete(block);
    }
}

}  // namespace android::ogm
