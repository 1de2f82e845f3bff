// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ogmprobe {

/** How the buffers of a codec are written into a file that common players open. */
enum class Packaging {
    /** One buffer after the other. */
    kRaw,
    /** The same, preceded by the configuration of the ESDS if the stream lacks it. */
    kMpeg4,
    /** 16-bit samples after a RIFF header. */
    kWav,
    /** A header before the stream and one before each frame. */
    kIvf,
    /** Video that only its FOURCC identifies. */
    kAvi,
    /** MS ADPCM after a RIFF header. */
    kAdpcmWav,
    /** One buffer after the other. There is no file format for it, and no common player opens it.
     */
    kBare,
};

/** What is known about a MIME type. */
struct Codec {
    /** Name for users. */
    std::string name;
    /** Of an extracted file, with the dot. */
    std::string suffix;
    Packaging packaging = Packaging::kRaw;
    /** For `kAvi`. */
    std::string fourcc = {};
};

/**
 * Returns the codec of a MIME type. For MPEG audio the layer (1 to 3) decides if it is known. The
 * name of an unknown type is the type itself, and its suffix is ".bin".
 */
Codec codecOf(std::string_view mime, std::optional<int32_t> mpegAudioLayer);

}  // namespace ogmprobe
