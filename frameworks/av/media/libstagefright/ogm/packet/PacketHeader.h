// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "base/ByteView.h"

/**
 * The header before the bytes of every OGM data packet: one byte with flags and, for audio, a
 * duration of a few bytes after it.
 */
namespace android::ogm {

inline constexpr size_t kVideoPacketHeaderSize = 1;

/** A header byte with exactly this value marks a key frame. */
inline constexpr uint8_t kKeyFramePacket = 0x08;

/** An audio packet up to this size is treated as a header without content. */
inline constexpr size_t kMaxEmptyAudioPacket = 3;

/**
 * Size of an audio packet's header, 3 to 10 bytes, computed from its first byte.
 *
 * The format's rule is 1 plus the length in bits 1, 7 and 6. This function uses bits 1, 0 and 6 and
 * adds 3. Both give 3 for the usual first bytes (bit 7 set; bits 0, 1 and 6 clear). For others the
 * result is too large or too small. All devices do this; keep it.
 */
constexpr size_t audioPacketHeaderSize(uint8_t firstByte) {
    return size_t{((unsigned{firstByte} << 1) & 6U) | ((unsigned{firstByte} >> 6) & 1U)} + 3;
}

/**
 * Number of bytes before the frame in a queued packet of a stream type; 0 for an access unit. If
 * the packet has no frame, logs that and returns nothing.
 */
std::optional<size_t> frameHeaderSize(uint32_t streamType, ByteView packet);

}  // namespace android::ogm
