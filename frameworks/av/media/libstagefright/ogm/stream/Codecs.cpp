// SPDX-License-Identifier: Apache-2.0
#define LOG_TAG "OgmExtractor"

#include "stream/Codecs.h"

#include <log/log.h>
#include <media/stagefright/foundation/MediaDefs.h>

#include <algorithm>
#include <iterator>

#include "codec/MimeTypes.h"
#include "stream/StreamTypes.h"

namespace android::ogm {

namespace {

struct Codec {
    uint32_t type;
    /** A pointer, because the platform's constants are variables. */
    const char* const* mime;
    /** Logged for a stream of the codec; null for no message. */
    const char* message;
};

struct CodecId {
    uint32_t id;
    const Codec* codec;
};

constexpr uint32_t fourcc(const char (&text)[5]) {
    return uint32_t{static_cast<uint8_t>(text[0])} << 24 |
           uint32_t{static_cast<uint8_t>(text[1])} << 16 |
           uint32_t{static_cast<uint8_t>(text[2])} << 8 | static_cast<uint8_t>(text[3]);
}

constexpr Codec kMpeg4{OGV_VIDEO_MP4, &MEDIA_MIMETYPE_VIDEO_MPEG4, "Video - MP4 Codec \n"};
constexpr Codec kMpeg2{OGV_VIDEO_MPEG, &MEDIA_MIMETYPE_VIDEO_MPEG2, "Video - MPEG Codec \n"};
constexpr Codec kH264{OGV_VIDEO_H264, &MEDIA_MIMETYPE_VIDEO_AVC, "Video - H264 Codec \n"};
constexpr Codec kDivx4{OGV_VIDEO_DIVX, &ogm::MEDIA_MIMETYPE_VIDEO_DIVX4, "Video - DIVX Codec \n"};
constexpr Codec kDivx3{OGV_VIDEO_DIVX, &MEDIA_MIMETYPE_VIDEO_DIVX3, nullptr};
constexpr Codec kWmv{OGV_VIDEO_WMV, &ogm::MEDIA_MIMETYPE_VIDEO_WMV, "Video - WMV3 Codec \n"};
constexpr Codec kVp8{OGV_VIDEO_VP8, &MEDIA_MIMETYPE_VIDEO_VP8, "Video - VP8 Codec \n"};
constexpr Codec kMjpeg{OGV_VIDEO_MJPEG, &MEDIA_MIMETYPE_VIDEO_MJPEG, "Video - MJPG Codec \n"};

// Names are case-sensitive, and all others are refused, for example "XVID" and "mjpg".
constexpr CodecId kVideoCodecs[] = {
        {fourcc("3IV2"), &kMpeg4}, {fourcc("3iv2"), &kMpeg4}, {fourcc("BLZ0"), &kMpeg4},
        {fourcc("DIGI"), &kMpeg4}, {fourcc("DIV1"), &kMpeg4}, {fourcc("div1"), &kMpeg4},
        {fourcc("DX50"), &kMpeg4}, {fourcc("dx50"), &kMpeg4}, {fourcc("DXGM"), &kMpeg4},
        {fourcc("EM4A"), &kMpeg4}, {fourcc("EPHV"), &kMpeg4}, {fourcc("FMP4"), &kMpeg4},
        {fourcc("fmp4"), &kMpeg4}, {fourcc("FVFW"), &kMpeg4}, {fourcc("HDX4"), &kMpeg4},
        {fourcc("hdx4"), &kMpeg4}, {fourcc("M4CC"), &kMpeg4}, {fourcc("M4S2"), &kMpeg4},
        {fourcc("m4s2"), &kMpeg4}, {fourcc("MP4S"), &kMpeg4}, {fourcc("mp4s"), &kMpeg4},
        {fourcc("MP4V"), &kMpeg4}, {fourcc("mp4v"), &kMpeg4}, {fourcc("MVXM"), &kMpeg4},
        {fourcc("RMP4"), &kMpeg4}, {fourcc("SEDG"), &kMpeg4}, {fourcc("SMP4"), &kMpeg4},
        {fourcc("UMP4"), &kMpeg4}, {fourcc("WV1F"), &kMpeg4}, {fourcc("MPEG"), &kMpeg2},
        {fourcc("mpeg"), &kMpeg2}, {fourcc("mpg1"), &kMpeg2}, {fourcc("mpg2"), &kMpeg2},
        {fourcc("EM2V"), &kMpeg2}, {fourcc("H264"), &kH264},  {fourcc("h264"), &kH264},
        {fourcc("x264"), &kH264},  {fourcc("avc1"), &kH264},  {fourcc("davc"), &kH264},
        {fourcc("vssh"), &kH264},  {fourcc("DIVX"), &kDivx4}, {fourcc("divx"), &kDivx4},
        {fourcc("DIV3"), &kDivx3}, {fourcc("div3"), &kDivx3}, {fourcc("WMV3"), &kWmv},
        {fourcc("wmv3"), &kWmv},   {fourcc("VP8F"), &kVp8},   {fourcc("vp8f"), &kVp8},
        {fourcc("MJPG"), &kMjpeg},
};

constexpr Codec kPcm{OGA_AUDIO_PCM, &MEDIA_MIMETYPE_AUDIO_RAW, "Audio - PCM Codec "};
constexpr Codec kAdpcm{OGA_AUDIO_ADPCM, &MEDIA_MIMETYPE_AUDIO_MS_ADPCM, "Audio - ADPCM Codec "};
// Layers I and II; the frames say which one it is.
constexpr Codec kMpegAudio{OGA_AUDIO_MPEG, &MEDIA_MIMETYPE_AUDIO_MPEG_LAYER_I,
                           "Audio - Mpeg Layer-1/2"};
constexpr Codec kMp3{OGA_AUDIO_MP3, &MEDIA_MIMETYPE_AUDIO_MPEG, "Audio - MP3 Codec "};
constexpr Codec kAac{OGA_AUDIO_AAC, &MEDIA_MIMETYPE_AUDIO_AAC, "Audio - AAC Codec \n"};
constexpr Codec kWma{OGA_AUDIO_WMA, &MEDIA_MIMETYPE_AUDIO_WMA, "Audio - WMA_V1 Codec \n"};
constexpr Codec kAc3{OGA_AUDIO_AC3, &MEDIA_MIMETYPE_AUDIO_AC3, "Audio - AC3 Codec "};
constexpr Codec kDts{OGA_AUDIO_DTS, &MEDIA_MIMETYPE_AUDIO_DTS, "Audio - DTS Codec "};

/** Format tags of RIFF audio, as the four hexadecimal digits in an OGM header. */
constexpr CodecId kAudioCodecs[] = {
        {fourcc("0001"), &kPcm}, {fourcc("0002"), &kAdpcm}, {fourcc("0050"), &kMpegAudio},
        {fourcc("0055"), &kMp3}, {fourcc("00FF"), &kAac},   {fourcc("00ff"), &kAac},
        {fourcc("0160"), &kWma}, {fourcc("2000"), &kAc3},   {fourcc("2001"), &kDts},
};

template <size_t N>
const Codec* findCodec(const CodecId (&codecs)[N], uint32_t id) {
    const CodecId* const found = std::find_if(std::begin(codecs), std::end(codecs),
                                              [id](const CodecId& row) { return row.id == id; });
    return found == std::end(codecs) ? nullptr : found->codec;
}

uint32_t applyCodec(const Codec& codec, AMediaFormat* format) {
    if (codec.message != nullptr) {
        ALOGI("%s", codec.message);
    }
    AMediaFormat_setString(format, AMEDIAFORMAT_KEY_MIME, *codec.mime);
    return codec.type;
}

}  // namespace

uint32_t mapVideoCodec(AMediaFormat* format, uint32_t fourcc) {
    const Codec* const codec = findCodec(kVideoCodecs, fourcc);
    if (codec == nullptr) {
        ALOGE("unknow video codec: %4X", fourcc);
        return OGM_TYPE_UNKNOWN;
    }
    return applyCodec(*codec, format);
}

uint32_t mapAudioCodec(AMediaFormat* format, uint32_t tag) {
    const Codec* const codec = findCodec(kAudioCodecs, tag);
    if (codec == nullptr) {
        ALOGE("unknown audio codec:%4X", tag);
        return OGM_TYPE_UNKNOWN;
    }
    return applyCodec(*codec, format);
}

}  // namespace android::ogm
