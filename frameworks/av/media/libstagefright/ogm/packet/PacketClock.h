// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "packet/OgmPacket.h"

namespace android::ogm {

/**
 * Computes the times of a stream's packets from the granule positions of the current page and the
 * page before, and from the number of packets counted on them. It is updated for each page that
 * the cursor enters.
 *
 * The granule positions come from a file, so they may have any value; each has a defined result.
 */
class PacketClock {
  public:
    /**
     * `sampleRate` is in Hz, `timeUnit` in 100 ns per frame. If the time unit is 0, times are
     * computed from the sample rate; if both are 0, all times are 0. The type is for the log.
     */
    PacketClock(uint32_t streamType, int32_t sampleRate, int32_t timeUnit)
        : mType(streamType), mSampleRate(sampleRate), mTimeUnit(timeUnit) {}

    /** Sets the clock to its state before the first page. */
    void reset(bool isPastFirstDataPage);

    /** To be called for each page. `averagePerPacket` is the number of granules of its packets. */
    void updateGranulePosition(uint64_t granulePosition, uint64_t averagePerPacket,
                               bool isPastFirstDataPage);

    /** Counts a packet of re-framed audio, at most as many as the page has granules. */
    void countPacket();

    /** Whether the two granule positions may be used. */
    bool isValid() const { return mGranuleValid; }

    /** Of a packet that begins at the cursor. */
    uint64_t granulePosition() const { return packetPosition(1); }

    /**
     * Time in us of a packet of `size` bytes that begins at the cursor; nothing if isValid() is
     * false. Logs either.
     */
    std::optional<int64_t> packetTimeUs(size_t size);

    /** The same for a packet of re-framed audio. */
    std::optional<int64_t> accessUnitTimeUs(size_t size) const;

    /** The time at the cursor in us; 0 if unknown. */
    int64_t currentTimeUs() const;

    /**
     * Time in us at which a frame is shown. Packets come in decoding order: a B frame is shown one
     * frame earlier; any other frame is shown `followingBFrames` frames later.
     */
    int64_t displayTimeUs(const OgmPacket& packet, uint8_t followingBFrames) const;

  private:
    /** Granule position of the next packet if each packet has `averagePerPacket` granules. */
    uint64_t packetPosition(uint64_t averagePerPacket) const;
    int64_t sampleTimeUs(uint64_t averagePerPacket) const;
    int64_t computeSampleTime(size_t size);

    const uint32_t mType;
    const int32_t mSampleRate;
    const int32_t mTimeUnit;

    uint64_t mCurGranulePosition = 0;
    uint64_t mPreGranulePosition = 0;
    /** The latest computed number of granules per packet; 0 if there is none. */
    uint64_t mBaseAvgGranPos = 0;
    uint64_t averGranulePosition = 1;
    uint8_t mPageGranuleDelta = 0;
    uint8_t mPrePageSamplesOut = 0;
    uint8_t mCurrentPageSamplesOut = 0;
    bool mGranuleValid = false;
};

}  // namespace android::ogm
