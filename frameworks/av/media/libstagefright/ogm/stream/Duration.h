// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace android {

enum class LogicStreamType { kUnknown, kVideo, kAudio };

/** Whether a stream type (an OgmStreamType) is of video, 16 to 26, or of audio, 1 to 9. */
LogicStreamType getLogicStrmType(uint32_t streamType);

}  // namespace android
