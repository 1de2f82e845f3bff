// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "Bytes.h"

/** Makes units of elementary streams. Only the parts that a demultiplexer reads are valid. */
namespace android::ogm::test {

enum class MpegVersion : uint32_t { kMpeg25 = 0, kMpeg2 = 2, kMpeg1 = 3 };

/** One MPEG audio frame; `layer` is 1, 2 or 3, the two indexes are those of the header. */
struct MpegAudioFrame {
    MpegVersion version = MpegVersion::kMpeg1;
    uint32_t layer = 3;
    uint32_t bitrateIndex = 9;
    uint32_t samplingRateIndex = 0;
    bool padding = false;
    bool mono = false;
    bool crc = false;
    uint32_t seed = 0;

    /** The 32-bit header word. */
    uint32_t header() const;
    /** Size of the whole frame; throws for the bit-rate indexes 0 and 15, which have no size. */
    size_t size() const;
    Bytes bytes() const;
};

/** One AC-3 sync frame of the size that the standard gives for the two codes. */
struct Ac3Frame {
    uint32_t sampleRateCode = 0;
    uint32_t frameSizeCode = 12;
    uint32_t bitStreamId = 8;
    uint32_t seed = 0;
    /** A length in bytes instead of the standard's. */
    std::optional<size_t> length;

    size_t size() const;
    Bytes bytes() const;
};

/** One E-AC-3 sync frame of `length` bytes, which must be even. */
struct EnhancedAc3Frame {
    uint32_t streamType = 0;
    uint32_t substreamId = 0;
    size_t length = 256;
    uint32_t bitStreamId = 16;
    uint32_t seed = 0;

    Bytes bytes() const;
};

enum class DtsForm { kCore16BitBigEndian, kCore14BitBigEndian, kHdSubstream };

/** The form's sync word, then patterned bytes, `size` bytes in all. */
Bytes dtsFrame(DtsForm form, size_t size, uint32_t seed = 0);

/** The fields of an MPEG-4 video object layer header that are of interest. */
struct VideoObjectLayer {
    uint8_t startCode = 0x20;
    uint32_t objectType = 0x01;
    /** Version and priority, if the identifier flag is set. */
    std::optional<uint32_t> verId;
    uint32_t aspectRatio = 1;  // 15 adds the extended pixel aspect ratio
    bool controlParameters = false;
    bool vbvParameters = false;
    uint32_t shape = 0;
    uint32_t timeIncrementResolution = 25;
    bool fixedVopRate = false;
    uint32_t width = 176;
    uint32_t height = 144;
    /** Number, in header order, of a marker bit to clear. */
    std::optional<size_t> clearMarker;

    Bytes bytes() const;
};

/** An ordinary video object layer. */
inline Bytes vol() {
    return VideoObjectLayer{}.bytes();
}

/** 00 00 01 B0: a visual object sequence header. */
Bytes visualObjectSequence();
/** 00 00 01 B5: a visual object header. */
Bytes visualObject();
/** 00 00 01 B6: a picture; the coding type is 0 (I), 1 (P), 2 (B) or 3 (S). */
Bytes videoObjectPlane(uint32_t codingType, size_t size = 40, uint32_t seed = 0);
/** An I picture. */
inline Bytes vop(size_t size = 40) {
    return videoObjectPlane(0, size);
}
/** 00 00 01 B3: a group of pictures. */
Bytes groupOfVop();

/** 00 00 01 00: an MPEG-1/2 picture; the coding type is 1 (I), 2 (P), 3 (B) or 4 (D). */
Bytes mpeg2Picture(uint32_t codingType, size_t size = 40, uint32_t seed = 0);

}  // namespace android::ogm::test
