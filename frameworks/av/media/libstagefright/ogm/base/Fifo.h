// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace android::ogm {

/**
 * A queue of any length. Items never move; adding and removing one takes constant time.
 *
 * Why not std::deque: it takes 52 more instructions per buffer (2 %), and its table of blocks grows
 * by doubling, so a track that waits for long allocates larger and larger pieces of memory.
 */
template <typename T>
class Fifo {
  public:
    Fifo() = default;
    ~Fifo() { clear(); }
    Fifo(const Fifo&) = delete;
    Fifo& operator=(const Fifo&) = delete;

    size_t size() const { return mSize; }
    bool empty() const { return mSize == 0; }

    // There must be such an item.
    T& front() { return mFirst->places[mBegin].item; }
    const T& front() const { return mFirst->places[mBegin].item; }
    T& back() { return mLast->places[mEnd - 1].item; }
    /** Only for items near the front: it walks through the blocks. */
    const T& operator[](size_t index) const {
        const Block* block = mFirst.get();
        size_t place = mBegin + index;
        for (; place >= kBlockItems; place -= kBlockItems) {
            block = block->next.get();
        }
        return block->places[place].item;
    }

    /** Constructs an item from `fields` in place. */
    template <typename... Fields>
    void emplace_back(Fields&&... fields) {
        if (mEnd == kBlockItems) {
            addBlock();
        }
        new (&mLast->places[mEnd++].item) T{std::forward<Fields>(fields)...};
        ++mSize;
    }

    /** There must be an item. */
    void pop_front() {
        std::destroy_at(&front());
        --mSize;
        if (++mBegin == kBlockItems) {
            dropFirstBlock();
        }
    }

    void clear() {
        while (!empty()) {
            pop_front();
        }
    }

  private:
    static constexpr size_t kBlockItems = 32;

    /** Memory for an item, which push_back() constructs and pop_front() destroys. */
    union Place {
        // Defaulted ones would be deleted if the item has its own.
        Place() {}   // NOLINT(modernize-use-equals-default)
        ~Place() {}  // NOLINT(modernize-use-equals-default)
        T item;
    };
    struct Block {
        std::array<Place, kBlockItems> places;
        std::unique_ptr<Block> next;
    };

    void addBlock() {
        std::unique_ptr<Block> block =
                // Not make_unique(), which would clear the places first.
                mSpare != nullptr ? std::move(mSpare) : std::unique_ptr<Block>(new Block);
        Block* const added = block.get();
        (mFirst == nullptr ? mFirst : mLast->next) = std::move(block);
        mLast = added;
        mEnd = 0;
    }

    void dropFirstBlock() {
        mSpare = std::exchange(mFirst, std::move(mFirst->next));
        mBegin = 0;
        if (mFirst == nullptr) {
            mLast = nullptr;
            mEnd = kBlockItems;
        }
    }

    std::unique_ptr<Block> mFirst;
    Block* mLast = nullptr;
    std::unique_ptr<Block> mSpare;
    /** Index of the first item in the first block. */
    size_t mBegin = 0;
    /** Index after the last item in the last block; kBlockItems as long as there is no block. */
    size_t mEnd = kBlockItems;
    size_t mSize = 0;
};

}  // namespace android::ogm
