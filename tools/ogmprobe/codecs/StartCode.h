// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

namespace ogmprobe {

/** The beginning of every start code of MPEG video and H.264; the code itself follows. */
inline constexpr std::array<uint8_t, 3> kStartCodePrefix = {0x00, 0x00, 0x01};

}  // namespace ogmprobe
