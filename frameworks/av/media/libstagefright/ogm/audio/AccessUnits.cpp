// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <algorithm>
#include <optional>
#include <utility>

#include "OgmExtractor.h"
#include "audio/Cutters.h"
#include "base/Assert.h"

namespace android {

using ogm::ByteBuffer;
using ogm::ByteView;

namespace {

/** The time of a range whose time is not known; a later range's time stands in for it. */
constexpr int64_t kUnknownTimeUs = 4294967295;

constexpr const char* kNoRangeLeft =
        OGM_SOURCES "OgmExtractor:499 CHECK(!mRangeInfos.empty()) failed.";

}  // namespace

media_status_t OgmTrack::appendAudioData(ByteBuffer* data, int64_t timeUs) {
    if (!mPacketBuff.empty()) {
        mPacketBuff.append(data->view());
        mRangeInfos.push_back({timeUs, data->size()});
        giveBack(std::move(*data));
        return AMEDIA_OK;
    }
    const std::optional<size_t> start = findFirstSync(data->view());
    if (!start) {
        return AMEDIA_ERROR_MALFORMED;
    }
    data->dropFront(*start);
    mRangeInfos.push_back({timeUs, data->size()});
    mPacketBuff = std::move(*data);
    return AMEDIA_OK;
}

std::optional<size_t> OgmTrack::findFirstSync(ByteView data) const {
    std::optional<size_t> start;
    switch (mType) {
        case OGA_AUDIO_MP3:
        case OGA_AUDIO_MPEG:
            start = ogm::findMpegAudioSync(data);
            if (start.value_or(0) > 0) {
                ALOGI("found something resembling an MPEG audio syncword at offset %zd",
                      static_cast<ssize_t>(*start));
            }
            return start;
        case OGA_AUDIO_AC3:
            start = ogm::findAc3Sync(data, 0);
            if (start.value_or(0) > 0) {
                ALOGD("found something resembling an AC3 syncword at offset %ld",
                      static_cast<long>(*start));
            }
            return start;
        case OGA_AUDIO_DTS:
            start = ogm::findDtsStart(data);
            if (start.value_or(0) > 0) {
                ALOGI("found something resembling an DTS syncword at offset %ld",
                      static_cast<long>(*start));
            }
            return start;
        default:
            ALOGE("appendAudioData: UNKNOWN TYPE!");
            return 0;
    }
}

std::optional<AccessUnit> OgmTrack::dequeueAccessUnit() {
    switch (mType) {
        case OGA_AUDIO_MP3:
        case OGA_AUDIO_MPEG:
            return dequeueAccessUnitMpegAudio();
        case OGA_AUDIO_AC3:
            return dequeueAccessUnitAC3();
        case OGA_AUDIO_DTS:
            return dequeueAccessUnitDTS();
        default:
            return std::nullopt;
    }
}

ByteBuffer OgmTrack::takeFrame(size_t offset, size_t size) {
    ByteBuffer frame = mPacketBuff.isFull() ? mPacketBuff.part(offset, size)
                                            : copy(mPacketBuff.view().from(offset).first(size));
    dropBuffered(offset + size);
    return frame;
}

ByteBuffer OgmTrack::copy(ByteView bytes) {
    ByteBuffer piece = makePiece(bytes.size());
    std::copy_n(bytes.data(), bytes.size(), piece.data());
    return piece;
}

void OgmTrack::dropBuffered(size_t size) {
    mPacketBuff.dropFront(size);
    mSearched = 0;
}

/**
 * Throws the buffered bytes away. Their ranges stay: they are charged to later frames, whose times
 * lag behind until the ranges have caught up.
 */
void OgmTrack::discardBuffer() {
    mPacketBuff.clear();
    mSearched = 0;
}

int64_t OgmTrack::fetchTimestamp(uint64_t size) {
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
            ALOGE("fetchTimestamp - Change: %lld  %lld \n", static_cast<long long>(timeUs),
                  static_cast<long long>(laterUs));
            timeUs = laterUs;
        }
        remaining -= takeFromFrontRange(remaining);
    }
    if (timeUs == 0) {
        ALOGI("Returning 0 timestamp");
    }
    return timeUs;
}

/** Takes at most `size` bytes; a range of which nothing is left goes. Returns how many it took. */
uint64_t OgmTrack::takeFromFrontRange(uint64_t size) {
    RangeInfo& front = mRangeInfos.front();
    if (front.mLength > size) {
        front.mLength -= size;
        return size;
    }
    const uint64_t taken = front.mLength;
    mRangeInfos.pop_front();
    return taken;
}

}  // namespace android
