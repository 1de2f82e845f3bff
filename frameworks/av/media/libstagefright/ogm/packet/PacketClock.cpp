// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "packet/PacketClock.h"

#include <log/log.h>

#include <cinttypes>

#include "base/Time.h"
#include "base/Wrap.h"
#include "codec/FrameType.h"

namespace android::ogm {

namespace {

constexpr const char* kGranuleNotValid =
        "********** mPreGranulePosition is not vaild, Skip appending this item*************\n";

constexpr int32_t kUnitsPerUs = 10;  // a time unit is 100 ns

}  // namespace

void PacketClock::reset(bool isPastFirstDataPage) {
    mCurGranulePosition = 0;
    // After the first data page, 1 makes the next page have no valid times: its packets' positions
    // follow from the page before it, which is not known here.
    mPreGranulePosition = isPastFirstDataPage ? 1 : 0;
    averGranulePosition = 1;
    mPageGranuleDelta = 0;
    mPrePageSamplesOut = 0;
    mCurrentPageSamplesOut = 0;
    mGranuleValid = false;
}

void PacketClock::updateGranulePosition(uint64_t granulePosition, uint64_t averagePerPacket,
                                        bool isPastFirstDataPage) {
    uint64_t current = mCurGranulePosition;
    bool announce = false;
    if (current > granulePosition) {
        // A granule position of -1 (no packet ends on the page) is not special, so the page after
        // it gets here too.
        ALOGI(" *****Track Type[%d] GranulePosition Error*****", mType);
        current = 0;
        mCurrentPageSamplesOut = 0;
        announce = isPastFirstDataPage && granulePosition != 0;
        mGranuleValid = !announce;
    } else if (mPreGranulePosition <= current || current == granulePosition) {
        mGranuleValid = true;
    } else {
        announce = !mGranuleValid;
    }
    mPrePageSamplesOut = mCurrentPageSamplesOut;
    mCurrentPageSamplesOut = 0;
    mPreGranulePosition = current;
    mCurGranulePosition = granulePosition;
    mPageGranuleDelta = static_cast<uint8_t>(wrapSub(granulePosition, current));
    averGranulePosition = averagePerPacket;
    if (announce) {
        ALOGI(" *****Track Type[%d] update GP %" PRId64 ", %" PRId64 "*****", mType, current,
              granulePosition);
    }
}

void PacketClock::countPacket() {
    if (mCurrentPageSamplesOut < mPageGranuleDelta) {
        ++mCurrentPageSamplesOut;
    }
}

std::optional<int64_t> PacketClock::packetTimeUs(size_t size) {
    if (mTimeUnit != 0) {
        if (!isValid()) {
            ALOGE("%s", kGranuleNotValid);
            return std::nullopt;
        }
        const auto timeUs = static_cast<int64_t>(unitsToUs(granulePosition(), mTimeUnit));
        ALOGI("mTimeUnit, timeUs = %" PRId64 ", size = %d,mPreGranulePosition:%" PRId64
              ",mCurrentPageSamplesOut:%d\n",
              timeUs, static_cast<int>(size), mPreGranulePosition, mCurrentPageSamplesOut);
        return timeUs;
    }
    if (mSampleRate == 0) {
        return 0;
    }
    if (!isValid()) {
        ALOGI("%s", kGranuleNotValid);
        return std::nullopt;
    }
    return computeSampleTime(size);
}

std::optional<int64_t> PacketClock::accessUnitTimeUs(size_t size) const {
    if (!isValid()) {
        ALOGI("%s", kGranuleNotValid);
        return std::nullopt;
    }
    const int64_t timeUs = sampleTimeUs(averGranulePosition);
    ALOGI("mSampleRate, timeUs = %" PRId64 ",size = %d\n", timeUs, static_cast<int>(size));
    return timeUs;
}

uint64_t PacketClock::packetPosition(uint64_t averagePerPacket) const {
    return wrapAdd(mPreGranulePosition,
                   wrapMul(averagePerPacket, uint64_t{mCurrentPageSamplesOut}));
}

int64_t PacketClock::sampleTimeUs(uint64_t averagePerPacket) const {
    return static_cast<int64_t>(samplesToUs(packetPosition(averagePerPacket), mSampleRate));
}

int64_t PacketClock::computeSampleTime(size_t size) {
    // Only packets of re-framed audio are counted, and their times are computed elsewhere. So files
    // reach only the last of the three cases.
    if (mPrePageSamplesOut != 0) {
        mBaseAvgGranPos = wrapDiv(wrapSub(mCurGranulePosition, mPreGranulePosition),
                                  uint64_t{mPrePageSamplesOut});
        const int64_t timeUs = sampleTimeUs(mBaseAvgGranPos);
        ALOGI("mSampleRate, timeUs = %" PRId64 ",size = %d,avgGranulePosition=%" PRId64
              ",mCurGranulePosition=%" PRId64 ",mPreGranulePosition=%" PRId64
              ",mPrePageSamplesOut=%d\n",
              timeUs, static_cast<int>(size), mBaseAvgGranPos, mCurGranulePosition,
              mPreGranulePosition, mPrePageSamplesOut);
        return timeUs;
    }
    if (mBaseAvgGranPos != 0) {
        const int64_t timeUs = sampleTimeUs(mBaseAvgGranPos);
        ALOGI("mSampleRate, timeUs = %" PRId64 ",size = %d,mBaseAvgGranPos=%" PRId64 "\n", timeUs,
              static_cast<int>(size), mBaseAvgGranPos);
        return timeUs;
    }
    const int64_t timeUs = sampleTimeUs(1);
    ALOGI("mSampleRate, timeUs = %" PRId64 ",size = %d\n", timeUs, static_cast<int>(size));
    return timeUs;
}

int64_t PacketClock::currentTimeUs() const {
    if (!isValid()) {
        return 0;
    }
    if (mTimeUnit != 0) {
        return static_cast<int64_t>(unitsToUs(granulePosition(), mTimeUnit));
    }
    return sampleTimeUs(1);
}

int64_t PacketClock::displayTimeUs(const OgmPacket& packet, uint8_t followingBFrames) const {
    if (packet.frameType == kBidirectionalFrame) {
        return wrapSub(packet.timeUs, int64_t{mTimeUnit / kUnitsPerUs});
    }
    const uint32_t units = wrapMul(static_cast<uint32_t>(mTimeUnit), uint32_t{followingBFrames});
    return wrapAdd(packet.timeUs, int64_t{units / kUnitsPerUs});
}

}  // namespace android::ogm
