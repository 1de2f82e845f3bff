// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "Bytes.h"

namespace android::ogm::test {

inline constexpr size_t kStreamHeaderSize = 53;

/** The fields that OGM video and audio stream headers share, in file order. */
struct StreamHeaderFields {
    uint8_t packetType = 1;
    std::string streamType;  // at most 8 characters, padded with zeros
    std::string subtype;     // 4 characters: the FOURCC or the format tag
    uint32_t headerSize = kStreamHeaderSize;
    uint64_t timeUnit = 0;  // 100 ns
    uint64_t samplesPerUnit = 1;
    uint32_t defaultLength = 1;
    uint32_t bufferSize = 0;
    uint16_t bitsPerSample = 0;
    uint16_t padding = 0;

    /** The 45 bytes up to the fields of the stream type. */
    Bytes bytes() const;
};

struct VideoHeader : StreamHeaderFields {
    VideoHeader() {
        streamType = "video";
        subtype = "H264";
        timeUnit = 400000;
    }
    uint32_t width = 320;
    uint32_t height = 240;

    Bytes bytes() const;
};

struct AudioHeader : StreamHeaderFields {
    AudioHeader() {
        streamType = "audio";
        subtype = "0001";
        timeUnit = 10000000;
        samplesPerUnit = 8000;
        bitsPerSample = 16;
    }
    uint16_t channels = 1;
    uint16_t blockAlign = 2;
    uint32_t averageBytesPerSecond = 16000;

    Bytes bytes() const;
};

/** An OGM text stream header. */
Bytes textHeader();
/** A Vorbis identification header: 30 bytes, stereo at 44.1 kHz. */
Bytes vorbisIdentificationHeader();
Bytes vorbisCommentHeader();
/** The beginning of a Theora identification header. */
Bytes theoraIdentificationHeader();
/** A comment header as OGM writers put between a stream's header and its data. */
Bytes commentHeader();

}  // namespace android::ogm::test
