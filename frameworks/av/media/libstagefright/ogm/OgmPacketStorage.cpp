// SPDX-License-Identifier: Apache-2.0
#include "OgmPacketStorage.h"

#include <algorithm>

namespace android::ogm {

namespace {

constexpr size_t kAlignment = 16;
constexpr size_t kBlockSize = 32768;

/** A queue of that many packets is one that no reader takes from. */
constexpr size_t kLongQueue = 256;
/** Only a queue that already fills as much gets large pages. */
constexpr size_t kBlocksBeforeLargePages = 64;

}  // namespace

ByteBuffer PacketStorage::take(size_t size, size_t queuedPackets) {
    // A larger one would leave much of a block unused.
    const size_t largestShared = std::max(kBlockSize, mBlock.size()) / 2;
    if (size > largestShared) {
        return ByteBuffer(size);
    }
    if (!mBlock.isShared()) {
        mUsed = 0;
    }
    if (mBlock.data() == nullptr || mBlock.size() - mUsed < size) {
        beginBlock(queuedPackets);
    }
    ByteBuffer packet(mBlock, mUsed, size);
    mUsed += (size + kAlignment - 1) / kAlignment * kAlignment;
    return packet;
}

void PacketStorage::beginBlock(size_t queuedPackets) {
    mBlocksOfLongQueue = queuedPackets < kLongQueue ? 0 : mBlocksOfLongQueue + 1;
    mBlock = mBlocksOfLongQueue > kBlocksBeforeLargePages ? SharedBytes::inLargePage()
                                                          : SharedBytes(kBlockSize);
    mUsed = 0;
}

}  // namespace android::ogm
