// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "packet/PacketQueue.h"

#include <log/log.h>

#include <cinttypes>
#include <utility>

#include "codec/FrameType.h"
#include "packet/PacketHeader.h"
#include "stream/StreamTypes.h"

namespace android::ogm {

void PacketQueue::clear() {
    mPacketsQue.clear();
    mPacketBuff.clear();
    NumOfVPackets = 0;
}

void PacketQueue::beginPacket(int64_t timeUs, uint64_t granulePosition) {
    closePacket();
    mPacketsQue.emplace_back(mSerialNo, ByteBuffer(), timeUs, static_cast<int64_t>(granulePosition),
                             kUnknownFrame);
    ALOGI("packet info:isVideo:%d,index:%d,GranulePosition:%" PRId64 ",serialNo:%d,timeUs:%" PRId64,
          isVideoPacketType(mType), static_cast<int>(size() - 1), granulePosition, mSerialNo,
          timeUs);
}

void PacketQueue::closePacket() {
    if (NumOfVPackets == 0) {
        // The rest of a packet whose beginning was not read.
        mPacketBuff.clear();
    }
    if (++NumOfVPackets < 2) {
        return;
    }
    ALOGI("NumOfVPackets:%" PRId64 ",mPacketsQue size:%d", NumOfVPackets, static_cast<int>(size()));
    if (mPacketsQue.empty()) {
        // The bytes so far become the beginning of the packet that is opened next.
        return;
    }
    OgmPacket& open = mPacketsQue.back();
    open.bytes = std::move(mPacketBuff);
    if (isVideoPacketType(mType)) {
        open.frameType = getVideoFrameType(open.bytes.view());
    }
}

void PacketQueue::appendBytes(ByteBuffer* piece) {
    if (const auto capacity = mCapacity.growTo(mPacketBuff.size() + piece->size())) {
        ALOGI("Track Tyep[%d] resizing mPacketBuff to size %zu", mType, *capacity);
    }
    // A packet on a single page is moved here, and copied only into the framework's buffer.
    if (mPacketBuff.empty()) {
        mPacketBuff = std::move(*piece);
    } else {
        mPacketBuff.append(piece->view());
    }
}

void PacketQueue::addAccessUnit(int64_t timeUs, uint64_t granulePosition, ByteBuffer&& bytes) {
    mPacketsQue.emplace_back(mSerialNo, std::move(bytes), timeUs,
                             static_cast<int64_t>(granulePosition), kUnknownFrame);
}

int32_t PacketQueue::getVideoFrameType(ByteView packet) const {
    int32_t frameType = kUnknownFrame;
    if (mType == OGV_VIDEO_MPEG) {
        frameType = mpegFrameType(packet);
    } else if (mType == OGV_VIDEO_MP4) {
        frameType = mpeg4FrameType(packet);
    }
    return packet[0] == kKeyFramePacket ? kIntraFrame : frameType;
}

uint8_t PacketQueue::countFollowingFrameType3() const {
    // Index and count have 8 bits. The last packet is still open and never counted.
    uint8_t count = 0;
    for (uint8_t i = 1; size_t{i} + 1 < size(); ++i) {
        if (mPacketsQue[i].frameType != kBidirectionalFrame) {
            break;
        }
        ++count;
    }
    return count;
}

}  // namespace android::ogm
