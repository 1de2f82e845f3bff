// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

namespace ogmprobe {

/**
 * Whether the bytes are a Vorbis comment header as muxers put it in front of every stream of an Ogg
 * file, without its packet type byte: "vorbis", the vendor's name, the comments, the framing bit,
 * and nothing else.
 *
 * Extractors that do not know it hand it out as a video track's first buffer.
 */
bool isCommentHeader(std::span<const uint8_t> buffer);

}  // namespace ogmprobe
