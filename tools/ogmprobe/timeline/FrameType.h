// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace ogmprobe::timeline {

/** How a picture was coded. */
enum class FrameType { kIntra, kPredicted, kBidirectional, kUnknown };

inline constexpr int kFrameTypes = 4;

/**
 * Returns the type of the first picture in a packet, by its header. Unknown for audio, for codecs
 * without a reader here, and for packets without a picture.
 */
FrameType frameTypeOf(std::string_view mime, std::span<const uint8_t> packet);

/** Returns "I", "P", "B", or "U" if it is unknown. */
char letterOf(FrameType type);

/** Returns a codec's names for the types, in their order: "I picture", or "key frame" and so on. */
std::span<const char* const, kFrameTypes> typeNames(std::string_view mime);

}  // namespace ogmprobe::timeline
