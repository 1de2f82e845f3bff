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

  private:
    uint64_t mCount = 0;
    uint64_t mSyncCount = 0;
    uint64_t mBytes = 0;
    int64_t mLeastUs = 0;
    int64_t mMostUs = 0;
    int64_t mLastSyncUs = 0;
    int64_t mLongestUs = 0;
    std::vector<uint8_t> mHead;
};

}  // namespace ogmprobe::check
