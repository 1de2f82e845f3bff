// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/ByteBuffer.h"
#include "base/ByteView.h"
#include "base/Fifo.h"
#include "base/PacketStorage.h"
#include "base/PieceAllocator.h"
#include "packet/OgmPacket.h"

namespace android::ogm {

/**
 * The packets of a track that wait to be read, oldest first. Packets come in pieces: the last
 * packet stays open, and gets its bytes and its frame type when the next packet begins. Access
 * units of re-framed audio are complete when they are added.
 */
class PacketQueue final : public PieceAllocator {
  public:
    PacketQueue(uint32_t serialNo, uint32_t streamType) : mSerialNo(serialNo), mType(streamType) {}

    size_t size() const { return mPacketsQue.size(); }
    /** The oldest packet, which must exist. */
    const OgmPacket& front() const { return mPacketsQue.front(); }
    /** There must be a packet. */
    void popFront() { mPacketsQue.pop_front(); }

    /** Drops all packets, the open one included. */
    void clear();

    /** Closes the open packet and opens a new one. */
    void beginPacket(int64_t timeUs, uint64_t granulePosition);
    /** Appends bytes to the open packet. They may be moved away. */
    void appendBytes(ByteBuffer* piece);

    void addAccessUnit(int64_t timeUs, uint64_t granulePosition, ByteBuffer&& bytes);

    /**
     * Number of complete B frames directly after the oldest packet. The oldest packet must exist
     * and not be a B frame: after 255 B frames the index wraps to that packet, which ends the
     * count.
     */
    uint8_t countFollowingFrameType3() const;

    ByteBuffer makePiece(size_t size) override { return mStorage.take(size, mPacketsQue.size()); }
    /** Reuses the memory of the latest piece, unless it has been moved away and is empty. */
    void giveBack(ByteBuffer* piece) {
        if (piece->data() != nullptr) {
            mStorage.giveBack(std::move(*piece));
        }
    }

  private:
    void closePacket();
    int32_t getVideoFrameType(ByteView packet) const;

    const uint32_t mSerialNo;
    const uint32_t mType;

    Fifo<OgmPacket> mPacketsQue;
    /** The bytes of the open packet. */
    ByteBuffer mPacketBuff;
    SteppedCapacity mCapacity;
    /** Packets begun since the last clear(). */
    uint64_t NumOfVPackets = 0;
    PacketStorage mStorage;
};

}  // namespace android::ogm
