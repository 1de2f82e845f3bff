// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <cstdint>

#include "base/Format.h"

namespace android::ogm {

/** The layer field of an MPEG audio frame header: 3 to 1 for layers I to III, 0 is reserved. */
constexpr uint32_t mpegAudioLayerBits(uint32_t header) {
    return header >> 17 & 3;
}

/** Layer I, II or III as 1, 2 or 3. */
constexpr int32_t mpegAudioLayer(uint32_t layerBits) {
    return 4 - static_cast<int32_t>(layerBits);
}

/** Puts the layer and its MIME type into `format`; `layerBits` is 1 to 3. */
void setMpegAudioLayer(AMediaFormat* format, uint32_t layerBits);

/**
 * The format of a stream whose frames have a header like this one. Ends the process for the
 * reserved layer.
 */
FormatPtr makeMpegAudioFormat(uint32_t header);

}  // namespace android::ogm
