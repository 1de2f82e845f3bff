// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "packet/PacketHeader.h"

#include <log/log.h>

#include "stream/StreamTypes.h"

namespace android::ogm {

std::optional<size_t> frameHeaderSize(uint32_t streamType, ByteView packet) {
    if (isReframedAudioType(streamType)) {
        ALOGI("DequeueFrame type:%d", streamType);
        return 0;
    }
    if (isAudioType(streamType)) {
        if (packet.size() <= kMaxEmptyAudioPacket) {
            ALOGE("invalid audio packet size:%d", static_cast<int>(packet.size()));
            return std::nullopt;
        }
        return audioPacketHeaderSize(packet[0]);
    }
    if (isVideoTrackType(streamType)) {
        return kVideoPacketHeaderSize;
    }
    ALOGE("dequeueFrame:Unknow track type:%d\n", streamType);
    return std::nullopt;
}

}  // namespace android::ogm
