// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "OgmFrameType.h"

#include <log/log.h>

#include <algorithm>
#include <optional>

namespace android::ogm {

namespace {

constexpr size_t kStartCodeSize = 4;

constexpr uint8_t kPictureStartCode = 0x00;  // MPEG-1 and MPEG-2
constexpr uint8_t kVopStartCode = 0xB6;      // MPEG-4

/** The place behind the first start code 00 00 01 `code`; at least one byte follows it. */
std::optional<size_t> findBehindStartCode(ByteView packet, uint8_t code) {
    const uint8_t startCode[kStartCodeSize] = {0, 0, 1, code};
    if (packet.size() <= kStartCodeSize) {
        return std::nullopt;
    }
    const uint8_t* const begin = packet.data();
    const uint8_t* const end = begin + packet.size() - 1;
    const uint8_t* const found =
            std::search(begin, end, std::begin(startCode), std::end(startCode));
    if (found == end) {
        return std::nullopt;
    }
    return static_cast<size_t>(found - begin) + kStartCodeSize;
}

}  // namespace

int32_t mpeg4FrameType(ByteView packet) {
    const std::optional<size_t> vop = findBehindStartCode(packet, kVopStartCode);
    if (!vop) {
        ALOGI("can't find MPEG4 frame type from packet data:"
              "%2X %2X %2X %2X %2X %2X %2X %2X ",
              packet[0], packet[1], packet[2], packet[3], packet[4], packet[5], packet[6],
              packet[7]);
        return kUnknownFrame;
    }
    constexpr int32_t kByVopCodingType[] = {kIntraFrame, kPredictedFrame, kBidirectionalFrame,
                                            kUnknownFrame};
    const int32_t type = kByVopCodingType[packet[*vop] >> 6];
    if (type == kUnknownFrame) {
        ALOGI("UNKNOW frame type!");
    }
    return type;
}

int32_t mpegFrameType(ByteView packet) {
    const std::optional<size_t> picture = findBehindStartCode(packet, kPictureStartCode);
    if (!picture) {
        return kUnknownFrame;
    }
    // temporal_reference takes the first byte and two bits of the second.
    constexpr int32_t kByPictureCodingType[] = {kUnknownFrame,       kIntraFrame,   kPredictedFrame,
                                                kBidirectionalFrame, kUnknownFrame, kUnknownFrame,
                                                kUnknownFrame,       kUnknownFrame};
    return kByPictureCodingType[packet[*picture + 1] >> 3 & 7];
}

}  // namespace android::ogm
