// SPDX-License-Identifier: Apache-2.0
#include "BufferGroup.h"

#include <algorithm>
#include <utility>

#include "MediaFormat.h"
#include "Record.h"

namespace android::ogm::trace {

namespace {

/** The contents of a new buffer, so that unwritten bytes are the same with every plug-in. */
constexpr uint8_t kUnwritten = 0xCD;

BufferGroup* groupOf(void* handle) {
    return static_cast<BufferGroup*>(handle);
}

}  // namespace

/** The functions of a buffer's table. */
class BufferTable {
  public:
    static void fill(CMediaBuffer* table, Buffer* buffer) {
        table->handle = buffer;
        table->release = release;
        table->data = data;
        table->size = size;
        table->range_offset = rangeOffset;
        table->range_length = rangeLength;
        table->set_range = setRange;
        table->meta_data = metaData;
    }

    static std::string describe(const Buffer& buffer) {
        return buffer.mName + " of " + std::to_string(buffer.capacity()) + ", range " +
               std::to_string(buffer.mRangeOffset) + " + " + std::to_string(buffer.mRangeLength) +
               ", " + formatText(buffer.mFormat) + ", " +
               contentText(buffer.mBytes.data() + std::min(buffer.mRangeOffset, buffer.capacity()),
                           lengthInside(buffer));
    }

    static const AMediaFormat* formatOf(const Buffer& buffer) { return buffer.mFormat; }

    static void release(void* handle) {
        record(Kind::kBuffer, "%s: release%s", nameOf(handle),
               self(handle)->mLent ? "" : ", which is free");
        self(handle)->mLent = false;
    }

  private:
    static Buffer* self(void* handle) { return static_cast<Buffer*>(handle); }
    static const char* nameOf(void* handle) { return self(handle)->mName.c_str(); }

    static size_t lengthInside(const Buffer& buffer) {
        const size_t rest = buffer.capacity() - std::min(buffer.mRangeOffset, buffer.capacity());
        return std::min(buffer.mRangeLength, rest);
    }

