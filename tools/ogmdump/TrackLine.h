// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <cstddef>
#include <string>

namespace ogmdump {

/** The values in a track's format. */
std::string trackLine(size_t index, AMediaFormat* format);

}  // namespace ogmdump
