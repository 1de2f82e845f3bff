// SPDX-License-Identifier: Apache-2.0
#include "plugin/TrackJson.h"

#include <cstdint>
#include <vector>

#include "codecs/Esds.h"
#include "codecs/Mpeg4Video.h"
#include "text/Hex.h"
#include "text/Json.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

ordered_json esdsJson(const std::vector<uint8_t>& bytes) {
    ordered_json json = {{"bytes", hexText(bytes)}, {"valid", false}};
    const auto es = parseEsDescriptor(bytes);
    if (!es) {
        return json;
    }
    json["valid"] = true;
    json["tags"] = es->tags;
    json["es_id"] = es->esId;
    json["flags"] = es->flags;
    if (!es->decoderConfig) {
        return json;
    }
    const DecoderConfig& config = *es->decoderConfig;
    json["object_type_indication"] = config.objectTypeIndication;
    json["stream_type"] = config.streamType;
    json["buffer_size_db"] = config.bufferSizeDb;
    json["max_bitrate"] = config.maxBitrate;
    json["avg_bitrate"] = config.avgBitrate;
    if (config.decoderSpecificInfo) {
        json["decoder_specific_info"] = hexText(*config.decoderSpecificInfo);
        json["video_object_layer"] = hexText(videoObjectLayer(*config.decoderSpecificInfo));
    }
    return json;
}

}  // namespace

ordered_json toJson(const TrackDescription& track) {
    return {{"index", track.index},
            {"mime", track.mime},
            {"kind", kindName(track.kind)},
            {"codec", track.codec.name},
            {"duration_us", orNull(track.durationUs)},
            {"width", orNull(track.width)},
            {"height", orNull(track.height)},
            {"frame_rate", orNull(track.frameRate)},
            {"sample_rate", orNull(track.sampleRate)},
            {"channel_count", orNull(track.channelCount)},
            {"mpeg_audio_layer", orNull(track.mpegAudioLayer)},
            {"esds", track.esds ? esdsJson(*track.esds) : ordered_json(nullptr)},
            {"format", toJson(track.entries)}};
}

ordered_json toJson(const std::vector<FormatEntry>& entries) {
    auto list = ordered_json::array();
    for (const FormatEntry& entry : entries) {
        list.push_back({{"name", entry.name}, {"value", entry.value}});
    }
    return list;
}

}  // namespace ogmprobe
