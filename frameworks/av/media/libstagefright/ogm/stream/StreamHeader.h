// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <cstdint>

#include "base/ByteView.h"

/** The packet that announces an OGM stream on its first page, and the codecs it may name. */
namespace android::ogm {

/** The fields of an OGM stream header. Those that the packet is too short for are 0. */
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
    /** The low half of the field. */
    uint16_t averageBytesPerSecond;

    explicit StreamHeader(ByteView packet);

    /** Frames a second, rounded down; computed with the low 32 bits of both fields. */
    int32_t frameRate() const;
    /** Samples a second, rounded down. */
    int32_t sampleRate() const;
};

/**
 * Puts the MIME type of a video codec into `format`. Returns its stream type, or OGM_TYPE_UNKNOWN
 * (the format untouched) for a FOURCC that is not supported.
 */
uint32_t mapVideoCodec(AMediaFormat* format, uint32_t fourcc);

/** The same for an audio format tag. */
uint32_t mapAudioCodec(AMediaFormat* format, uint32_t tag);

}  // namespace android::ogm
