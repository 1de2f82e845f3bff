// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <cctype>
#include <cmath>
#include <vector>

#include "Page.h"
#include "Panel.h"
#include "text/Json.h"
#include "text/TimeArithmetic.h"

namespace ogmprobe::timeline {
namespace {

using nlohmann::ordered_json;

/** Frame types; capitals are sync frames. */
std::string kindsOf(const std::vector<PacketPoint>& packets) {
    std::string kinds;
    for (const PacketPoint& packet : packets) {
        const auto letter = static_cast<unsigned char>(letterOf(packet.type));
        kinds += static_cast<char>(packet.isSync ? letter : std::tolower(letter));
    }
    return kinds;
}

// Differences are short where the values are long.
void addPackets(const std::vector<PacketPoint>& packets, ordered_json& json) {
    std::vector<int64_t> times;
    std::vector<uint64_t> sizes;
    std::vector<int64_t> positions;
    PacketPoint before;
    for (const PacketPoint& packet : packets) {
        times.push_back(timeDifferenceUs(packet.timeUs, before.timeUs));
        sizes.push_back(packet.size);
        positions.push_back(static_cast<int64_t>(packet.readUpTo - before.readUpTo));
        before = packet;
    }
    json["times"] = times;
    json["sizes"] = sizes;
    json["positions"] = positions;
    json["kinds"] = kindsOf(packets);
}

void addBins(const std::vector<Bin>& bins, ordered_json& json) {
    auto rows = ordered_json::array();
    for (const Bin& bin : bins) {
        rows.push_back({bin.number, bin.packets, bin.largest, bin.bytes, bin.syncs, bin.readUpTo});
    }
    json["bins"] = std::move(rows);
}

ordered_json laneJson(const Chart& chart, size_t index) {
    const Lane& lane = chart.timeline.lanes[index];
    ordered_json json = {
            {"name", fmt::format("Track {} ({})", lane.track.index, lane.track.codec.name)},
            {"pictures", lane.track.kind == TrackKind::kVideo},
            {"top", chart.bars[index].top}};
    if (const auto& bins = chart.bars[index].bins) {
        addBins(*bins, json);
    } else {
        addPackets(lane.packets, json);
    }
    return json;
}

std::vector<int64_t> roundedRates(const std::vector<double>& rates) {
    std::vector<int64_t> result;
    result.reserve(rates.size());
    for (const double rate : rates) {
        result.push_back(std::llround(rate));
    }
    return result;
}

ordered_json bitrateJson(const Bitrate& bitrate) {
    auto lanes = ordered_json::array();
    for (const auto& rates : bitrate.lanes) {
        lanes.push_back(roundedRates(rates));
    }
    return {{"startUs", bitrate.startUs},
            {"windowUs", bitrate.windowUs},
            {"total", roundedRates(bitrate.total)},
            {"lanes", std::move(lanes)}};
}

ordered_json seeksJson(const std::vector<Seek>& seeks) {
    auto list = ordered_json::array();
    for (const Seek& seek : seeks) {
        list.push_back({{"targetUs", seek.targetUs},
                        {"landedUs", orNull(seek.landedUs)},
                        {"sync", seek.isSync},
                        {"reads", seek.cost.reads},
                        {"bytes", seek.cost.bytes}});
    }
    return list;
}

/** A "<" could end the element that the data stands in; in JSON it occurs in strings alone. */
std::string forScriptElement(const std::string& json) {
    std::string result;
    for (const char character : json) {
        if (character == '<') {
            result += "\\u003c";
        } else {
            result += character;
        }
    }
    return result;
}

}  // namespace

std::string pageData(const Chart& chart) {
    const auto steps = tickStepsUs();
    ordered_json json = {
            {"axis",
             {{"startUs", chart.axis.startUs()},
              {"lengthUs", chart.axis.lengthUs()},
              {"stepsUs", std::vector<double>(steps.begin(), steps.end())}}},
            {"plot",
             {{"left", kPlotLeft}, {"width", kPlotWidth}, {"right", kDrawingWidth - kPlotRight}}},
            {"binCount", chart.detail.bins},
            {"fileSize", chart.timeline.file.sizeBytes},
            {"bitrate", bitrateJson(chart.bitrate)},
            {"seeks", seeksJson(chart.timeline.seeks)}};
    auto lanes = ordered_json::array();
    for (size_t i = 0; i < chart.timeline.lanes.size(); ++i) {
        lanes.push_back(laneJson(chart, i));
    }
    json["lanes"] = std::move(lanes);
    return forScriptElement(toLine(json));
}

}  // namespace ogmprobe::timeline
