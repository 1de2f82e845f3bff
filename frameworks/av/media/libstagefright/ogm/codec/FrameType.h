// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "base/ByteView.h"

/** The coding type of a video packet, read from its first picture header. */
namespace android::ogm {

inline constexpr int32_t kUnknownFrame = 0;
inline constexpr int32_t kIntraFrame = 1;
inline constexpr int32_t kPredictedFrame = 2;
inline constexpr int32_t kBidirectionalFrame = 3;

/** From vop_coding_type (ISO/IEC 14496-2); kUnknownFrame for a sprite or without a VOP. */
int32_t mpeg4FrameType(ByteView packet);

/** From picture_coding_type (ISO/IEC 11172-2, 13818-2). */
int32_t mpegFrameType(ByteView packet);

}  // namespace android::ogm
