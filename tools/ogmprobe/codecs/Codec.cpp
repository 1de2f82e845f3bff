// SPDX-License-Identifier: Apache-2.0
#include "codecs/Codec.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>

namespace ogmprobe {
namespace {

struct Row {
    std::string_view mime;
    std::string_view name;
    std::string_view suffix;
    Packaging packaging = Packaging::kRaw;
    std::string_view fourcc = {};
};

constexpr std::array kCodecs = {
        Row{"video/mp4v-es", "MPEG-4 Part 2", ".m4v", Packaging::kMpeg4},
        Row{"video/divx4", "DivX 4", ".m4v", Packaging::kMpeg4},
        Row{"video/divx", "DivX", ".m4v", Packaging::kMpeg4},
        Row{"video/divx3", "DivX 3", ".avi", Packaging::kAvi, "DIV3"},
        Row{"video/mpeg2", "MPEG-1/2 video", ".m2v"},
        Row{"video/avc", "H.264", ".h264"},
        Row{"video/hevc", "H.265", ".h265"},
        Row{"video/x-vnd.on2.vp8", "VP8", ".ivf", Packaging::kIvf},
        Row{"video/x-ms-wmv", "WMV 9", ".avi", Packaging::kAvi, "WMV3"},
        Row{"video/x-motion-jpeg", "Motion JPEG", ".mjpeg"},
        Row{"audio/raw", "PCM", ".wav", Packaging::kWav},
        Row{"audio/x-adpcm-ms", "MS ADPCM", ".wav", Packaging::kAdpcmWav},
        Row{"audio/mp4a-latm", "AAC", ".aac", Packaging::kBare},
        Row{"audio/x-ms-wma", "WMA 1", ".wma1", Packaging::kBare},
        Row{"audio/ac3", "AC-3", ".ac3"},
        Row{"audio/eac3", "E-AC-3", ".eac3"},
        Row{"audio/vnd.dts", "DTS", ".dts"},
};

struct MpegAudioType {
    std::string_view mime;
    int32_t layer;
};

constexpr std::array kMpegAudioTypes = {
        MpegAudioType{"audio/mpeg-L1", 1},
        MpegAudioType{"audio/mpeg-L2", 2},
        MpegAudioType{"audio/mpeg", 3},
};

constexpr int32_t kMpegAudioLayers = 3;

Codec mpegAudio(int32_t layer) {
    return {fmt::format("MP{0} (MPEG audio layer {0})", layer), fmt::format(".mp{}", layer)};
}

}  // namespace

Codec codecOf(std::string_view mime, std::optional<int32_t> mpegAudioLayer) {
    const auto hasMime = [mime](const auto& row) { return row.mime == mime; };
    const auto* type = std::find_if(kMpegAudioTypes.begin(), kMpegAudioTypes.end(), hasMime);
    if (type != kMpegAudioTypes.end()) {
        const int32_t layer = mpegAudioLayer.value_or(0);
        return mpegAudio(layer >= 1 && layer <= kMpegAudioLayers ? layer : type->layer);
    }
    const auto* row = std::find_if(kCodecs.begin(), kCodecs.end(), hasMime);
    if (row != kCodecs.end()) {
        return {std::string(row->name), std::string(row->suffix), row->packaging,
                std::string(row->fourcc)};
    }
    return {std::string(mime), ".bin", Packaging::kBare};
}

}  // namespace ogmprobe
