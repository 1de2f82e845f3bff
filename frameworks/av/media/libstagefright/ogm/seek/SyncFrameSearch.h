// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "packet/PacketQueue.h"

namespace android::ogm {

/**
 * The search of a video track for a sync frame after a seek: packets are dropped until one is found
 * near the time searched for. When the packets lie too late, the search goes back in time, a few
 * times over.
 *
 * Order of calls, while goesOn(): fill the queue (noteEndOfFile() if that is where it ended), then
 * lookThrough() it; after kTooLate stepBack(), empty the queue and move the cursor to timeUs().
 */
class SyncFrameSearch {
  public:
    enum class Result {
        /** The oldest packet is a sync frame. */
        kFound,
        /** All packets but the open one were dropped. */
        kDrained,
        /** The oldest packet lies too late, and so does all that follows. */
        kTooLate,
    };

    explicit SyncFrameSearch(int64_t seekUs) : mSeekUs(seekUs), mSearchUs(seekUs) {}

    bool goesOn() const { return mRetries >= 0 && !mFound && !mSawEnd; }

    /** Ends the search after this round, even if a step back leaves the end of the file again. */
    void noteEndOfFile() { mSawEnd = true; }
    Result lookThrough(PacketQueue* packets);
    void stepBack();

    /** The time searched for, in us. */
    int64_t timeUs() const { return mSearchUs; }
    /** Steps back that are left; -1 after the last one, which went to the time of the seek itself.
     */
    int8_t retries() const { return mRetries; }

  private:
    const int64_t mSeekUs;
    int64_t mSearchUs;
    int8_t mRetries = 10;
    bool mFound = false;
    bool mSawEnd = false;
};

}  // namespace android::ogm
