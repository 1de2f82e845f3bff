// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ABuffer.h>

#include <stdlib.h>

namespace android {

ABuffer::ABuffer(size_t capacity)
    : mData(malloc(capacity)), mCapacity(mData != nullptr ? capacity : 0) {}

ABuffer::~ABuffer() {
    free(mData);
}

}  // namespace android
