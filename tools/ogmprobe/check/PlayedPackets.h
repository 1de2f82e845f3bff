// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "records/Packet.h"

namespace ogmprobe::check {

/** What is to be known of the packets of a track, gathered while they come out. */
class PlayedPackets {
  public:
    void add(const Packet& packet);

    uint64_t count() const { return mCount; }
    uint64_t syncCount() const { return mSyncCount; }
    /** Enough of the first bytes for the headers inside a stream. */
    const std::vector<uint8_t>& head() const { return mHead; }
    /** Bits a second; nothing for what is too short to tell. */
    std::optional<double> bitrate() const;
    /** The longest time without a sync frame, between them and to both ends; 0 without one. */
    int64_t longestWithoutSyncUs() const;

    /** Packets that have the time of the one before. */
    uint64_t sharedTimes() const { return mShared; }
    /** The most packets of one time, one behind the other, and the longest time to the next one. */
    uint64_t mostOfOneTime() const { return mLongestRun; }
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
