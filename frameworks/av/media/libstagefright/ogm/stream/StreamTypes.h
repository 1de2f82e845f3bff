// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "OgmExtractor.h"

/**
 * Groups of stream types. Two of them look alike but are not: the value 20 stands for no stream,
 * yet counts as video where packets are typed and not where tracks are made. No file produces a
 * track of that type; the groups differ all the same, and each caller names the one it means.
 */
namespace android::ogm {

inline constexpr uint32_t kFirstAudioType = 1;
inline constexpr uint32_t kLastAudioType = 9;
inline constexpr uint32_t kFirstVideoType = 16;
inline constexpr uint32_t kLastVideoType = 26;

constexpr bool isAudioType(uint32_t type) {
    return type >= kFirstAudioType && type <= kLastAudioType;
}

/** Types for which a track is a video track: 16, 18, 19 and 21 to 26. */
constexpr bool isVideoTrackType(uint32_t type) {
    constexpr uint32_t kMask = 0x7ED0000;
    return type <= kLastVideoType && (kMask >> type & 1) != 0;
}

/** Types whose packets carry a frame type and a sync flag: 16 and 18 to 26. */
constexpr bool isVideoPacketType(uint32_t type) {
    return type == kFirstVideoType || (type >= OGV_VIDEO_MP4 && type <= kLastVideoType);
}

/** Audio whose packets are cut anew into access units. */
constexpr bool isReframedAudioType(uint32_t type) {
    return type == OGA_AUDIO_MP3 || type == OGA_AUDIO_AC3 || type == OGA_AUDIO_DTS;
}

/** Video whose packets are searched for their coding type. */
constexpr bool isFrameTypedVideo(uint32_t type) {
    return type == OGV_VIDEO_MP4 || type == OGV_VIDEO_MPEG;
}

}  // namespace android::ogm
