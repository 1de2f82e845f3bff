// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "codec/FrameType.h"

#include <log/log.h>

#include <optional>

namespace android::ogm {

namespace {

constexpr uint8_t kPictureStartCode = 0x00;  // MPEG-1 and MPEG-2
constexpr uint8_t kVopStartCode = 0xB6;      // MPEG-4

/** Returns the position after the first start code 00 00 01 `code` that is not at the very end. */
std::optional<size_t> findAfterStartCode(ByteView packet, uint8_t code) {
    // The search is for the 01, because zeros are frequent in headers.
    std::optional<size_t> one = packet.find(1, 2);
    while (one) {
        const size_t after = *one + 2;
        if (after >= packet.size()) {
            return std::nullopt;
        }
        if (packet[*one - 2] == 0 && packet[*one - 1] == 0 && packet[*one + 1] == code) {
            return after;
        }
        one = packet.find(1, *one + 1);
    }
    return std::nullopt;
}

}  // namespace

int32_t mpeg4FrameType(ByteView packet) {
    const std::optional<size_t> vop = findAfterStartCode(packet, kVopStartCode);
    if (!vop) {
        ALOGI("can't find MPEG4 frame type from packet data:"
              "%2X %2X %2X %2X %2X %2X %2X %2X ",
              packet[0], packet[1], packet[2], packet[3], packet[4], packet[5], packet[6],
              packet[7]);
        return kUnknownFrame;
    }
    static constexpr int32_t kByVopCodingType[] = {kIntraFrame, kPredictedFrame,
                                                   kBidirectionalFrame, kUnknownFrame};
    const int32_t type = kByVopCodingType[packet[*vop] >> 6];
    if (type == kUnknownFrame) {
        ALOGI("UNKNOW frame type!");
    }
    return type;
}

int32_t mpegFrameType(ByteView packet) {
    const std::optional<size_t> picture = findAfterStartCode(packet, kPictureStartCode);
    if (!picture) {
        return kUnknownFrame;
    }
    // temporal_reference takes the first byte and two bits of the second.
    static constexpr int32_t kByPictureCodingType[] = {
            kUnknownFrame, kIntraFrame,   kPredictedFrame, kBidirectionalFrame,
            kUnknownFrame, kUnknownFrame, kUnknownFrame,   kUnknownFrame};
    return kByPictureCodingType[packet[*picture + 1] >> 3 & 7];
}

}  // namespace android::ogm
