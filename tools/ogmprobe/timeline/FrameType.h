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
 * The type of the first picture in a packet, from its header alone. Unknown for audio, for codecs
 * without a reader here, and for packets that hold no picture.
 */
FrameType frameTypeOf(std::string_view mime, std::span<const uint8_t> packet);

/** "I", "P", "B", or "U" where it is unknown. */
char letterOf(FrameType type);

/** What the types are called with a codec, in their order: "I picture", or "key frame" and so on.
 */
std::span<const char* const, kFrameTypes> typeNames(std::string_view mime);

}  // namespace ogmprobe::timeline
