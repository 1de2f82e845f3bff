// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaFormat.h>

#include <cstdint>

/** The codecs that a stream header may name. */
namespace android::ogm {

/**
 * Puts the MIME type of a video codec into `format`. Returns its stream type; or OGM_TYPE_UNKNOWN,
 * without changing the format, if the FOURCC is not supported.
 */
uint32_t mapVideoCodec(AMediaFormat* format, uint32_t fourcc);

/** The same for an audio format tag. */
uint32_t mapAudioCodec(AMediaFormat* format, uint32_t tag);

}  // namespace android::ogm
