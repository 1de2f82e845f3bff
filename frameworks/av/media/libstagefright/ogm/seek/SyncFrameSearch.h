// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "packet/PacketQueue.h"

namespace android::ogm {

/**
 * The search of a video track for a sync frame after a seek. Packets are dropped until a sync frame
 * near the time searched for is found. If the packets are too late, the search steps back in time,
 * but only a limited number of times.
 *
 * Order of calls, while isSearching(): fill the queue (noteEndOfFile() if that is where it ended),
 * then searchQueue() it; after kTooLate stepBack(), empty the queue and move the cursor to
 * timeUs().
 */
class SyncFrameSearch {
  public:
    enum class Result {
        /** The oldest packet is a sync frame. */
        kFound,
        /** All packets but the open one were dropped. */
        kDrained,
        /** The oldest packet is too late, and so are all after it. */
        kTooLate,
    };

    explicit SyncFrameSearch(int64_t seekUs) : mSeekUs(seekUs), mSearchUs(seekUs) {}

    bool isSearching() const { return mRetries >= 0 && !mFound && !mSawEnd; }

    /** Ends the search after this round, even if a step back moves away from the end of the file.
     */
    void noteEndOfFile() { mSawEnd = true; }
    Result searchQueue(PacketQueue* packets);
    void stepBack();

    /** The time searched for, in us. */
    int64_t timeUs() const { return mSearchUs; }
    /** Steps back that are left; -1 after the last one, which went to the seek's own time. */
    int8_t retries() const { return mRetries; }

  private:
    const int64_t mSeekUs;
    int64_t mSearchUs;
    int8_t mRetries = 10;
    bool mFound = false;
    bool mSawEnd = false;
};

}  // namespace android::ogm
