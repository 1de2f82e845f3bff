// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "seek/SyncFrameSearch.h"

#include <log/log.h>

#include <cinttypes>

#include "base/Wrap.h"
#include "codec/FrameType.h"
#include "seek/SeekPlan.h"

namespace android::ogm {

namespace {

/** A sync frame may be this far after the time searched for. */
constexpr int64_t kSyncFrameToleranceUs = 2'000'000;

}  // namespace

SyncFrameSearch::Result SyncFrameSearch::searchQueue(PacketQueue* packets) {
    while (packets->size() >= 2) {
        const OgmPacket& packet = packets->front();
        if (wrapSub(packet.timeUs, mSearchUs) > kSyncFrameToleranceUs) {
            return Result::kTooLate;
        }
        if (packet.frameType == kIntraFrame) {
            ALOGI("found I Frame after seek,timeus=%" PRId64, packet.timeUs);
            mFound = true;
            return Result::kFound;
        }
        packets->popFront();
    }
    return Result::kDrained;
}

void SyncFrameSearch::stepBack() {
    if (mRetries == 0) {
        // From here on packets are returned as they come, sync frame or not.
        ALOGI("read, 1210,Can't find I frame after search 10 times");
        mSearchUs = mSeekUs;
    } else {
        mSearchUs = mSearchUs <= kSeekLeadUs ? 0 : mSearchUs - kSeekLeadUs;
    }
    --mRetries;
}

}  // namespace android::ogm
