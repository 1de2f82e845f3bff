// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ogmprobe {

/** The contents of the headers inside a video stream; empty or nothing if they do not say. */
struct VideoFacts {
    /** "Advanced Simple", "Main", "High". */
    std::string profile;
    std::string level;
    uint32_t width = 0;
    uint32_t height = 0;
    /** "12:11" of a sample, or "16:9 picture". */
    std::string aspect;
    std::optional<bool> interlaced;
    /** The encoder's name for itself. */
    std::string encoder;
};

/** Reads MPEG-4 part 2: its video object layer and what comes before. */
std::optional<VideoFacts> mpeg4Facts(std::span<const uint8_t> stream);
/** Reads MPEG-1 and MPEG-2: the sequence header and its extension. */
std::optional<VideoFacts> mpeg2Facts(std::span<const uint8_t> stream);
/** Reads H.264 with start codes: its sequence parameter set. */
std::optional<VideoFacts> h264Facts(std::span<const uint8_t> stream);

/** "Advanced Simple profile, level 5, 176x144, sample aspect 1:1, progressive" */
std::string videoFactsText(const VideoFacts& facts);

}  // namespace ogmprobe
