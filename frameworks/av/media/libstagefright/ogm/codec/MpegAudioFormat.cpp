// SPDX-License-Identifier: Apache-2.0
#include "codec/MpegAudioFormat.h"

#include <media/stagefright/foundation/MediaDefs.h>

#include "stream/MimeTypes.h"

namespace android::ogm {

void setMpegAudioLayer(AMediaFormat* format, uint32_t layerBits) {
    const char* const mimeByLayer[] = {MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I,
                                       MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_II,
                                       MEDIA_MIMETYPE_AUDIO_MPEG};
    const int32_t layer = mpegAudioLayer(layerBits);
    AMediaFormat_setString(format, AMEDIAFORMAT_KEY_MIME, mimeByLayer[layer - 1]);
    AMediaFormat_setInt32(format, AMEDIAFORMAT_KEY_MPEG_AUD_LAYER, layer);
}

}  // namespace android::ogm
