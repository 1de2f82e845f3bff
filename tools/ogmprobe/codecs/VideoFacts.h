// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ogmprobe {

/** What the headers inside a video stream say about it; empty or nothing where they do not. */
struct VideoFacts {
    /** "Advanced Simple", "Main", "High". */
    std::string profile;
    std::string level;
    uint32_t width = 0;
    uint32_t height = 0;
    /** "12:11" of a sample, or "16:9 picture". */
    std::string aspect;
    std::optional<bool> interlaced;
    /** What the encoder says of itself. */
    std::string encoder;
};

/** Of MPEG-4 part 2, by its video object layer and what stands in front. */
std::optional<VideoFacts> mpeg4Facts(std::span<const uint8_t> stream);
/** Of MPEG-1 and MPEG-2, by the sequence header and its extension. */
std::optional<VideoFacts> mpeg2Facts(std::span<const uint8_t> stream);
/** Of H.264 with start codes, by its sequence parameter set. */
std::optional<VideoFacts> h264Facts(std::span<const uint8_t> stream);

/** "Advanced Simple profile, level 5, 176x144, sample aspect 1:1, progressive" */
std::string videoFactsText(const VideoFacts& facts);

}  // namespace ogmprobe
