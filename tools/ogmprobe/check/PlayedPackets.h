// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "records/Packet.h"

namespace ogmprobe::check {

/** Statistics of a track's packets, collected while they are returned. */
class PlayedPackets {
  public:
    void add(const Packet& packet);

    uint64_t count() const { return mCount; }
    uint64_t syncCount() const { return mSyncCount; }
    /** Returns the first bytes, enough for the headers inside a stream. */
    const std::vector<uint8_t>& head() const { return mHead; }
    /** Returns bits per second; nothing if the track is too short. */
    std::optional<double> bitrate() const;
    /**
     * Returns the longest time without a sync frame, including the times before the first and after
     * the last one; 0 if there are no sync frames.
     */
    int64_t longestWithoutSyncUs() const;

    /** Returns the number of packets with the time of the packet before. */
    uint64_t sharedTimes() const { return mShared; }
    /** Return the most consecutive packets with one time, and the longest time to the next packet.
     */
    uint64_t mostWithOneTime() const { return mLongestRun; }
    int64_t longestStepUs() const { return mLongestStepUs; }

  private:
    void noteTime(int64_t timeUs);

    uint64_t mCount = 0;
    uint64_t mSyncCount = 0;
    uint64_t mBytes = 0;
    int64_t mLeastUs = 0;
    int64_t mMostUs = 0;
    int64_t mLastSyncUs = 0;
    int64_t mLongestUs = 0;
    int64_t mBeforeUs = 0;
    uint64_t mShared = 0;
    uint64_t mRun = 0;
    uint64_t mLongestRun = 0;
    int64_t mLongestStepUs = 0;
    std::vector<uint8_t> mHead;
};

}  // namespace ogmprobe::check
