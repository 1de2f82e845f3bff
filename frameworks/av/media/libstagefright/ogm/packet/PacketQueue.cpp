// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <utility>

#include "OgmExtractor.h"
#include "base/Time.h"
#include "base/Wrap.h"
#include "codec/FrameType.h"
#include "packet/PacketHeader.h"
#include "stream/StreamTypes.h"

namespace android {

using ogm::ByteBuffer;
using ogm::ByteView;
using ogm::wrapAdd;
using ogm::wrapDiv;
using ogm::wrapMul;
using ogm::wrapSub;

namespace {

constexpr const char* kGranuleNotValid =
        "********** mPreGranulePosition is not vaild, Skip appending this item*************\n";

}  // namespace

void OgmTrack::updateGranulePosition(uint64_t granulePosition, uint64_t averagePerPacket) {
    uint64_t current = mCurGranulePosition;
    bool announce = false;
    if (current > granulePosition) {
        // A granule position of -1 (no packet ends on the page) is not special: the page after it
        // comes here too.
        ALOGI(" *****Track Type[%d] GranulePosition Error*****", static_cast<int>(mType));
        current = 0;
        mCurrentPageSamplesOut = 0;
        announce = mExtractor->isPastFirstDataPage() && granulePosition != 0;
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
        ALOGI(" *****Track Type[%d] update GP %lld, %lld*****", static_cast<int>(mType),
              static_cast<long long>(current), static_cast<long long>(granulePosition));
    }
}

void OgmTrack::resetPageState() {
    mCurGranulePosition = 0;
    // Behind the first data page, 1 keeps the first page that is met from being timed: it may begin
    // anywhere, and its packets' places are known only from the page before it.
    mPreGranulePosition = mExtractor->isPastFirstDataPage() ? 1 : 0;
    averGranulePosition = 1;
    mPageGranuleDelta = 0;
    mPrePageSamplesOut = 0;
    mCurrentPageSamplesOut = 0;
    mGranuleValid = false;
}

media_status_t OgmTrack::appendData(ByteBuffer* packet, bool isNewPacket) {
    const std::lock_guard<std::mutex> lock(mLock);
    if (ogm::isAudioType(mType) && mExtractor->isSeeking()) {
        ALOGI("********** Track Type[%d] skip appending data because seeking*************\n",
              static_cast<int>(mType));
        return AMEDIA_OK;
    }
    if (packet == nullptr) {
        ALOGI("appendData Buffer null\n");
        return AMEDIA_ERROR_MALFORMED;
    }
    if (ogm::isReframedAudioType(mType)) {
        return appendAccessUnits(packet, isNewPacket);
    }
    if (isNewPacket) {
        int64_t timeUs = 0;
        if (!computePacketTime(packet->size(), &timeUs)) {
            // Later pieces of this packet are not dropped: they end up behind the packet before.
            return AMEDIA_OK;
        }
        closeOpenPacket();
        openPacket(timeUs);
    }
    appendPacketBytes(packet);
    return AMEDIA_OK;
}

media_status_t OgmTrack::appendAccessUnits(ByteBuffer* piece, bool isNewPacket) {
    if (!mGranuleValid) {
        ALOGI("%s", kGranuleNotValid);
        return AMEDIA_OK;
    }
    const int64_t timeUs = sampleTimeUs(averGranulePosition);
    ALOGI("mSampleRate, timeUs = %lld,size = %d\n", static_cast<long long>(timeUs),
          static_cast<int>(piece->size()));
    if (isNewPacket) {
        if (piece->size() <= ogm::kMaxEmptyAudioPacket) {
            ALOGE("Invalid append buffer size:%d", static_cast<int>(piece->size()));
            return AMEDIA_ERROR_MALFORMED;
        }
        piece->dropFront(ogm::audioPacketHeaderSize(piece->view()[0]));
        if (mCurrentPageSamplesOut < mPageGranuleDelta) {
            ++mCurrentPageSamplesOut;
        }
    }
    if (appendAudioData(piece, timeUs) != AMEDIA_OK) {
        ALOGE("appendAudioData FAIL!");
        return AMEDIA_ERROR_MALFORMED;
    }
    while (std::optional<AccessUnit> unit = dequeueAccessUnit()) {
        ++NumOfVPackets;
        // The packet's time for all units cut out of it; a unit's own is not used.
        queuePacket(timeUs, std::move(unit->bytes));
    }
    return AMEDIA_OK;
}

bool OgmTrack::computePacketTime(size_t size, int64_t* timeUs) {
    if (mTimeUnit != 0) {
        if (!mGranuleValid) {
            ALOGE("%s", kGranuleNotValid);
            return false;
        }
        *timeUs = static_cast<int64_t>(ogm::unitsToUs(packetPosition(1), mTimeUnit));
        ALOGI("mTimeUnit, timeUs = %lld, size = %d,mPreGranulePosition:%lld,"
              "mCurrentPageSamplesOut:%d\n",
              static_cast<long long>(*timeUs), static_cast<int>(size),
              static_cast<long long>(mPreGranulePosition), mCurrentPageSamplesOut);
    } else if (mSampleRate != 0) {
        if (!mGranuleValid) {
            ALOGI("%s", kGranuleNotValid);
            return false;
        }
        *timeUs = computeSampleTime(size);
    }
    return true;
}

uint64_t OgmTrack::packetPosition(uint64_t averagePerPacket) const {
    return wrapAdd(mPreGranulePosition,
                   wrapMul(averagePerPacket, uint64_t{mCurrentPageSamplesOut}));
}

int64_t OgmTrack::sampleTimeUs(uint64_t averagePerPacket) const {
    return static_cast<int64_t>(ogm::samplesToUs(packetPosition(averagePerPacket), mSampleRate));
}

int64_t OgmTrack::computeSampleTime(size_t size) {
    if (mPrePageSamplesOut != 0) {
        mBaseAvgGranPos = wrapDiv(wrapSub(mCurGranulePosition, mPreGranulePosition),
                                  uint64_t{mPrePageSamplesOut});
        const int64_t timeUs = sampleTimeUs(mBaseAvgGranPos);
        ALOGI("mSampleRate, timeUs = %lld,size = %d,avgGranulePosition=%lld,"
              "mCurGranulePosition=%lld,mPreGranulePosition=%lld,mPrePageSamplesOut=%lld\n",
              static_cast<long long>(timeUs), static_cast<int>(size),
              static_cast<long long>(mBaseAvgGranPos), static_cast<long long>(mCurGranulePosition),
              static_cast<long long>(mPreGranulePosition),
              static_cast<long long>(mPrePageSamplesOut));
        return timeUs;
    }
    if (mBaseAvgGranPos != 0) {
        const int64_t timeUs = sampleTimeUs(mBaseAvgGranPos);
        ALOGI("mSampleRate, timeUs = %lld,size = %d,mBaseAvgGranPos=%lld\n",
              static_cast<long long>(timeUs), static_cast<int>(size),
              static_cast<long long>(mBaseAvgGranPos));
        return timeUs;
    }
    const int64_t timeUs = sampleTimeUs(1);
    ALOGI("mSampleRate, timeUs = %lld,size = %d\n", static_cast<long long>(timeUs),
          static_cast<int>(size));
    return timeUs;
}

void OgmTrack::closeOpenPacket() {
    if (NumOfVPackets == 0) {
        // The tail of a packet that began before reading did.
        mPacketBuff.clear();
    }
    if (++NumOfVPackets < 2) {
        return;
    }
    ALOGI("NumOfVPackets:%lld,mPacketsQue size:%d", static_cast<long long>(NumOfVPackets),
          static_cast<int>(mPacketsQue.size()));
    if (mPacketsQue.empty()) {
        // The bytes held so far become the beginning of the packet that is opened next.
        return;
    }
    OgmPacket& open = mPacketsQue.back();
    open.bytes = std::move(mPacketBuff);
    if (ogm::isVideoPacketType(mType)) {
        open.frameType = getVideoFrameType(open.bytes.view());
    }
}

void OgmTrack::openPacket(int64_t timeUs) {
    queuePacket(timeUs, {});
    const OgmPacket& packet = mPacketsQue.back();
    ALOGI("packet info:isVideo:%d,index:%d,GranulePosition:%lld,serialNo:%d,timeUs:%lld",
          static_cast<int>(ogm::isVideoPacketType(mType)), static_cast<int>(mPacketsQue.size() - 1),
          static_cast<long long>(packet.granulePosition), static_cast<int>(packet.serialNo),
          static_cast<long long>(packet.timeUs));
}

void OgmTrack::queuePacket(int64_t timeUs, ByteBuffer bytes) {
    mPacketsQue.push_back({mSerialNo, std::move(bytes), timeUs,
                           static_cast<int64_t>(packetPosition(1)), ogm::kUnknownFrame});
}

void OgmTrack::appendPacketBytes(ByteBuffer* piece) {
    if (const auto capacity = mPacketCapacity.growTo(mPacketBuff.size() + piece->size())) {
        ALOGI("Track Tyep[%d] resizing mPacketBuff to size %zu", static_cast<int>(mType),
              *capacity);
    }
    // Most packets lie on one page and are never copied between here and the framework's buffer.
    if (mPacketBuff.empty()) {
        mPacketBuff = std::move(*piece);
    } else {
        mPacketBuff.append(piece->view());
    }
}

int32_t OgmTrack::getVideoFrameType(ByteView packet) const {
    int32_t frameType = ogm::kUnknownFrame;
    if (mType == OGV_VIDEO_MPEG) {
        frameType = ogm::mpegFrameType(packet);
    } else if (mType == OGV_VIDEO_MP4) {
        frameType = ogm::mpeg4FrameType(packet);
    }
    return packet[0] == ogm::kKeyFramePacket ? ogm::kIntraFrame : frameType;
}

}  // namespace android
