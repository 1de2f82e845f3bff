// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

namespace ogmprobe {

/**
 * Returns whether the bytes are exactly a Vorbis comment header, which muxers put before every
 * stream of an Ogg file, without its packet type byte: "vorbis", the vendor's name, the comments,
 * the framing bit.
 *
 * Extractors that do not know it return it as a video track's first buffer.
 */
bool isCommentHeader(std::span<const uint8_t> buffer);

}  // namespace ogmprobe
