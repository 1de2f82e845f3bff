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
    /** "4:2:0" */
    std::string chroma;
    // The next four are only for MPEG-4 part 2.
    /** "H.263", "MPEG", "MPEG with own matrices". */
    std::string quantizer;
    std::optional<bool> quarterPel;
    /** With global motion compensation. */
    std::optional<uint32_t> warpPoints;
    /** The encoder says that packets may hold two pictures. */
    bool packed = false;
    /** The most consecutive ones among the first pictures. */
    std::optional<uint32_t> bPictures;
    /** The encoder's name. */
    std::string encoder;
};

/** Reads MPEG-4 part 2: its video object layer and what comes before. */
std::optional<VideoFacts> mpeg4Facts(std::span<const uint8_t> stream);
/** Reads MPEG-1 and MPEG-2: the sequence header and its extension. */
std::optional<VideoFacts> mpeg2Facts(std::span<const uint8_t> stream);
/** Reads H.264 with start codes: its sequence parameter set. */
std::optional<VideoFacts> h264Facts(std::span<const uint8_t> stream);

/** The most consecutive B pictures (MPEG-1, MPEG-2, MPEG-4 part 2); nothing without pictures. */
std::optional<uint32_t> mostBPictures(std::span<const uint8_t> stream);

/** "Advanced Simple profile, level 5, 176x144, sample aspect 1:1, progressive" */
std::string videoFactsText(const VideoFacts& facts);

}  // namespace ogmprobe
