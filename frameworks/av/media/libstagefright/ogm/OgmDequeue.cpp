// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include <cstring>
#include <optional>

#include "OgmExtractor.h"
#include "base/Wrap.h"
#include "codec/FrameType.h"
#include "packet/PacketHeader.h"
#include "stream/StreamTypes.h"

namespace android {

using ogm::ByteView;
using ogm::wrapAdd;
using ogm::wrapMul;
using ogm::wrapSub;

namespace {

constexpr int32_t kUnitsPerUs = 10;  // a time unit is 100 ns

}  // namespace

std::optional<size_t> OgmTrack::frameHeaderSize(ByteView packet) const {
    if (ogm::isReframedAudioType(mType)) {
        ALOGI("DequeueFrame type:%d", static_cast<int>(mType));
        return 0;
    }
    if (ogm::isAudioType(mType)) {
        if (packet.size() <= ogm::kMaxEmptyAudioPacket) {
            ALOGE("invalid audio packet size:%d", static_cast<int>(packet.size()));
            return std::nullopt;
        }
        return ogm::audioPacketHeaderSize(packet[0]);
    }
    if (ogm::isVideoTrackType(mType)) {
        return ogm::kVideoPacketHeaderSize;
    }
    ALOGE("dequeueFrame:Unknow track type:%d\n", static_cast<int>(mType));
    return std::nullopt;
}

MediaBufferHelper* OgmTrack::dequeueFrame(int64_t targetTimeUs) {
    OgmPacket& packet = mPacketsQue.front();
    const ByteView data = packet.bytes.view();
    const std::optional<size_t> headerSize = frameHeaderSize(data);
    if (!headerSize || *headerSize > data.size()) {
        return nullptr;
    }
    const ByteView payload = data.from(*headerSize);
    MediaBufferHelper* const buffer = acquireBuffer(payload.size());
    if (buffer == nullptr) {
        return nullptr;
    }
    AMediaFormat* const meta = buffer->meta_data();
    if (targetTimeUs >= 0) {
        AMediaFormat_setInt64(meta, AMEDIAFORMAT_KEY_TARGET_TIME, targetTimeUs);
    }
    if (ogm::isFrameTypedVideo(mType)) {
        correctTime(&packet);
    }
    if (!payload.empty()) {
        std::memcpy(buffer->data(), payload.data(), payload.size());
    }
    buffer->set_range(0, payload.size());
    AMediaFormat_setInt64(meta, AMEDIAFORMAT_KEY_TIME_US, packet.timeUs);
    if (ogm::isVideoPacketType(mType)) {
        AMediaFormat_setInt32(meta, AMEDIAFORMAT_KEY_IS_SYNC_FRAME,
                              packet.frameType == ogm::kIntraFrame ? 1 : 0);
    }
    mPacketsQue.pop_front();
    return buffer;
}

/** Waits for a free buffer. Null before the track was started, and when there is no memory. */
MediaBufferHelper* OgmTrack::acquireBuffer(size_t size) {
    MediaBufferHelper* buffer = nullptr;
    if (mBufferGroup != nullptr) {
        (void)mBufferGroup->acquire_buffer(&buffer, false, size);
    }
    return buffer;
}

/** Turns decoding order into presentation time: B frames are shown before the frame they follow. */
void OgmTrack::correctTime(OgmPacket* packet) const {
    if (packet->frameType == ogm::kBidirectionalFrame) {
        packet->timeUs = wrapSub(packet->timeUs, int64_t{mTimeUnit / kUnitsPerUs});
        return;
    }
    const uint32_t units =
            wrapMul(static_cast<uint32_t>(mTimeUnit), uint32_t{countFollowingFrameType3()});
    packet->timeUs = wrapAdd(packet->timeUs, int64_t{units / kUnitsPerUs});
}

uint8_t OgmTrack::countFollowingFrameType3() const {
    // Both are kept in 8 bits. The last packet is still open and never counted.
    uint8_t count = 0;
    for (uint8_t i = 1; size_t{i} + 1 < mPacketsQue.size(); ++i) {
        if (mPacketsQue[i].frameType != ogm::kBidirectionalFrame) {
            break;
        }
        ++count;
    }
    return count;
}

}  // namespace android
