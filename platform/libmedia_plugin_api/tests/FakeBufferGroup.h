// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

/** A buffer group table that records its arguments and returns what the test has set. */
class FakeBufferGroup {
  public:
    FakeBufferGroup() {
        mTable.handle = this;
        mTable.init = [](void* handle, size_t buffers, size_t bufferSize, size_t growthLimit) {
            self(handle)->initBuffers = buffers;
            self(handle)->initBufferSize = bufferSize;
            self(handle)->initGrowthLimit = growthLimit;
            return self(handle)->initResult;
        };
        mTable.add_buffer = [](void* handle, size_t size) { self(handle)->addedSize = size; };
        mTable.acquire_buffer = [](void* handle, android::CMediaBuffer** buffer, bool nonBlocking,
                                   size_t requestedSize) {
            self(handle)->acquireNonBlocking = nonBlocking;
            self(handle)->acquireRequestedSize = requestedSize;
            if (self(handle)->acquireWrites) {
                *buffer = self(handle)->acquiredBuffer;
            }
            return self(handle)->acquireResult;
        };
        mTable.has_buffers = [](void* handle) { return self(handle)->hasBuffers; };
    }
    FakeBufferGroup(const FakeBufferGroup&) = delete;
    FakeBufferGroup& operator=(const FakeBufferGroup&) = delete;

    android::CMediaBufferGroup* table() { return &mTable; }

    bool initResult = true;
    android::CMediaBuffer* acquiredBuffer = nullptr;
    bool acquireWrites = true;
    media_status_t acquireResult = AMEDIA_OK;
    bool hasBuffers = false;

    size_t initBuffers = 0;
    size_t initBufferSize = 0;
    size_t initGrowthLimit = 99;
    size_t addedSize = 0;
    bool acquireNonBlocking = true;
    size_t acquireRequestedSize = 99;

  private:
    static FakeBufferGroup* self(void* handle) { return static_cast<FakeBufferGroup*>(handle); }

    android::CMediaBufferGroup mTable;
};
