// SPDX-License-Identifier: Apache-2.0
#include <media/stagefright/MediaBufferBase.h>

namespace android {

namespace {

MediaBufferBase* toBuffer(void* handle) {
    return static_cast<MediaBufferBase*>(handle);
}

}  // namespace

MediaBufferBase::MediaBufferBase() : mFormat(nullptr) {}

MediaBufferBase::~MediaBufferBase() {
    AMediaFormat_delete(mFormat);
}

CMediaBuffer* MediaBufferBase::wrap() {
    if (mWrapper == nullptr) {
        mWrapper = std::make_unique<CMediaBuffer>();
        mWrapper->handle = this;
        mWrapper->release = [](void* handle) { toBuffer(handle)->release(); };
        mWrapper->data = [](void* handle) { return toBuffer(handle)->data(); };
        mWrapper->size = [](void* handle) { return toBuffer(handle)->size(); };
        mWrapper->range_offset = [](void* handle) { return toBuffer(handle)->range_offset(); };
        mWrapper->range_length = [](void* handle) { return toBuffer(handle)->range_length(); };
        mWrapper->set_range = [](void* handle, size_t offset, size_t length) {
            toBuffer(handle)->set_range(offset, length);
        };
        mWrapper->meta_data = [](void* handle) { return toBuffer(handle)->format(); };
    }
    return mWrapper.get();
}

AMediaFormat* MediaBufferBase::format() {
    if (mFormat == nullptr) {
        mFormat = AMediaFormat_new();
    }
    return mFormat;
}

}  // namespace android
