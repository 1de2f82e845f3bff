// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <cstdint>

#include "base/Format.h"

namespace android::ogm {

/** Puts the layer and its MIME type into `format`; `layerBits` is 1 to 3. */
void setMpegAudioLayer(AMediaFormat* format, uint32_t layerBits);

/**
 * The format of a stream with frames of this header. Ends the process if the layer is the reserved
 * one.
 */
FormatPtr makeMpegAudioFormat(uint32_t header);

}  // namespace android::ogm
