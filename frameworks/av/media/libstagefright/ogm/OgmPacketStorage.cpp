// SPDX-License-Identifier: Apache-2.0
#include "OgmPacketStorage.h"

#include <sys/mman.h>

#include <new>

namespace android::ogm {

namespace {

constexpr size_t kAlignment = 16;
constexpr size_t kBlockSize = 32768;
/** A packet above this gets memory of its own, as it would leave much of a block unused. */
constexpr size_t kLargestShared = kBlockSize / 2;

/** A queue of that many packets is one that no reader takes from. */
constexpr size_t kLongQueue = 256;
/** What the kernel can give in one piece, which costs far less than as many small pages. */
constexpr size_t kLargePageSize = 2 << 20;
constexpr std::align_val_t kLargePageAlignment{kLargePageSize};
/** Only a queue that already fills as much gets large pages. */
constexpr size_t kBlocksBeforeLargePages = kLargePageSize / kBlockSize;

struct LargePageDeleter {
    void operator()(uint8_t* bytes) const { operator delete(bytes, kLargePageAlignment); }
};

std::shared_ptr<uint8_t> makeLargePage() {
    auto* const bytes = static_cast<uint8_t*>(operator new(kLargePageSize, kLargePageAlignment));
    // A wish; without large pages it is memory like any other.
    (void)madvise(bytes, kLargePageSize, MADV_HUGEPAGE);
    return {bytes, LargePageDeleter()};
}

}  // namespace

ByteBuffer PacketStorage::take(size_t size, size_t queuedPackets) {
    if (size > kLargestShared) {
        return ByteBuffer(size);
    }
    if (mBlock.use_count() == 1) {
        mUsed = 0;
    } else if (mBlock == nullptr || mBlockSize - mUsed < size) {
        beginBlock(queuedPackets);
    }
    ByteBuffer packet(std::shared_ptr<uint8_t>(mBlock, mBlock.get() + mUsed), size);
    mUsed += (size + kAlignment - 1) / kAlignment * kAlignment;
    return packet;
}

void PacketStorage::beginBlock(size_t queuedPackets) {
    mBlocksOfLongQueue = queuedPackets < kLongQueue ? 0 : mBlocksOfLongQueue + 1;
    if (mBlocksOfLongQueue > kBlocksBeforeLargePages) {
        mBlock = makeLargePage();
        mBlockSize = kLargePageSize;
    } else {
        mBlock = makeBytes(kBlockSize);
        mBlockSize = kBlockSize;
    }
    mUsed = 0;
}

}  // namespace android::ogm
