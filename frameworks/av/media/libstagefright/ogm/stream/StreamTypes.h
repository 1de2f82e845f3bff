// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android {

/** The contents of a logical stream. The numbers are fixed: logs and dumps show them. */
enum OgmStreamType : uint32_t {
    OGA_AUDIO_MP3 = 1,
    OGA_AUDIO_AAC = 3,
    OGA_AUDIO_WMA = 4,
    OGA_AUDIO_PCM = 5,
    OGA_AUDIO_MPEG = 6,  // layers I and II
    OGA_AUDIO_AC3 = 7,
    OGA_AUDIO_DTS = 8,
    OGA_AUDIO_ADPCM = 9,
    OGV_VIDEO_MP4 = 18,   // MPEG-4 part 2
    OGV_VIDEO_MPEG = 19,  // MPEG-1 and MPEG-2
    OGV_VIDEO_H264 = 22,
    OGV_VIDEO_DIVX = 23,
    OGV_VIDEO_WMV = 24,
    OGV_VIDEO_VP8 = 25,
    OGV_VIDEO_MJPEG = 26,
    OGM_TYPE_UNKNOWN = 30,  // no track is made of it
};

}  // namespace android

/**
 * Groups of stream types. They include numbers without a name, which no file produces. Two groups
 * look equal but are not: type 20 is in isVideoPacketType() but not in isVideoTrackType().
 */
namespace android::ogm {

constexpr bool isAudioType(uint32_t type) {
    return type >= 1 && type <= 9;
}

/** Types whose tracks are video tracks. */
constexpr bool isVideoTrackType(uint32_t type) {
    switch (type) {
        case 16:
        case OGV_VIDEO_MP4:
        case OGV_VIDEO_MPEG:
        case 21:
        case OGV_VIDEO_H264:
        case OGV_VIDEO_DIVX:
        case OGV_VIDEO_WMV:
        case OGV_VIDEO_VP8:
        case OGV_VIDEO_MJPEG:
            return true;
        default:
            return false;
    }
}

/** Types whose packets carry a frame type and a sync flag. */
constexpr bool isVideoPacketType(uint32_t type) {
    return type == 16 || (type >= OGV_VIDEO_MP4 && type <= OGV_VIDEO_MJPEG);
}

/** Types whose granule positions count frames. */
constexpr bool isVideoGranuleType(uint32_t type) {
    return type >= 16 && type <= OGV_VIDEO_MJPEG;
}

/** Audio that is cut into access units again. */
constexpr bool isReframedAudioType(uint32_t type) {
    return type == OGA_AUDIO_MP3 || type == OGA_AUDIO_AC3 || type == OGA_AUDIO_DTS;
}

/** Video whose packets are searched for a coding type. */
constexpr bool isFrameTypedVideo(uint32_t type) {
    return type == OGV_VIDEO_MP4 || type == OGV_VIDEO_MPEG;
}

}  // namespace android::ogm