    static void* data(void* handle) {
        record(Kind::kBuffer, "%s: data", nameOf(handle));
        return self(handle)->mBytes.data();
    }
    static size_t size(void* handle) {
        record(Kind::kBuffer, "%s: size", nameOf(handle));
        return self(handle)->capacity();
    }
    static size_t rangeOffset(void* handle) {
        record(Kind::kBuffer, "%s: range offset", nameOf(handle));
        return self(handle)->mRangeOffset;
    }
    static size_t rangeLength(void* handle) {
        record(Kind::kBuffer, "%s: range length", nameOf(handle));
        return self(handle)->mRangeLength;
    }
    static void setRange(void* handle, size_t offset, size_t length) {
        record(Kind::kBuffer, "%s: set range %zu + %zu", nameOf(handle), offset, length);
        self(handle)->mRangeOffset = offset;
        self(handle)->mRangeLength = length;
    }
    static AMediaFormat* metaData(void* handle) {
        record(Kind::kBuffer, "%s: meta data", nameOf(handle));
        return self(handle)->mFormat;
    }
};

Buffer::Buffer(std::string name, size_t capacity)
    : mTable{},
      mName(std::move(name)),
      mBytes(capacity, kUnwritten),
      mFormat(newFormat("format of " + mName)) {
    BufferTable::fill(&mTable, this);
}

void Buffer::lend() {
    mLent = true;
    mRangeOffset = 0;
    mRangeLength = mBytes.size();
}

Buffer* bufferOf(CMediaBuffer* table) {
    return static_cast<Buffer*>(table->handle);
}

std::string describe(const Buffer& buffer) {
    return BufferTable::describe(buffer);
}

const AMediaFormat* formatOf(const Buffer& buffer) {
    return BufferTable::formatOf(buffer);
}

void giveBack(Buffer* buffer) {
    BufferTable::release(buffer);
}

BufferGroup::BufferGroup(std::string name, const GroupFault& fault)
    : mTable{}, mName(std::move(name)), mFault(fault) {
    mTable.handle = this;
    mTable.init = [](void* handle, size_t buffers, size_t size, size_t growthLimit) {
        return groupOf(handle)->init(buffers, size, growthLimit);
    };
    mTable.add_buffer = [](void* handle, size_t size) { groupOf(handle)->add(size); };
    mTable.acquire_buffer = [](void* handle, CMediaBuffer** buffer, bool nonBlocking, size_t size) {
        return groupOf(handle)->acquire(buffer, nonBlocking, size);
    };
    mTable.has_buffers = [](void* handle) { return groupOf(handle)->hasBuffers(); };
}

bool BufferGroup::init(size_t buffers, size_t bufferSize, size_t growthLimit) {
    record(Kind::kGroup, "%s: init %zu of %zu, at most %zu", mName.c_str(), buffers, bufferSize,
           growthLimit);
    mGrowthLimit = growthLimit > 0 ? std::max(growthLimit, buffers) : 0;
    for (size_t i = 0; i < buffers; ++i) {
        mBuffers.push_back(make(bufferSize));
    }
    return true;
}

void BufferGroup::add(size_t size) {
    record(Kind::kGroup, "%s: add a buffer of %zu", mName.c_str(), size);
    mBuffers.push_back(make(size));
}

media_status_t BufferGroup::acquire(CMediaBuffer** buffer, bool nonBlocking, size_t size) {
    const size_t number = mAcquisitions++;
    const bool refused = number >= mFault.first && number - mFault.first < mFault.count;
    Buffer* const found = refused ? nullptr : findOrMake(size);
    record(Kind::kGroup, "%s: acquire %zu%s -> %s", mName.c_str(), size,
           nonBlocking ? " at once" : "", found == nullptr ? "none" : found->name().c_str());
    if (found == nullptr && !refused && !nonBlocking) {
        recordEnd("waits for ever for a buffer");
    }
    if (found == nullptr) {
        *buffer = nullptr;
        return AMEDIA_ERROR_UNKNOWN;
    }
    found->lend();
    *buffer = found->table();
    return AMEDIA_OK;
}

bool BufferGroup::hasBuffers() const {
    record(Kind::kGroup, "%s: has buffers", mName.c_str());
    return mBuffers.size() < mGrowthLimit ||
           std::any_of(mBuffers.begin(), mBuffers.end(),
                       [](const Buffer* buffer) { return buffer->isFree(); });
}

Buffer* BufferGroup::findOrMake(size_t size) {
    for (Buffer* const buffer : mBuffers) {
        if (buffer->isFree() && buffer->capacity() >= size) {
            return buffer;
        }
    }
    Buffer* const replaced = smallestFreeBelow(size);
    if (replaced == nullptr && mBuffers.size() >= mGrowthLimit) {
        return nullptr;
    }
    Buffer* const made = make(size == 0 ? largest() : size + size / 2);
    if (replaced != nullptr) {
        std::replace(mBuffers.begin(), mBuffers.end(), replaced, made);
    } else {
        mBuffers.push_back(made);
    }
    return made;
}

Buffer* BufferGroup::smallestFreeBelow(size_t size) {
    Buffer* smallest = nullptr;
    for (Buffer* const buffer : mBuffers) {
        if (buffer->isFree() &&
            buffer->capacity() < (smallest == nullptr ? size : smallest->capacity())) {
            smallest = buffer;
        }
    }
    return smallest;
}

Buffer* BufferGroup::make(size_t size) {
    const std::string name = mName + ", buffer " + std::to_string(++mMade);
    return mStore.emplace_back(std::make_unique<Buffer>(name, size)).get();
}

size_t BufferGroup::largest() const {
    size_t size = 0;
    for (const Buffer* const buffer : mBuffers) {
        size = std::max(size, buffer->capacity());
    }
    return size;
}

}  // namespace android::ogm::trace
