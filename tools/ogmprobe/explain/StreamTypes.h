// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/** The plug-in's numbers for codecs in its log lines. */
namespace ogmprobe::stream_type {

inline constexpr int64_t kMp3 = 1;
inline constexpr int64_t kPcm = 5;
/** MPEG audio of the layers I and II. */
inline constexpr int64_t kMpegAudio = 6;
inline constexpr int64_t kAc3 = 7;
inline constexpr int64_t kDts = 8;
/** The numbers of audio codecs are smaller. */
inline constexpr int64_t kFirstVideo = 16;
inline constexpr int64_t kMpeg4Video = 18;
inline constexpr int64_t kMpegVideo = 19;

}  // namespace ogmprobe::stream_type
