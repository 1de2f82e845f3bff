// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/stagefright/foundation/ABuffer.h>

#include <cstdint>
#include <deque>
#include <mutex>

namespace android {

/** Buffers of a track that wait to be handed on. Nothing adds to it; a discontinuity empties it. */
class OgmBufferQueue {
  public:
    virtual ~OgmBufferQueue() = default;

    void clear();

  private:
    std::mutex mLock;
    std::deque<sp<ABuffer>> mBuffers;
    int64_t mCount = 0;
};

}  // namespace android
