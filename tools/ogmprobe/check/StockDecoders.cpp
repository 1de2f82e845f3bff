// SPDX-License-Identifier: Apache-2.0
#include "check/StockDecoders.h"

#include <array>
#include <string>

#include "check/CodecXml.h"

// Source of these facts: the list of software codecs in Android 13's media.swcodec module
// (frameworks/av/media/libstagefright/data/media_codecs_sw.xml), whose decoders each device has,
// and the components of the same names (frameworks/av/media/codec2/components) for the profiles.
//
// Sure: names, MIME types and that there is no decoder for AC-3, E-AC-3, DTS, WMA, WMV, DivX 3,
// Motion JPEG or MS ADPCM; the largest sizes of MPEG-4, H.263, AVC, HEVC, VP8, VP9 and AV1;
// channels and rates of MP3, AMR and AAC; the profiles. Less sure, because releases differ: the
// largest bitrates and blocks per second of AVC and newer codecs, the rates of PCM and the channels
// of G.711. The decoder of MPEG-2 belongs to the domain of televisions, which a stock phone does
// not enable.
namespace ogmprobe::check {
namespace {

/** Empty columns: unknown. */
struct Video {
    std::string_view name;
    std::string_view mime;
    Extent maxSize;
    std::string_view blockCount;
    std::string_view blocksPerSecond;
    std::string_view bitrate;
    std::string_view unusable = {};
};

constexpr Extent kMinSize = {2, 2};
constexpr Extent kAlignment = {2, 2};
constexpr Extent kBlockSize = {16, 16};

constexpr std::array kVideo = {
        Video{"c2.android.mpeg4.decoder", "video/mp4v-es", {352, 288}, "", "12-11880", "1-384000"},
        Video{"c2.android.h263.decoder", "video/3gpp", {352, 288}, "", "", "1-384000"},
        Video{"c2.android.avc.decoder",
              "video/avc",
              {4080, 4080},
              "1-32768",
              "1-1966080",
              "1-48000000"},
        Video{"c2.android.hevc.decoder", "video/hevc", {4096, 4096}, "", "", "1-10000000"},
        Video{"c2.android.vp8.decoder",
              "video/x-vnd.on2.vp8",
              {2048, 2048},
              "1-16384",
              "1-1000000",
              "1-40000000"},
        Video{"c2.android.vp9.decoder",
              "video/x-vnd.on2.vp9",
              {2048, 2048},
              "1-16384",
              "1-500000",
              "1-40000000"},
        Video{"c2.android.av1.decoder", "video/av01", {2048, 2048}, "1-16384", "", "1-120000000"},
        Video{"c2.android.mpeg2.decoder",
              "video/mpeg2",
              {1920, 1088},
              "",
              "1-244800",
              "1-20000000",
              "belongs to the domain tv, which is not enabled"},
};

struct Audio {
    std::string_view name;
    std::string_view mime;
    std::string_view channels;
    std::string_view sampleRates;
    std::string_view bitrate;
};

constexpr std::array kAudio = {
        Audio{"c2.android.mp3.decoder", "audio/mpeg", "1-2",
              "8000,11025,12000,16000,22050,24000,32000,44100,48000", "8000-320000"},
        Audio{"c2.android.aac.decoder", "audio/mp4a-latm", "1-8",
              "7350,8000,11025,12000,16000,22050,24000,32000,44100,48000", "8000-960000"},
        Audio{"c2.android.amrnb.decoder", "audio/3gpp", "1", "8000", "4750-12200"},
        Audio{"c2.android.amrwb.decoder", "audio/amr-wb", "1", "16000", "6600-23850"},
        Audio{"c2.android.g711.alaw.decoder", "audio/g711-alaw", "", "8000-48000", "64000"},
        Audio{"c2.android.g711.mlaw.decoder", "audio/g711-mlaw", "", "8000-48000", "64000"},
        Audio{"c2.android.vorbis.decoder", "audio/vorbis", "1-8", "8000-96000", "32000-500000"},
        Audio{"c2.android.opus.decoder", "audio/opus", "1-8", "", "6000-510000"},
        Audio{"c2.android.flac.decoder", "audio/flac", "1-8", "1-655350", "1-21000000"},
        Audio{"c2.android.raw.decoder", "audio/raw", "1-8", "8000-192000", ""},
};

struct Profile {
    std::string_view decoder;
    std::string_view name;
};

constexpr std::array kProfiles = {
        Profile{"c2.android.mpeg4.decoder", "Simple"},
        Profile{"OMX.google.mpeg4.decoder", "Simple"},
        Profile{"c2.android.avc.decoder", "Baseline"},
        Profile{"c2.android.avc.decoder", "Main"},
        Profile{"c2.android.avc.decoder", "High"},
        Profile{"OMX.google.h264.decoder", "Baseline"},
        Profile{"OMX.google.h264.decoder", "Main"},
        Profile{"OMX.google.h264.decoder", "High"},
};

Decoder decoderOf(const Video& row) {
    Decoder decoder{std::string(row.name), std::string(row.mime), {}, std::string(row.unusable)};
    DecoderLimits& limits = decoder.limits;
    limits.minSize = kMinSize;
    limits.maxSize = row.maxSize;
    limits.alignment = kAlignment;
    limits.blockSize = kBlockSize;
    limits.blockCount = parseRanges(row.blockCount);
    limits.blocksPerSecond = parseRanges(row.blocksPerSecond);
    limits.bitrate = parseRanges(row.bitrate);
    return decoder;
}

Decoder decoderOf(const Audio& row) {
    Decoder decoder{std::string(row.name), std::string(row.mime), {}};
    decoder.limits.channelCount = parseRanges(row.channels);
    decoder.limits.sampleRate = parseRanges(row.sampleRates);
    decoder.limits.bitrate = parseRanges(row.bitrate);
    return decoder;
}

}  // namespace

DecoderList stockDecoders() {
    DecoderList list;
    list.source = "the software decoders of a stock Android 13";
    for (const Video& row : kVideo) {
        list.decoders.push_back(decoderOf(row));
    }
    for (const Audio& row : kAudio) {
        list.decoders.push_back(decoderOf(row));
    }
    return list;
}

std::vector<std::string_view> profilesOf(std::string_view decoder) {
    std::vector<std::string_view> names;
    for (const Profile& row : kProfiles) {
        if (row.decoder == decoder) {
            names.push_back(row.name);
        }
    }
    return names;
}

}  // namespace ogmprobe::check
