// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>

/** A buffer table whose functions record their arguments and return distinct values. */
class FakeBuffer {
  public:
    FakeBuffer() {
        mTable.handle = this;
        mTable.release = [](void* handle) { ++self(handle)->releases; };
        mTable.data = [](void* handle) -> void* { return &self(handle)->bytes; };
        mTable.size = [](void* handle) { return self(handle)->capacity; };
        mTable.range_offset = [](void* handle) { return self(handle)->offset; };
        mTable.range_length = [](void* handle) { return self(handle)->length; };
        mTable.set_range = [](void* handle, size_t offset, size_t length) {
            self(handle)->offset = offset;
            self(handle)->length = length;
        };
        mTable.meta_data = [](void* handle) { return self(handle)->format; };
    }
    FakeBuffer(const FakeBuffer&) = delete;
    FakeBuffer& operator=(const FakeBuffer&) = delete;

    android::CMediaBuffer* table() { return &mTable; }

    int releases = 0;
    char bytes = 0;
    size_t capacity = 100;
    size_t offset = 10;
    size_t length = 20;
    AMediaFormat* format = nullptr;

  private:
    static FakeBuffer* self(void* handle) { return static_cast<FakeBuffer*>(handle); }

    android::CMediaBuffer mTable;
};
