// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "codec/MpegAudioFormat.h"

#include <media/stagefright/foundation/MediaDefs.h>

#include "base/Assert.h"
#include "codec/MimeTypes.h"
#include "codec/MpegAudioHeader.h"

namespace android::ogm {

void setMpegAudioLayer(AMediaFormat* format, uint32_t layerBits) {
    const char* const mimeByLayer[] = {MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I,
                                       MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_II,
                                       MEDIA_MIMETYPE_AUDIO_MPEG};
    const int32_t layer = mpegAudioLayer(layerBits);
    AMediaFormat_setString(format, AMEDIAFORMAT_KEY_MIME, mimeByLayer[layer - 1]);
    AMediaFormat_setInt32(format, AMEDIAFORMAT_KEY_MPEG_AUD_LAYER, layer);
}

FormatPtr makeMpegAudioFormat(uint32_t header) {
    uint64_t frameSize = 0;
    int32_t sampleRate = 0;
    int32_t channels = 0;
    (void)GetMPEGAudioFrameSize(header, &frameSize, &sampleRate, &channels);
    FormatPtr format(AMediaFormat_new());
    const uint32_t layerBits = mpegAudioLayerBits(header);
    OGM_CHECK(layerBits != 0, OGM_SOURCES "OgmExtractor:735 Should not be here. ");
    setMpegAudioLayer(format.get(), layerBits);
    AMediaFormat_setInt32(format.get(), AMEDIAFORMAT_KEY_SAMPLE_RATE, sampleRate);
    AMediaFormat_setInt32(format.get(), AMEDIAFORMAT_KEY_CHANNEL_COUNT, channels);
    return format;
}

}  // namespace android::ogm
