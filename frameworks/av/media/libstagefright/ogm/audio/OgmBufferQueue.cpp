// SPDX-License-Identifier: Apache-2.0
#include "audio/OgmBufferQueue.h"

namespace android {

void OgmBufferQueue::clear() {
    const std::lock_guard<std::mutex> lock(mLock);
    mBuffers.clear();
    mCount = 0;
}

}  // namespace android
