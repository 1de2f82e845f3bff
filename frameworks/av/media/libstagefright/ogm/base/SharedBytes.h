// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace android::ogm {

/**
 * Bytes on the heap, freed with the last object that shares them. All objects that share the same
 * bytes belong to one extractor, whose callers take turns, so the reference count is not atomic.
 *
 * Why not std::shared_ptr: its atomic count takes 40 more instructions per buffer (4 % of the
 * plug-in's own), two of them locked, and it cannot lie in the same large page as the bytes.
 */
class SharedBytes {
  public:
    static constexpr size_t kLargePageSize = 2 << 20;

    SharedBytes() = default;
    /** `size` uninitialised bytes; the pointer is non-null even for size 0. */
    explicit SharedBytes(size_t size);
    /**
     * Almost kLargePageSize uninitialised bytes, which the kernel can back with one large page.
     * That is much cheaper than many small pages, which it uses if it has no large page.
     */
    static SharedBytes inLargePage();

    SharedBytes(const SharedBytes& other) : mBlock(other.mBlock) {
        if (mBlock != nullptr) {
            ++mBlock->users;
        }
    }
    SharedBytes(SharedBytes&& other) noexcept : mBlock(std::exchange(other.mBlock, nullptr)) {}
    SharedBytes& operator=(SharedBytes other) noexcept {
        std::swap(mBlock, other.mBlock);
        return *this;
    }
    ~SharedBytes() {
        if (mBlock != nullptr && --mBlock->users == 0) {
            destroy(mBlock);
        }
    }

    /** Null if there is nothing to share. */
    uint8_t* data() const { return mBlock == nullptr ? nullptr : mBlock->bytes(); }
    size_t size() const { return mBlock == nullptr ? 0 : mBlock->size; }
    bool isSame(const SharedBytes& other) const { return mBlock == other.mBlock; }
    bool isShared() const { return mBlock != nullptr && mBlock->users > 1; }

  private:
    /** The header before the bytes. */
    struct alignas(std::max_align_t) Block {
        uint8_t* bytes() { return reinterpret_cast<uint8_t*>(this + 1); }

        size_t users;
        size_t size;
        bool isLargePage;
    };

    explicit SharedBytes(Block* block) : mBlock(block) {}
    static void destroy(Block* block);

    Block* mBlock = nullptr;
};

}  // namespace android::ogm
