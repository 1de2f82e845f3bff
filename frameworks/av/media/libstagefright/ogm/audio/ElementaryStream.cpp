// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "audio/ElementaryStream.h"

#include <log/log.h>

#include <algorithm>
#include <cinttypes>
#include <utility>

#include "base/Assert.h"

namespace android::ogm {

namespace {

/** Marks a range whose time is unknown; the time of a later range is used instead. */
constexpr int64_t kUnknownTimeUs = 4294967295;

constexpr const char* kNoRangeLeft =
        OGM_SOURCES "OgmExtractor:499 CHECK(!mRangeInfos.empty()) failed.";

ByteBuffer copyOf(ByteView bytes, PieceAllocator* allocator) {
    ByteBuffer copy = allocator->makePiece(bytes.size());
    std::copy_n(bytes.data(), bytes.size(), copy.data());
    return copy;
}

}  // namespace

void ElementaryStream::append(ByteBuffer* bytes, int64_t timeUs) {
    mRangeInfos.emplace_back(timeUs, uint64_t{bytes->size()});
    if (mPacketBuff.empty()) {
        mPacketBuff = std::move(*bytes);
    } else {
        mPacketBuff.append(bytes->view());
    }
}

ByteBuffer ElementaryStream::takeFrame(size_t offset, size_t size, PieceAllocator* allocator) {
    // A part shares the storage, so the next append has to allocate. If the storage is full, it has
    // to allocate anyway; otherwise the frame is copied.
    ByteBuffer frame = mPacketBuff.isFull()
                               ? mPacketBuff.part(offset, size)
                               : copyOf(mPacketBuff.view().from(offset).first(size), allocator);
    dropBytes(offset + size);
    return frame;
}

void ElementaryStream::dropBytes(size_t size) {
    mPacketBuff.dropFront(size);
    mSearched = 0;
}

void ElementaryStream::discardBytes() {
    mPacketBuff.clear();
    mSearched = 0;
}

void ElementaryStream::clear() {
    discardBytes();
    mRangeInfos.clear();
}

int64_t ElementaryStream::fetchTimestamp(uint64_t size) {
    if (size == 0) {
        return -1;
    }
    OGM_CHECK(!mRangeInfos.empty(), kNoRangeLeft);
    int64_t timeUs = mRangeInfos.front().mTimestampUs;
    uint64_t remaining = size;
    remaining -= takeFromFrontRange(remaining);
    while (remaining != 0) {
        OGM_CHECK(!mRangeInfos.empty(), kNoRangeLeft);
        const int64_t laterUs = mRangeInfos.front().mTimestampUs;
        if (timeUs == kUnknownTimeUs && laterUs != 0) {
            ALOGE("fetchTimestamp - Change: %" PRId64 "  %" PRId64 " \n", timeUs, laterUs);
            timeUs = laterUs;
        }
        remaining -= takeFromFrontRange(remaining);
    }
    if (timeUs == 0) {
        ALOGI("Returning 0 timestamp");
    }
    return timeUs;
}

/** Takes at most `size` bytes and removes the range if none are left. Returns the number taken. */
uint64_t ElementaryStream::takeFromFrontRange(uint64_t size) {
    RangeInfo& front = mRangeInfos.front();
    if (front.mLength > size) {
        front.mLength -= size;
        return size;
    }
    const uint64_t taken = front.mLength;
    mRangeInfos.pop_front();
    return taken;
}

}  // namespace android::ogm
