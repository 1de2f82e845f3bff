// SPDX-License-Identifier: Apache-2.0
#include "plugin/TrackDescription.h"

#include <fmt/format.h>
#include <media/NdkMediaFormat.h>
#include <media/NdkMediaFormatZor.h>

#include <string_view>

#include "codecs/Esds.h"
#include "codecs/Mpeg4Video.h"
#include "plugin/Format.h"
#include "text/Hex.h"

namespace ogmprobe {
namespace {

TrackKind kindOf(std::string_view mime) {
    if (mime.starts_with("video/")) {
        return TrackKind::kVideo;
    }
    return mime.starts_with("audio/") ? TrackKind::kAudio : TrackKind::kOther;
}

std::string known(std::optional<int32_t> value) {
    return value ? fmt::format("{}", *value) : "?";
}

void addDecoderConfig(const DecoderConfig& config, std::vector<std::string>& lines) {
    lines.push_back(fmt::format(
            "object type 0x{:02x} ({}), stream type {}, buffer {}, bitrate {} "
            "(at most {})",
            config.objectTypeIndication, objectTypeName(config.objectTypeIndication),
            config.streamType, config.bufferSizeDb, config.avgBitrate, config.maxBitrate));
    if (!config.decoderSpecificInfo) {
        return;
    }
    const auto& info = *config.decoderSpecificInfo;
    const auto layer = videoObjectLayer(info);
    const bool isLayer = !layer.empty() && layer.size() == info.size();
    lines.push_back(fmt::format("decoder specific info{}, {} bytes: {}",
                                isLayer ? " (a video object layer)" : "", info.size(),
                                hexText(info, " ")));
    if (!layer.empty() && !isLayer) {
        lines.push_back(
                fmt::format("video object layer, {} bytes: {}", layer.size(), hexText(layer, " ")));
    }
}

}  // namespace

TrackDescription describeTrack(size_t index, const Format& format) {
    TrackDescription track;
    track.index = index;
    track.mime = format.string(AMEDIAFORMAT_KEY_MIME).value_or("");
    track.durationUs = format.int64(AMEDIAFORMAT_KEY_DURATION);
    track.width = format.int32(AMEDIAFORMAT_KEY_WIDTH);
    track.height = format.int32(AMEDIAFORMAT_KEY_HEIGHT);
    track.frameRate = format.int32(AMEDIAFORMAT_KEY_FRAME_RATE);
    track.sampleRate = format.int32(AMEDIAFORMAT_KEY_SAMPLE_RATE);
    track.channelCount = format.int32(AMEDIAFORMAT_KEY_CHANNEL_COUNT);
    track.mpegAudioLayer = format.int32(AMEDIAFORMAT_KEY_MPEG_AUD_LAYER);
    track.esds = format.buffer(AMEDIAFORMAT_KEY_ESDS);
    track.entries = format.entries();
    classify(track);
    return track;
}

void classify(TrackDescription& track) {
    track.kind = kindOf(track.mime);
    track.codec = codecOf(track.mime, track.mpegAudioLayer);
}

std::string kindName(TrackKind kind) {
    switch (kind) {
        case TrackKind::kVideo:
            return "video";
        case TrackKind::kAudio:
            return "audio";
        case TrackKind::kOther:
            break;
    }
    return "other";
}

std::string formatText(const TrackDescription& track) {
    if (track.kind == TrackKind::kVideo) {
        return fmt::format("{}x{}, {} fps", known(track.width), known(track.height),
                           known(track.frameRate));
    }
    if (track.kind == TrackKind::kAudio) {
        return fmt::format("{} Hz, {} channel{}", known(track.sampleRate),
                           known(track.channelCount), track.channelCount == 1 ? "" : "s");
    }
    return "-";
}

std::vector<std::string> esdsLines(const std::vector<uint8_t>& esds) {
    const auto es = parseEsDescriptor(esds);
    if (!es) {
        return {"not a whole ES descriptor"};
    }
    std::vector<std::string> lines = {fmt::format("tags {:#04x}, ES_ID {}, flags {:#04x}",
                                                  fmt::join(es->tags, " "), es->esId, es->flags)};
    if (es->decoderConfig) {
        addDecoderConfig(*es->decoderConfig, lines);
    }
    return lines;
}

// If one of these fails, the framework stops converting the format.
std::vector<std::string> complaints(const TrackDescription& track) {
    std::vector<std::string> list;
    if (track.mime.empty()) {
        list.push_back(fmt::format("track {} has no MIME type: clients abort", track.index));
    }
    if (track.kind == TrackKind::kVideo &&
        (track.width.value_or(0) <= 0 || track.height.value_or(0) <= 0)) {
        list.push_back(
                fmt::format("track {} has no picture size: clients lose the rest of its "
                            "format",
                            track.index));
    }
    if (track.kind == TrackKind::kAudio &&
        (track.sampleRate.value_or(0) <= 0 || track.channelCount.value_or(-1) < 0)) {
        list.push_back(
                fmt::format("track {} has no sample rate or channel count: clients lose the "
                            "rest of its format",
                            track.index));
    }
    return list;
}

}  // namespace ogmprobe
