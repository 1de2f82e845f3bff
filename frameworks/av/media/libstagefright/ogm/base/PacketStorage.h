// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "base/ByteBuffer.h"
#include "base/SharedBytes.h"

namespace android::ogm {

/**
 * Where the packets of a track lie while they are queued. They share blocks of memory, and a block
 * is freed with the last of its packets; as a queue is emptied in the order in which it was filled,
 * that is soon after the first. Packets may outlive this object.
 *
 * Why not a heap block for each packet: it takes 330 instructions and 0.9 allocations a buffer
 * more.
 */
class PacketStorage {
  public:
    /**
     * Returns `size` uninitialised bytes; the pointer is non-null even for size 0. A queue that has
     * grown long goes on in larger blocks: a track that waits while another one is read to its end
     * may have to hold most of the file.
     */
    ByteBuffer take(size_t size, size_t queuedPackets);

    /** Takes back the room of a packet that was not queued; of the one taken latest, no other. */
    void giveBack(ByteBuffer packet);

  private:
    SharedBytes mBlock;
    size_t mUsed = 0;
    /** Where the packet taken latest begins. */
    size_t mLatest = 0;
    /** Blocks that were begun in a row while the queue was long. */
    size_t mBlocksOfLongQueue = 0;
};

}  // namespace android::ogm
