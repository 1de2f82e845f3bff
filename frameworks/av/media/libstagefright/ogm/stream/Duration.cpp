// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/Duration.h"

#include <algorithm>

#include "OgmExtractor.h"
#include "base/Time.h"
#include "base/Wrap.h"
#include "stream/StreamTypes.h"

namespace android {

using ogm::wrapAdd;
using ogm::wrapSub;

namespace {

/** The part at the end of the file whose pages tell the duration, in bytes. */
constexpr int64_t kTailSize = 650520;

}  // namespace

LogicStreamType getLogicStrmType(uint32_t streamType) {
    if (streamType >= ogm::kFirstVideoType && streamType <= ogm::kLastVideoType) {
        return LogicStreamType::kVideo;
    }
    if (ogm::isAudioType(streamType)) {
        return LogicStreamType::kAudio;
    }
    ALOGE("getLogicStrmType:[%d]unknow LOGIC STREAM TYPE!", static_cast<int>(streamType));
    return LogicStreamType::kUnknown;
}

namespace {

uint64_t granuleToTimeUs(const OgmStreamInfo& stream, uint64_t granulePosition) {
    switch (getLogicStrmType(stream.mType)) {
        case LogicStreamType::kVideo:
            return ogm::unitsToUs(granulePosition, stream.mTimeUnit);
        case LogicStreamType::kAudio:
            return ogm::samplesToUs(granulePosition, stream.mSampleRate);
        case LogicStreamType::kUnknown:
            break;
    }
    ALOGE("parseMaxTime:unknown stream type!");
    return 0;
}

}  // namespace

void OgmExtractor::parseMaxTime() {
    // Below 0 for a file that is shorter: a source that refuses such a read leaves the duration 0.
    int64_t offset = wrapSub(mDataSourceSize, kTailSize);
    ALOGI("parseMaxTime: mDataSourceSize=%lld, searchOffset=%ld",
          static_cast<long long>(mDataSourceSize), offset);
    int64_t longest = 0;
    while (offset < mDataSourceSize) {
        int64_t pageOffset = 0;
        if (FindPage(offset, &pageOffset, 0) != AMEDIA_OK) {
            ALOGI("parseMaxTime:Cannot find a page start, from %ld\n", offset);
            break;
        }
        OgmPage page;
        const int64_t pageSize = readPage(pageOffset, &page);
        if (pageSize < 1) {
            ALOGI("parseMaxTime:Cannot read a page header, at %ld\n", pageOffset);
            break;
        }
        offset = wrapAdd(pageOffset, pageSize);
        const OgmStreamInfo* const stream = findStream(page.mSerialNo);
        if (stream == nullptr) {
            ALOGE("parseMaxTime: This logic stream[%d] is not exist in mTracks",
                  static_cast<int>(page.mSerialNo));
            continue;
        }
        // No granule position is special: that of a page on which no packet ends (-1) counts too,
        // and wins.
        longest = std::max(longest,
                           static_cast<int64_t>(granuleToTimeUs(*stream, page.mGranulePosition)));
    }
    mDuration = longest;
    ALOGI("File duration is %lld us", static_cast<long long>(mDuration));
    for (const OgmStreamInfo& stream : mTracks) {
        AMediaFormat_setInt64(stream.mFormat.get(), AMEDIAFORMAT_KEY_DURATION, mDuration);
    }
}

}  // namespace android
