// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/Duration.h"

#include <log/log.h>

#include <algorithm>
#include <cinttypes>

#include "base/Time.h"
#include "base/Wrap.h"
#include "stream/StreamTypes.h"

namespace android::ogm {

namespace {

/** How many bytes at the end of the file are searched. */
constexpr int64_t kTailSize = 650520;

uint64_t granuleToTimeUs(const OgmStreamInfo& stream, uint64_t granulePosition) {
    switch (getLogicStrmType(stream.mType)) {
        case LogicStreamType::kVideo:
            return unitsToUs(granulePosition, stream.mTimeUnit);
        case LogicStreamType::kAudio:
            return samplesToUs(granulePosition, stream.mSampleRate);
        case LogicStreamType::kUnknown:
            break;
    }
    ALOGE("parseMaxTime:unknown stream type!");
    return 0;
}

}  // namespace

LogicStreamType getLogicStrmType(uint32_t streamType) {
    if (isVideoGranuleType(streamType)) {
        return LogicStreamType::kVideo;
    }
    if (isAudioType(streamType)) {
        return LogicStreamType::kAudio;
    }
    ALOGE("getLogicStrmType:[%d]unknow LOGIC STREAM TYPE!", streamType);
    return LogicStreamType::kUnknown;
}

int64_t parseMaxTime(const PageReader& pages, const StreamTable& streams) {
    // Negative for a shorter file. If the source refuses such a read, the duration is 0.
    int64_t offset = wrapSub(pages.dataSourceSize(), kTailSize);
    ALOGI("parseMaxTime: mDataSourceSize=%" PRId64 ", searchOffset=%" PRId64,
          pages.dataSourceSize(), offset);
    int64_t longest = 0;
    OgmPage page;
    while (offset < pages.dataSourceSize()) {
        const PageStep step = pages.nextPage(offset, &page);
        if (!step.isFound) {
            ALOGI("parseMaxTime:Cannot find a page start, from %" PRId64 "\n", offset);
            break;
        }
        if (!step.hasHeader()) {
            ALOGI("parseMaxTime:Cannot read a page header, at %" PRId64 "\n", step.offset);
            break;
        }
        offset = step.end();
        const OgmStreamInfo* const stream = streams.find(page.mSerialNo);
        if (stream == nullptr) {
            ALOGE("parseMaxTime: This logic stream[%d] is not exist in mTracks", page.mSerialNo);
            continue;
        }
        // No granule position is special: -1, on a page on which no packet ends, is the largest.
        longest = std::max(longest,
                           static_cast<int64_t>(granuleToTimeUs(*stream, page.mGranulePosition)));
    }
    ALOGI("File duration is %" PRId64 " us", longest);
    return longest;
}

}  // namespace android::ogm
