// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "packet/OgmPacket.h"

namespace android::ogm {

/**
 * What time a stream's packets have. It is given each page of the stream that is entered, and
 * packets that are counted on it, and computes times from the granule positions of that page
 * and the one before.
 *
 * The granule positions come from a file: any numbers are possible, and each has a defined result.
 */
class PacketClock {
  public:
    /**
     * `sampleRate` is in Hz, `timeUnit` in 100 ns a frame; a stream whose time unit is 0 is timed
     * by its sample rate, and one that has neither is not timed. The type is for the log.
     */
    PacketClock(uint32_t streamType, int32_t sampleRate, int32_t timeUnit)
        : mType(streamType), mSampleRate(sampleRate), mTimeUnit(timeUnit) {}

    /** Sets the clock to what it is before the first page. */
    void reset(bool isPastFirstDataPage);

    /** A page has been entered. `averagePerPacket` is the granule advance of each packet on it. */
    void updateGranulePosition(uint64_t granulePosition, uint64_t averagePerPacket,
                               bool isPastFirstDataPage);

    /** A packet of re-framed audio begins; no more are counted than the page's granules. */
    void countPacket();

    /** Whether the two granule positions may be used. */
    bool isValid() const { return mGranuleValid; }

    /** Of a packet that begins now. */
    uint64_t granulePosition() const { return packetPosition(1); }

    /**
     * Time in us of a packet of `size` bytes that begins now; nothing when the granule positions
     * may not be used. Both are logged.
     */
    std::optional<int64_t> packetTimeUs(size_t size);

    /** The same for a packet of re-framed audio. */
    std::optional<int64_t> accessUnitTimeUs(size_t size) const;

    /** Time in us at which reading has arrived, 0 when it is not known. */
    int64_t currentTimeUs() const;

    /**
     * Time in us at which a frame is shown. Packets come in decoding order: a B frame is shown one
     * frame earlier, and any other later by the `followingBFrames` that are shown before it.
     */
    int64_t displayTimeUs(const OgmPacket& packet, uint8_t followingBFrames) const;

  private:
    /** Granule position of the next packet if each takes up `averagePerPacket`. */
    uint64_t packetPosition(uint64_t averagePerPacket) const;
    int64_t sampleTimeUs(uint64_t averagePerPacket) const;
    int64_t computeSampleTime(size_t size);

    const uint32_t mType;
    const int32_t mSampleRate;
    const int32_t mTimeUnit;

    uint64_t mCurGranulePosition = 0;
    uint64_t mPreGranulePosition = 0;
    /** What a packet took up when that was computed last; 0 when it never was. */
    uint64_t mBaseAvgGranPos = 0;
    uint64_t averGranulePosition = 1;
    uint8_t mPageGranuleDelta = 0;
    uint8_t mPrePageSamplesOut = 0;
    uint8_t mCurrentPageSamplesOut = 0;
    bool mGranuleValid = false;
};

}  // namespace android::ogm
