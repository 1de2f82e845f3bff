// SPDX-License-Identifier: Apache-2.0
#include "base/PacketStorage.h"

namespace android::ogm {

namespace {

constexpr size_t kAlignment = 16;
constexpr size_t kBlockSize = 32768;

/** A queue with this many packets is one from which nobody reads. */
constexpr size_t kLongQueue = 256;
/** A long queue gets large pages only after it has filled this many blocks. */
constexpr size_t kBlocksBeforeLargePages = 64;

}  // namespace

ByteBuffer PacketStorage::take(size_t size, size_t queuedPackets) {
    if (!mBlock.isShared()) {
        mUsed = 0;
    }
    if (mBlock.data() == nullptr || mBlock.size() - mUsed < size) {
        const bool isLong = queuedPackets >= kLongQueue;
        const bool isLargePageDue = isLong && mBlocksOfLongQueue >= kBlocksBeforeLargePages;
        if (size > (isLargePageDue ? SharedBytes::kLargePageSize : kBlockSize) / 2) {
            // In a block it could leave much space unused.
            return ByteBuffer(size);
        }
        mBlock = isLargePageDue ? SharedBytes::inLargePage() : SharedBytes(kBlockSize);
        mBlocksOfLongQueue = isLong ? mBlocksOfLongQueue + 1 : 0;
        mUsed = 0;
    }
    mLatest = mUsed;
    mUsed += (size + kAlignment - 1) / kAlignment * kAlignment;
    return ByteBuffer(mBlock, mLatest, size);
}

void PacketStorage::giveBack(ByteBuffer packet) {
    if (const auto offset = packet.offsetIn(mBlock); offset && *offset >= mLatest) {
        mUsed = mLatest;
    }
}

}  // namespace android::ogm
