// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/foundation/ABuffer.h>

#include <stdlib.h>
#include <string.h>

#include <media/stagefright/foundation/AMessage.h>

#include "LibraryAssert.h"

namespace android {

ABuffer::ABuffer(size_t capacity)
    : mData(malloc(capacity)),
      mCapacity(mData != nullptr ? capacity : 0),
      mRangeOffset(0),
      mRangeLength(mCapacity),
      mInt32Data(0),
      mOwnsData(true) {}

ABuffer::ABuffer(void* data, size_t capacity)
    : mData(data),
      mCapacity(capacity),
      mRangeOffset(0),
      mRangeLength(capacity),
      mInt32Data(0),
      mOwnsData(false) {}

ABuffer::~ABuffer() {
    if (mOwnsData) {
        free(mData);
    }
}

sp<ABuffer> ABuffer::CreateAsCopy(const void* data, size_t capacity) {
    sp<ABuffer> copy = new ABuffer(capacity);
    if (copy->base() == nullptr) {
        return nullptr;
    }
    if (capacity > 0) {
        memcpy(copy->base(), data, capacity);
    }
    return copy;
}

void ABuffer::setRange(size_t offset, size_t size) {
    if (offset > mCapacity) {
        comparisonFailed({nullptr, "ABuffer.cpp:69", "CHECK_LE( offset,mCapacity)"}, offset,
                         mCapacity);
    }
    const size_t room = mCapacity - offset;
    if (size > room) {
        comparisonFailed({nullptr, "ABuffer.cpp:70", "CHECK_LE( size,mCapacity - offset)"}, size,
                         room);
    }
    mRangeOffset = offset;
    mRangeLength = size;
}

sp<AMessage> ABuffer::meta() {
    if (mMeta == nullptr) {
        mMeta = new AMessage;
    }
    return mMeta;
}

}  // namespace android
