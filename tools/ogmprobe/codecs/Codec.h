// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ogmprobe {

/** How the buffers of a codec become a file that ordinary players open. */
enum class Packaging {
    /** One buffer after the other. */
    kRaw,
    /** The same, led by the configuration of the ESDS where the stream lacks it. */
    kMpeg4,
    /** 16-bit samples behind a RIFF header. */
    kWav,
    /** A header before the stream and one before each frame. */
    kIvf,
    /** Video that is known by its FOURCC alone. */
    kAvi,
    /** MS ADPCM behind a RIFF header. */
    kAdpcmWav,
    /** One buffer after the other, which no ordinary player opens: there is nothing better. */
    kBare,
};

/** What is known about a MIME type. */
struct Codec {
    /** For people. */
    std::string name;
    /** Of an extracted file, with its dot. */
    std::string suffix;
    Packaging packaging = Packaging::kRaw;
    /** For `kAvi`. */
    std::string fourcc = {};
};

/**
 * The codec of a MIME type. MPEG audio is told apart by its layer (1 to 3) where that is known,
 * else by the MIME type. An unknown type has itself as name and ".bin" as suffix.
 */
Codec codecOf(std::string_view mime, std::optional<int32_t> mpegAudioLayer);

}  // namespace ogmprobe
