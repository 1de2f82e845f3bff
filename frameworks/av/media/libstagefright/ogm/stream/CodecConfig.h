// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <media/NdkMediaError.h>
#include <media/NdkMediaFormat.h>

#include <cstdint>

#include "base/ByteBuffer.h"
#include "base/ByteView.h"
#include "page/PageReader.h"
#include "stream/StreamTable.h"

/** What decoders need to know before the first frame, collected from a file's first data pages. */
namespace android::ogm {

/** Completes the formats of the MPEG-4 video and MPEG audio streams. */
void collectCodecConfigs(const PageReader& pages, const StreamTable& streams,
                         int64_t firstDataPageOffset);

/**
 * Puts the ESDS of an MPEG-4 video stream into `format`: the headers before its first picture.
 * `rawBuffer` holds the stream's bytes so far; what precedes the headers is removed from it.
 * Returns AMEDIA_OK, UNSUPPORTED when more bytes are needed, or MALFORMED.
 */
media_status_t configureMpeg4Video(ByteBuffer* rawBuffer, AMediaFormat* format);

/**
 * Puts MIME type and layer of an MPEG audio stream into `format`, by its first confirmed frame.
 * Returns AMEDIA_OK, or MALFORMED when `data` does not hold one yet.
 */
media_status_t configureMpegAudio(ByteView data, AMediaFormat* format);

}  // namespace android::ogm
