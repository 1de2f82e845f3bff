// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "base/ByteView.h"

/** The packet that announces a stream on its first page. */
namespace android::ogm {

/** What a first packet announces. */
enum class Announcement { kVideo, kAudio, kVorbis, kUnknown };

/** From the stream type's text. For Vorbis the packet type is ignored. */
Announcement identifyStream(ByteView packet);

/** The fields of an OGM stream header. Fields past the end of the packet are 0. */
struct StreamHeader {
    /** FOURCC of a video stream, or the four hexadecimal digits of an audio format tag. */
    uint32_t subtype;
    int32_t headerSize;
    /** In 100 ns per unit. */
    uint64_t timeUnit;
    uint64_t samplesPerUnit;
    int32_t defaultLength;
    int32_t bufferSize;
    uint16_t bitsPerSample;
    uint16_t padding;

    // Video.
    int32_t width;
    int32_t height;

    // Audio.
    uint16_t channels;
    uint16_t blockAlign;
    /** Only the low half of the field. */
    uint16_t averageBytesPerSecond;

    explicit StreamHeader(ByteView packet);

    /** Frames per second, truncated; computed from the low 32 bits of both fields. */
    int32_t frameRate() const;
    /** Samples per second, truncated. */
    int32_t sampleRate() const;
};

}  // namespace android::ogm
