// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/** The layout of an Ogg page (RFC 3533, section 6). */
namespace android::ogm {

inline constexpr std::string_view kCapturePattern = "OggS";

// Offsets of the fields in a page header.
inline constexpr size_t kVersionOffset = 4;
inline constexpr size_t kFlagsOffset = 5;
inline constexpr size_t kGranulePositionOffset = 6;
inline constexpr size_t kSerialNoOffset = 14;
inline constexpr size_t kPageNoOffset = 18;
inline constexpr size_t kNumSegmentsOffset = 26;
inline constexpr size_t kLacingOffset = 27;

/** A lacing value below this one ends a packet. */
inline constexpr uint8_t kUnterminated = 255;

/** First byte of the packet that announces an OGM stream, on the stream's first page. */
inline constexpr uint8_t kStreamHeaderPacket = 0x01;

}  // namespace android::ogm
