// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/stagefright/foundation/ABuffer.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/ByteView.h"

/**
 * Headers of MPEG-4 video, and the descriptor for a codec's configuration.
 *
 * The namespace is needed because some of the platform's own utilities have the same names.
 */
namespace android::ogm {

// MPEG-4 video (ISO/IEC 14496-2).

/** Begins every start code; the next byte is the code itself. */
inline constexpr std::string_view kStartCodePrefix("\0\0\1", 3);

/**
 * Reads the size of the picture, in pixels, from a video object layer header with its start code.
 * Always returns true: an invalid or truncated header ends the process.
 */
bool ExtractDimensionsFromVOLHeader(ByteView data, int32_t* width, int32_t* height);

/** Returned by GetStartCodeChunkSize if the bytes end before the chunk. */
inline constexpr int64_t kChunkNotEnded = -11;

/**
 * Size of the chunk from the start code at the beginning of `data` up to the next start code, or
 * kChunkNotEnded. Ends the process if `data` does not begin with a start code.
 */
int64_t GetStartCodeChunkSize(ByteView data);

// Descriptors (ISO/IEC 14496-1).

/**
 * Makes an ES descriptor with a decoder's configuration. Ends the process if that has more than
 * 16361 bytes, which the descriptor's size field cannot express.
 */
sp<ABuffer> MakeESDS(ByteView configuration);

/** Writes a 14-bit size as two bytes; ends the process for a larger size. */
void WriteSize14(uint8_t** position, size_t size);

}  // namespace android::ogm
