// SPDX-License-Identifier: Apache-2.0
#include "check/DecoderJson.h"

#include <array>
#include <nlohmann/json.hpp>
#include <utility>

namespace ogmprobe::check {
namespace {

using nlohmann::ordered_json;

using ExtentMember = std::optional<Extent> DecoderLimits::*;
using RangesMember = Ranges DecoderLimits::*;

constexpr std::array<std::pair<const char*, ExtentMember>, 4> kExtents = {{
        {"least_size", &DecoderLimits::minSize},
        {"most_size", &DecoderLimits::maxSize},
        {"alignment", &DecoderLimits::alignment},
        {"block_size", &DecoderLimits::blockSize},
}};

constexpr std::array<std::pair<const char*, RangesMember>, 6> kRanges = {{
        {"block_count", &DecoderLimits::blockCount},
        {"blocks_per_second", &DecoderLimits::blocksPerSecond},
        {"frame_rate", &DecoderLimits::frameRate},
        {"bitrate", &DecoderLimits::bitrate},
        {"sample_rate", &DecoderLimits::sampleRate},
        {"channel_count", &DecoderLimits::channelCount},
}};

}  // namespace

ordered_json toJson(const Decoder& decoder) {
    ordered_json json = {
            {"name", decoder.name}, {"mime", decoder.mime}, {"unusable", decoder.unusable}};
    for (const auto& [name, member] : kExtents) {
        if (const auto& extent = decoder.limits.*member) {
            json[name] = {extent->width, extent->height};
        }
    }
    for (const auto& [name, member] : kRanges) {
        auto list = ordered_json::array();
        for (const Range& range : decoder.limits.*member) {
            list.push_back({range.least, range.most});
        }
        json[name] = std::move(list);
    }
    return json;
}

Decoder decoderOf(const ordered_json& json) {
    Decoder decoder;
    json.at("name").get_to(decoder.name);
    json.at("mime").get_to(decoder.mime);
    json.at("unusable").get_to(decoder.unusable);
    for (const auto& [name, member] : kExtents) {
        if (const auto found = json.find(name); found != json.end()) {
            decoder.limits.*member =
                    Extent{found->at(0).get<int64_t>(), found->at(1).get<int64_t>()};
        }
    }
    for (const auto& [name, member] : kRanges) {
        for (const auto& range : json.at(name)) {
            (decoder.limits.*member)
                    .push_back({range.at(0).get<double>(), range.at(1).get<double>()});
        }
    }
    return decoder;
}

}  // namespace ogmprobe::check
