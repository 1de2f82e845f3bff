// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <map>
#include <string_view>
#include <vector>

#include "Page.h"
#include "PageColumns.h"
#include "text/Json.h"

namespace ogmprobe::timeline {
namespace {

using nlohmann::ordered_json;

// Digests cannot be compressed, so those of many packets are cut to limit the page's size.
constexpr uint64_t kDigestBytesOfAPage = 500000;
constexpr uint64_t kMinDigestBytes = 2;

uint64_t digestBytes(const Timeline& timeline) {
    uint64_t packets = 1;
    for (const Lane& lane : timeline.lanes) {
        packets += lane.packets.size();
    }
    return std::clamp(kDigestBytesOfAPage / packets, kMinDigestBytes, sizeof(uint64_t));
}

ordered_json laneJson(const Chart& chart, size_t index, uint64_t lead) {
    const Lane& lane = chart.timeline.lanes[index];
    return {{"track", lane.track.index},
            {"kind", kindName(lane.track.kind)},
            {"codec", lane.track.codec.name},
            {"colour", chart.trackClasses[index]},
            {"noun", lane.countsFrames ? "frame" : "packet"},
            {"typeNames", typeNames(lane.track.mime)},
            {"marksSyncs", marksSyncs(lane)},
            {"usualUs", chart.timings[index].packetUs},
            {"packets", lane.packets.size()},
            {"lead", lead},
            {"lost", lane.lost.size()},
            {"gaps", chart.timings[index].gaps.size()}};
}

ordered_json partsJson(const ReadCost& cost) {
    auto parts = ordered_json::array();
    for (const auto& [begin, end] : cost.extents.parts()) {
        parts.push_back({begin, end});
    }
    return parts;
}

ordered_json seeksJson(const std::vector<Seek>& seeks) {
    auto list = ordered_json::array();
    for (const Seek& seek : seeks) {
        list.push_back({{"targetUs", seek.targetUs},
                        {"landedUs", orNull(seek.landedUs)},
                        {"sync", seek.isSync},
                        {"reads", seek.cost.reads},
                        {"bytes", seek.cost.bytes},
                        {"parts", partsJson(seek.cost)}});
    }
    return list;
}

ordered_json findingsJson(const std::vector<ShownFinding>& findings) {
    auto list = ordered_json::array();
    for (const ShownFinding& finding : findings) {
        const auto& span = finding.span;
        list.push_back({{"id", finding.id},
                        {"text", finding.text},
                        {"line", finding.line},
                        {"usual", finding.usual},
                        {"lane", orNull(finding.lane)},
                        {"refused", orNull(finding.refused)},
                        {"offset", orNull(finding.offset)},
                        {"fromUs", span ? ordered_json(span->firstUs) : ordered_json(nullptr)},
                        {"toUs", span ? ordered_json(span->lastUs) : ordered_json(nullptr)}});
    }
    return list;
}

ordered_json refusedJson(const std::vector<RefusedStream>& streams) {
    auto list = ordered_json::array();
    for (const RefusedStream& stream : streams) {
        list.push_back({{"name", stream.name},
                        {"reason", stream.reason},
                        {"packets", stream.packets.size()}});
    }
    return list;
}

/** Returns the texts, each with the page that it belongs to. */
std::string linesText(const std::vector<PageLine>& lines) {
    std::map<std::string_view, size_t> numbers;
    auto texts = ordered_json::array();
    auto places = ordered_json::array();
    for (const PageLine& line : lines) {
        const auto [entry, isNew] = numbers.emplace(line.text, texts.size());
        if (isNew) {
            texts.push_back(line.text);
        }
        places.push_back(line.page);
        places.push_back(entry->second);
    }
    return toLine({{"texts", std::move(texts)}, {"places", std::move(places)}});
}

/** A "<" could end the element that holds the data; in JSON it occurs only in strings. */
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

PageColumns columnsOf(const Chart& chart) {
    const Timeline& timeline = chart.timeline;
    PageColumns columns(digestBytes(timeline));
    columns.addPages(timeline.pages);
    for (size_t i = 0; i < timeline.lanes.size(); ++i) {
        const auto& packets = timeline.lanes[i].packets;
        columns.addPackets(packets);
        columns.addRanges(packets, &PacketPoint::pageUs);
        columns.addRanges(packets, &PacketPoint::lateByVideoUs);
        columns.addLost(timeline.lanes[i].lost);
        columns.addGaps(chart.timings[i].gaps);
    }
    for (const RefusedStream& stream : timeline.refused) {
        columns.addLost(stream.packets);
    }
    columns.addText(linesText(timeline.lines));
    return columns;
}

}  // namespace

PageData pageData(const Chart& chart) {
    const Timeline& timeline = chart.timeline;
    const PageColumns columns = columnsOf(chart);
    const auto steps = tickStepsUs();
    ordered_json json = {{"axis",
                          {{"startUs", chart.axis.startUs()},
                           {"lengthUs", chart.axis.lengthUs()},
                           {"stepsUs", std::vector<double>(steps.begin(), steps.end())}}},
                         {"fileSize", timeline.file.sizeBytes},
                         {"pages", timeline.pages.size()},
                         {"digestBytes", digestBytes(timeline)},
                         {"reasons", columns.reasons()},
                         {"opening", partsJson(timeline.opening)},
                         {"seeks", seeksJson(timeline.seeks)},
                         {"findings", findingsJson(timeline.findings)},
                         {"refused", refusedJson(timeline.refused)},
                         {"columns", columns.sizes()}};
    auto lanes = ordered_json::array();
    for (size_t i = 0; i < timeline.lanes.size(); ++i) {
        lanes.push_back(laneJson(chart, i, columns.leads()[i]));
    }
    json["lanes"] = std::move(lanes);
    return {forScriptElement(toLine(json)), columns.text()};
}

}  // namespace ogmprobe::timeline
