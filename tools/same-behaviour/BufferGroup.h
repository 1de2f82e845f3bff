// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/MediaExtractorPluginApi.h>
#include <media/NdkMediaFormat.h>

#include <memory>
#include <string>
#include <vector>

namespace android::ogm::trace {

/** When a group refuses a buffer although it could lend one. */
struct GroupFault {
    /** The first acquisition that is refused, counted from 0. */
    size_t first = 0;
    size_t count = 0;
};

/** A buffer as the framework lends it. Everything done with it is recorded. */
class Buffer {
  public:
    Buffer(std::string name, size_t capacity);
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;

    CMediaBuffer* table() { return &mTable; }
    const std::string& name() const { return mName; }
    size_t capacity() const { return mBytes.size(); }
    bool isFree() const { return !mLent; }
    void lend();

  private:
    friend class BufferTable;

    CMediaBuffer mTable;
    const std::string mName;
    std::vector<uint8_t> mBytes;
    AMediaFormat* const mFormat;
    size_t mRangeOffset = 0;
    size_t mRangeLength = 0;
    bool mLent = false;
};

/** Returns the buffer that a table of this program belongs to. */
Buffer* bufferOf(CMediaBuffer* table);
/** Returns range, entries and bytes of a lent buffer as text. Records nothing. */
std::string describe(const Buffer& buffer);
const AMediaFormat* formatOf(const Buffer& buffer);
/** Returns a buffer to its group, as its last user. */
void giveBack(Buffer* buffer);

/**
 * A group that chooses its buffers like the framework's: the first free one that is large enough;
 * otherwise a new one of 3/2 of the size, which replaces the smallest free one or is added. Buffers
 * keep their addresses until the process ends.
 */
class BufferGroup {
  public:
    BufferGroup(std::string name, const GroupFault& fault);
    BufferGroup(const BufferGroup&) = delete;
    BufferGroup& operator=(const BufferGroup&) = delete;

    CMediaBufferGroup* table() { return &mTable; }

  private:
    bool init(size_t buffers, size_t bufferSize, size_t growthLimit);
    void add(size_t size);
    media_status_t acquire(CMediaBuffer** buffer, bool nonBlocking, size_t size);
    bool hasBuffers() const;
    Buffer* findOrMake(size_t size);
    Buffer* smallestFreeBelow(size_t size);
    Buffer* make(size_t size);
    size_t largest() const;

    CMediaBufferGroup mTable;
    const std::string mName;
    const GroupFault mFault;
    size_t mGrowthLimit = 0;
    size_t mMade = 0;
    size_t mAcquisitions = 0;
    std::vector<Buffer*> mBuffers;
    std::vector<std::unique_ptr<Buffer>> mStore;
};

}  // namespace android::ogm::trace
