// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>
#include <media/NdkMediaFormat.h>

#include <cstdint>

#include "base/ByteBuffer.h"
#include "base/ByteView.h"
#include "page/PageReader.h"
#include "stream/StreamTable.h"

/** Collects what decoders need before the first frame from a file's first data pages. */
namespace android::ogm {

/** Completes the formats of the MPEG-4 video and MPEG audio streams. */
void collectCodecConfigs(const PageReader& pages, const StreamTable& streams,
                         int64_t firstDataPageOffset);

/**
 * Puts the ESDS of an MPEG-4 video stream into `format`: the headers before its first picture.
 * `rawBuffer` has the stream's bytes so far; bytes before the headers are removed from it. Returns
 * AMEDIA_OK, UNSUPPORTED if more bytes are needed, or MALFORMED.
 */
media_status_t configureMpeg4Video(ByteBuffer* rawBuffer, AMediaFormat* format);

/**
 * Puts MIME type and layer of an MPEG audio stream into `format`, from its first confirmed frame.
 * Returns AMEDIA_OK, or MALFORMED if `data` has none yet.
 */
media_status_t configureMpegAudio(ByteView data, AMediaFormat* format);

}  // namespace android::ogm
