// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/stagefright/foundation/ABuffer.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/ByteView.h"

/**
 * Headers of MPEG audio and MPEG-4 video, and the descriptor that carries a codec's configuration.
 *
 * The namespace keeps these apart from the platform's own utilities, some of which have the same
 * names.
 */
namespace android::ogm {

// MPEG audio (ISO/IEC 11172-3, 13818-3 and its extension to low sampling rates).

inline constexpr uint32_t kMP3HeaderFound = 0;
inline constexpr uint32_t kMP3HeaderNotFound = 0x80000000;

/**
 * Whether a frame may begin here: sync, version, layer, bitrate and sampling rate are possible.
 * Weaker than GetMPEGAudioFrameSize, which refuses the free format too. False below 3 bytes.
 */
bool IsPlausibleMPEGAudioSync(ByteView data);

/**
 * Decodes a frame header, read big-endian. Sizes are in bytes, `sampleRate` in Hz, `bitrate` in
 * kbit/s; all but `frameSize` may be null. Returns false for a reserved field or the free format;
 * all outputs are 0 then, but for `samplesPerFrame`, which is 1152.
 */
bool GetMPEGAudioFrameSize(uint32_t header, uint64_t* frameSize, int32_t* sampleRate = nullptr,
                           int32_t* channels = nullptr, int32_t* bitrate = nullptr,
                           int32_t* samplesPerFrame = nullptr);

/**
 * Position of the first header among `length` bytes that agrees with `reference` in sync, version,
 * layer and sampling rate; -1 for none. A header needs 4 bytes.
 */
int32_t FindMatchingMPEGAudioHeader(ByteView data, int32_t length, uint32_t reference);

/**
 * Searches from `offset` for a header that another one, a frame later, confirms. Returns
 * kMP3HeaderFound with the header, and `offset` at the one that confirmed it, or
 * kMP3HeaderNotFound.
 */
uint32_t findMP3Header(ByteView data, uint64_t* offset, uint32_t* header);

// MPEG-4 video (ISO/IEC 14496-2).

/** Begins every start code; one byte follows that tells which. */
inline constexpr std::string_view kStartCodePrefix("\0\0\1", 3);

/**
 * Reads the size of the picture, in pixels, from a video object layer header with its start code.
 * Always true: a header that breaks the syntax, or ends too early, ends the process.
 */
bool ExtractDimensionsFromVOLHeader(ByteView data, int32_t* width, int32_t* height);

/** What GetStartCodeChunkSize returns when the end of the chunk is not among the bytes. */
inline constexpr int64_t kChunkNotEnded = -11;

/**
 * Size of the chunk that begins with a start code at the beginning of `data` and ends before the
 * next one, or kChunkNotEnded. Ends the process when there is no start code.
 */
int64_t GetStartCodeChunkSize(ByteView data);

// Descriptors (ISO/IEC 14496-1).

/**
 * An ES descriptor around a decoder's configuration. Ends the process for a configuration of more
 * than 16361 bytes, whose size the descriptor cannot hold.
 */
sp<ABuffer> MakeESDS(ByteView configuration);

/** Writes a size of at most 14 bits as two bytes; ends the process for a greater one. */
void WriteSize14(uint8_t** position, size_t size);

}  // namespace android::ogm
