// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace ogmprobe {

enum class StreamKind { kVideo, kAudio, kText, kVorbis, kTheora, kOther };

/** "video", "audio", "text", "Vorbis", "Theora" or "unknown". */
const char* kindName(StreamKind kind);

/** The number of pages on which the plug-in searches for such packets. */
inline constexpr size_t kHeaderPages = 121;

/** The packet that announces a stream of an Ogg file. Fields beyond its end are 0. */
struct StreamHeader {
    StreamKind kind = StreamKind::kOther;
    /** FOURCC, or the digits of an audio format tag; empty if it is neither video nor audio. */
    std::string codec;
    /** In 100 ns. */
    uint64_t timeUnit = 0;
    uint64_t samplesPerUnit = 0;
    uint16_t bitsPerSample = 0;
    /** Only for audio. */
    uint16_t channels = 0;
    /** Samples per second, only for Vorbis. */
    uint32_t vorbisRate = 0;

    explicit StreamHeader(std::span<const uint8_t> packet);

    /** Returns the time of a granule position; nothing if the header lacks what is needed. */
    std::optional<int64_t> timeUs(uint64_t granule) const;
    /** "video XVID", "audio 0055", "text", "Vorbis". */
    std::string name() const;
};

}  // namespace ogmprobe
