// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/ByteBuffer.h"
#include "base/ByteView.h"
#include "base/Fifo.h"
#include "base/PieceAllocator.h"

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
 * The bytes of an audio stream from which frames are cut, with their times. It knows nothing of
 * codecs: a cutter finds a frame in the bytes, takes it, and asks for the time of the number of
 * bytes that it charges to the frame.
 */
class ElementaryStream {
  public:
    bool empty() const { return mPacketBuff.empty(); }
    size_t size() const { return mPacketBuff.size(); }
    ByteView view() const { return mPacketBuff.view(); }
    /** The ranges that still have bytes, oldest first. */
    const Fifo<RangeInfo>& ranges() const { return mRangeInfos; }

    /** Appends bytes with the time `timeUs`. They may be moved away. */
    void append(ByteBuffer* bytes, int64_t timeUs);

    /** Takes a frame out and drops the bytes before it. `allocator` is used if it has to copy. */
    ByteBuffer takeFrame(size_t offset, size_t size, PieceAllocator* allocator);

    /** Drops bytes from the front. Their ranges stay; see fetchTimestamp(). */
    void dropBytes(size_t size);

    /**
     * Drops all bytes. Their ranges stay and are charged to later frames, whose times lag until
     * these ranges are used up.
     */
    void discardBytes();

    /** Drops bytes and ranges. */
    void clear();

    /**
     * Takes `size` bytes from the front of the ranges and returns the time of the first byte; -1 if
     * `size` is 0. Ends the process if the ranges have fewer bytes.
     */
    int64_t fetchTimestamp(uint64_t size);

    /**
     * Up to here a cutter has found no frame except at the start, so it need not search again; 0
     * after bytes have been taken.
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
