// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/stagefright/foundation/ABuffer.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/ByteView.h"

/**
 * Headers of MPEG-4 video, and the descriptor that carries a codec's configuration.
 *
 * The namespace keeps these apart from the platform's own utilities, some of which have the same
 * names.
 */
namespace android::ogm {

// MPEG-4 video (ISO/IEC 14496-2).

/** Begins every start code; the next byte is the code itself. */
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
