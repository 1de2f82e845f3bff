// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBuffer.h>

#include <android/log.h>
#include <stdlib.h>

#include "LibraryAssert.h"

namespace android {

namespace {

constexpr char kTag[] = "MediaBuffer";

}  // namespace

MediaBufferBase* MediaBufferBase::Create(size_t size) {
    auto* buffer = new MediaBuffer(size);
    if (buffer->data() == nullptr) {
        buffer->release();
        __android_log_print(ANDROID_LOG_ERROR, kTag, "no memory for a buffer of %zu bytes", size);
        return nullptr;
    }
    return buffer;
}

MediaBuffer::MediaBuffer(size_t size)
    : mObserver(nullptr),
      mRefCount(0),
      mData(malloc(size)),
      mSize(size),
      mRangeOffset(0),
      mRangeLength(size) {}

MediaBuffer::~MediaBuffer() {
    free(mData);
}

void MediaBuffer::release() {
    if (mObserver == nullptr) {
        if (const int uses = refcount(); uses != 0) {
            comparisonFailed({kTag, "MediaBuffer.cpp:108", "CHECK_EQ( mRefCount,0)"}, uses, 0);
        }
        delete this;
        return;
    }
    // When the count is 0, the group may lend the buffer again. From here on only the observer is
    // used, which outlives its buffers.
    MediaBufferObserver* const observer = mObserver;
    const int prevCount = mRefCount.fetch_sub(1);
    if (prevCount <= 0) {
        checkFailed({kTag, "MediaBuffer.cpp:122", "CHECK(prevCount > 0)"});
    }
    if (prevCount == 1) {
        observer->signalBufferReturned(this);
    }
}

void MediaBuffer::add_ref() {
    mRefCount.fetch_add(1, std::memory_order_relaxed);
}

void MediaBuffer::set_range(size_t offset, size_t length) {
    // The sum may wrap; such a range is accepted, as on the device.
    size_t end;
    (void)__builtin_add_overflow(offset, length, &end);
    if (end > mSize) {
        __android_log_print(ANDROID_LOG_ERROR, kTag,
                            "range of %zu bytes at %zu lies beyond a buffer of %zu bytes", length,
                            offset, mSize);
        checkFailed({kTag, "MediaBuffer.cpp:145", "CHECK(offset + length <= mSize)"});
    }
    mRangeOffset = offset;
    mRangeLength = length;
}

void MediaBuffer::reset() {
    set_range(0, mSize);
}

void MediaBuffer::setObserver(MediaBufferObserver* group) {
    if (group != nullptr && mObserver != nullptr) {
        checkFailed(
                {kTag, "MediaBuffer.cpp:171", "CHECK(group == nullptr || mObserver == nullptr)"});
    }
    mObserver = group;
}

}  // namespace android
