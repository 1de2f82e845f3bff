// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBufferGroup.h>

#include "MediaStatus.h"

namespace android {

namespace {

MediaBufferGroup* toGroup(void* handle) {
    return static_cast<MediaBufferGroup*>(handle);
}

bool initGroup(void* handle, size_t buffers, size_t buffer_size, size_t growthLimit) {
    toGroup(handle)->init(buffers, buffer_size, growthLimit);
    return true;
}

void addBuffer(void* handle, size_t size) {
    if (MediaBufferBase* buffer = MediaBufferBase::Create(size)) {
        toGroup(handle)->add_buffer(buffer);
    }
}

media_status_t acquireBuffer(void* handle, CMediaBuffer** buffer, bool nonBlocking,
                             size_t requestedSize) {
    MediaBufferBase* acquired = nullptr;
    const status_t status = toGroup(handle)->acquire_buffer(&acquired, nonBlocking, requestedSize);
    *buffer = acquired != nullptr ? acquired->wrap() : nullptr;
    return toMediaStatus(status);
}

bool hasBuffers(void* handle) {
    return toGroup(handle)->has_buffers();
}

}  // namespace

CMediaBufferGroup* MediaBufferGroup::wrap() {
    const std::lock_guard<std::mutex> lock(mLock);
    if (mWrapper == nullptr) {
        mWrapper = std::make_unique<CMediaBufferGroup>();
        mWrapper->handle = this;
        mWrapper->init = initGroup;
        mWrapper->add_buffer = addBuffer;
        mWrapper->acquire_buffer = acquireBuffer;
        mWrapper->has_buffers = hasBuffers;
    }
    return mWrapper.get();
}

}  // namespace android
