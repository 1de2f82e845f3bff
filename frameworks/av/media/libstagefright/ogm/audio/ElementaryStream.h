// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ByteBuffer.h"
#include "base/ByteView.h"
#include "base/Fifo.h"
#include "base/PieceRoom.h"

namespace android {

/** The bytes of an elementary stream that arrived with one time. */
struct RangeInfo {
    int64_t mTimestampUs = 0;
    /** Bytes of the range that have not been taken yet. */
    uint64_t mLength = 0;
};

/** A frame that was cut out of an elementary stream. */
struct AccessUnit {
    ogm::ByteBuffer bytes;
    /** -1 for a unit of no bytes. */
    int64_t timeUs = -1;
};

namespace ogm {

/**
 * The bytes of an audio stream from which frames are cut, and which time came with which of them.
 * It knows nothing of codecs: a cutter finds a frame among the bytes, takes it, and asks for the
 * time of as many bytes as it charges to the frame.
 */
class ElementaryStream {
  public:
    bool empty() const { return mPacketBuff.empty(); }
    size_t size() const { return mPacketBuff.size(); }
    ByteView view() const { return mPacketBuff.view(); }
    /** The ranges of which bytes are left, in the order in which they came. */
    const Fifo<RangeInfo>& ranges() const { return mRangeInfos; }

    /** Adds bytes that have the time `timeUs`. They may be moved away. */
    void append(ByteBuffer* bytes, int64_t timeUs);

    /** Takes a frame out, and drops the bytes before it. A copy is made in `room`. */
    ByteBuffer takeFrame(size_t offset, size_t size, PieceRoom* room);

    /** Drops bytes off the front. Their ranges stay; see fetchTimestamp(). */
    void dropBytes(size_t size);

    /**
     * Throws all bytes away. Their ranges stay: they are charged to later frames, whose times lag
     * until the ranges have caught up.
     */
    void discardBytes();

    /** Forgets bytes and ranges. */
    void clear();

    /**
     * Takes `size` bytes off the front of the ranges and returns the time of the first; -1 for no
     * bytes. Ends the process when there are not as many.
     */
    int64_t fetchTimestamp(uint64_t size);

    /**
     * Up to here a cutter has found no frame but at the start, so that it need not look again; 0
     * when bytes have been taken since.
     */
    size_t searched() const { return mSearched; }
    void setSearched(size_t position) { mSearched = position; }

  private:
    uint64_t takeFromFrontRange(uint64_t size);

    ByteBuffer mPacketBuff;
    size_t mSearched = 0;
    Fifo<RangeInfo> mRangeInfos;
};

}  // namespace ogm
}  // namespace android
