// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <algorithm>

#include "OgmExtractor.h"
#include "audio/OgmBufferQueue.h"
#include "audio/OgmEsQueue.h"
#include "base/Time.h"
#include "base/Wrap.h"
#include "codec/FrameType.h"
#include "stream/StreamTypes.h"

namespace android {

using ogm::wrapAdd;
using ogm::wrapDiv;
using ogm::wrapMul;
using ogm::wrapSub;

namespace {

/** How far before the target reading starts, and how far each further search goes back. */
constexpr int64_t kLeadUs = 3'000'000;
/** Up to here a seek goes to the first data page. */
constexpr int64_t kMaxStartSeekUs = 2'999'999;
/** A seek this close to the end goes to the end. */
constexpr int64_t kEndZoneUs = 200'000;
/** How far behind its goal a scan may end, and a sync frame may lie. */
constexpr int64_t kToleranceUs = 2'000'000;

constexpr int64_t kLongStep = 0x40000;
constexpr int64_t kShortStep = 0x10000;
constexpr int64_t kMinOffsetForLongStep = 0x50000;

constexpr int8_t kSyncFrameRetries = 10;

// The places that the log lines name.
constexpr int kEstimateLine = 2449;
constexpr int kGiveUpLine = 1210;
constexpr int kStepBackLine = 1228;

int64_t stepBackFrom(int64_t offset) {
    if (offset >= kMinOffsetForLongStep) {
        return offset - kLongStep;
    }
    return offset >= kShortStep ? offset - kShortStep : 0;
}

}  // namespace

int32_t OgmExtractor::seekToTime(int64_t timeUs) {
    if (timeUs <= kMaxStartSeekUs) {
        resetTracks();
        (void)seekToPage(mFirstDataPageOffset, 0);
        return 0;
    }
    if (mDuration != 0 && wrapSub(mDuration, timeUs) < kEndZoneUs) {
        resetTracks();
        (void)seekToPage(mDataSourceSize, 0);
        return 0;
    }
    resetTracks();
    mSeekDone = false;
    scanToTime(timeUs);
    mSeekDone = true;
    return 0;
}

int64_t OgmExtractor::estimateOffset(int64_t targetUs) const {
    const int64_t dataSize = wrapSub(mDataSourceSize, mFirstDataPageOffset);
    return wrapAdd(mFirstDataPageOffset, wrapDiv(wrapMul(dataSize, targetUs), mDuration));
}

void OgmExtractor::scanToTime(int64_t seekUs) {
    const int64_t targetUs = seekUs - kLeadUs;
    int64_t offset = mFirstDataPageOffset;
    if (mDuration != 0) {
        offset = estimateOffset(targetUs);
        ALOGI("%s, %d, searchOffset=%lld", "seekToTime", kEstimateLine,
              static_cast<long long>(offset));
    }
    // Set once: where a later round cannot read on at all, the time of the round before counts.
    int64_t currentUs = 0;
    do {
        offset = stepBackFrom(offset);
        (void)seekToPage(offset, 0);
        do {
            if (readNextPacket() != AMEDIA_OK) {
                break;
            }
            currentUs = getCurrentTimeUs();
        } while (currentUs < targetUs);
        ALOGI("mFirstDataPageOffset = %ld,mDataSourceSize = %lld,mDuration = %lld,"
              "searchOffset=%lld,seekTimeUs=%lld,seekTargetUs=%lld",
              mFirstDataPageOffset, static_cast<long long>(mDataSourceSize),
              static_cast<long long>(mDuration), static_cast<long long>(offset),
              static_cast<long long>(currentUs), static_cast<long long>(targetUs));
        if (offset == 0) {
            ALOGI("has search seek point from file beginning, Exit!");
            return;
        }
    } while (wrapSub(currentUs, targetUs) > kToleranceUs);
}

int64_t OgmExtractor::getCurrentTimeUs() const {
    int64_t latest = 0;
    for (const auto& [serialNo, track] : mStartedTracks) {
        if (track == nullptr) {
            continue;
        }
        const int64_t timeUs = track->currentTimeUs();
        if (timeUs == 0) {
            return 0;
        }
        latest = std::max(latest, timeUs);
    }
    return latest;
}

void OgmExtractor::resetTracks() {
    for (const auto& [serialNo, track] : mStartedTracks) {
        if (track != nullptr) {
            track->signalDiscontinuity();
        }
    }
}

int64_t OgmTrack::currentTimeUs() const {
    if (!mGranuleValid) {
        return 0;
    }
    if (mTimeUnit != 0) {
        return static_cast<int64_t>(ogm::unitsToUs(packetPosition(1), mTimeUnit));
    }
    return sampleTimeUs(1);
}

void OgmTrack::signalDiscontinuity() {
    if (mEsQueue == nullptr) {
        return;
    }
    const std::lock_guard<std::mutex> lock(mLock);
    ALOGI("OgmTrack:mSerialNo[%d] signalDiscontinuity!", static_cast<int>(mSerialNo));
    mEsQueue->clear(false);
    mEsQueue->setDiscontinuity(false);
    mBufferQueue->clear();
    dropQueued();
}

void OgmTrack::dropQueued() {
    mRangeInfos.clear();
    mPacketsQue.clear();
    NumOfVPackets = 0;
    discardBuffer();
}

media_status_t OgmTrack::seek(int64_t timeUs) {
    ALOGI("begin seek to %lld us mime:%s", static_cast<long long>(timeUs), mimeText());
    if (timeUs != 0) {
        mSeekRequested = true;
    }
    // The other tracks read on from where the selected one leaves the file.
    if (mExtractor->isSelected(mSerialNo)) {
        mExtractor->setSeeking(true);
        ALOGD("Start seekToTime");
        (void)mExtractor->seekToTime(timeUs);
        ALOGD("End seekToTime");
        if (ogm::isVideoTrackType(mType)) {
            const media_status_t status = findSyncFrame(timeUs);
            if (status != AMEDIA_OK) {
                // Still seeking: audio goes on being dropped until a seek of this track succeeds.
                return status;
            }
        }
        mExtractor->setSeeking(false);
    }
    ALOGI("after seek to %lld us mime:%s", static_cast<long long>(timeUs), mimeText());
    return AMEDIA_OK;
}

media_status_t OgmTrack::findSyncFrame(int64_t seekUs) {
    int8_t retries = kSyncFrameRetries;
    bool endOfFile = false;
    int64_t searchUs = seekUs;
    while (retries >= 0) {
        if (const media_status_t status = fillForSyncFrame(&endOfFile); status != AMEDIA_OK) {
            return status;
        }
        const SyncSearch result = dropUntilSyncFrame(searchUs);
        if (result == SyncSearch::kFound) {
            return AMEDIA_OK;
        }
        if (result == SyncSearch::kTooLate) {
            stepBack(seekUs, &retries, &searchUs);
        }
        // Once seen, the end of the file is remembered, although a step back may have left it.
        if (endOfFile) {
            return AMEDIA_OK;
        }
    }
    return AMEDIA_OK;
}

media_status_t OgmTrack::fillForSyncFrame(bool* endOfFile) {
    const media_status_t result = fillQueue();
    if (result == AMEDIA_ERROR_IO) {
        ALOGE("Read Data fail,return ERROR_IO");
        return AMEDIA_ERROR_IO;
    }
    if (result == AMEDIA_ERROR_END_OF_STREAM) {
        *endOfFile = true;
    }
    return AMEDIA_OK;
}

OgmTrack::SyncSearch OgmTrack::dropUntilSyncFrame(int64_t searchUs) {
    while (mPacketsQue.size() >= 2) {
        const OgmPacket& packet = mPacketsQue.front();
        if (wrapSub(packet.timeUs, searchUs) > kToleranceUs) {
            return SyncSearch::kTooLate;
        }
        if (packet.frameType == ogm::kIntraFrame) {
            ALOGI("found I Frame after seek,timeus=%lld", static_cast<long long>(packet.timeUs));
            return SyncSearch::kFound;
        }
        mPacketsQue.pop_front();
    }
    return SyncSearch::kDrained;
}

void OgmTrack::stepBack(int64_t seekUs, int8_t* retries, int64_t* searchUs) {
    if (*retries == 0) {
        // Packets are given out as they come from here on, sync frame or not.
        ALOGI("%s, %d,Can't find I frame after search 10 times", "read", kGiveUpLine);
        *searchUs = seekUs;
    } else {
        *searchUs = *searchUs <= kLeadUs ? 0 : *searchUs - kLeadUs;
    }
    dropQueued();
    --*retries;
    (void)mExtractor->seekToTime(*searchUs);
    ALOGI("%s, %d, Can't find I frame after time %lld, leavings search times:%d", "read",
          kStepBackLine, static_cast<long long>(*searchUs), *retries);
}

}  // namespace android
