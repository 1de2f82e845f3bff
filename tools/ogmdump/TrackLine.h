// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <cstddef>
#include <string>

namespace ogmdump {

/** What a track's format says. */
std::string trackLine(size_t index, AMediaFormat* format);

}  // namespace ogmdump
