// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <array>
#include <initializer_list>
#include <string>
#include <vector>

#include "Markup.h"
#include "Page.h"
#include "text/NumberText.h"
#include "text/TimeArithmetic.h"
#include "text/TimeText.h"
#include "text/TimeUnits.h"

namespace ogmprobe::timeline {
namespace {

enum class Cells { kNumbers, kWords, kProse };

/** A table's column. Numbers are aligned right; prose may be wrapped. */
struct Column {
    const char* name;
    Cells cells = Cells::kNumbers;
};

/** An HTML table, row by row. */
class HtmlTable {
  public:
    explicit HtmlTable(std::vector<Column> columns) : mColumns(std::move(columns)) {
        mText = "<table>\n<thead><tr>";
        for (const Column& column : mColumns) {
            mText += fmt::format("<th scope=\"col\"{}>{}</th>", classOf(column), column.name);
        }
        mText += "</tr></thead>\n<tbody>\n";
    }

    /**
     * Adds one cell per column, escaped here. `before` is an element before the first cell's text.
     */
    void add(const std::vector<std::string>& cells, const std::string& before = "") {
        mText += "<tr>";
        for (size_t i = 0; i < cells.size(); ++i) {
            mText += fmt::format("<td{}>{}{}</td>", classOf(mColumns[i]), i == 0 ? before : "",
                                 escaped(cells[i]));
        }
        mText += "</tr>\n";
    }

    std::string text() const { return mText + "</tbody>\n</table>\n"; }

  private:
    static const char* classOf(const Column& column) {
        switch (column.cells) {
            case Cells::kNumbers:
                return " class=\"number\"";
            case Cells::kProse:
                return " class=\"prose\"";
            case Cells::kWords:
                break;
        }
        return "";
    }

    std::vector<Column> mColumns;
    std::string mText;
};

std::string numberText(uint64_t number) {
    return fmt::format("{}", number);
}

/** Returns the name without the part that all types share. */
std::string_view shortTypeName(std::string_view name) {
    return name.substr(0, name.find(' '));
}

/** Counts of a lane's packets. */
struct Counts {
    uint64_t bytes = 0;
    uint64_t largest = 0;
    uint64_t syncs = 0;
    /** I pictures or key frames that are sync frames. */
    uint64_t syncIntra = 0;
    std::array<uint64_t, kFrameTypes> types = {};
};

Counts countsOf(const Lane& lane) {
    Counts counts;
    for (const PacketPoint& packet : lane.packets) {
        counts.bytes += packet.size;
        counts.largest = std::max(counts.largest, packet.size);
        counts.syncs += packet.isSync ? 1 : 0;
        counts.syncIntra += packet.isSync && packet.type == FrameType::kIntra ? 1 : 0;
        ++counts.types[static_cast<size_t>(packet.type)];
    }
    return counts;
}

/** Reports I pictures that have no sync flag. */
std::string intraText(const Counts& counts) {
    const uint64_t intra = counts.types[static_cast<size_t>(FrameType::kIntra)];
    return intra > counts.syncIntra && counts.syncs > 0
                   ? fmt::format(" ({} without a sync flag)", intra - counts.syncIntra)
                   : "";
}

/** "12 I, 30 P": the types that occur. */
std::string typesText(const Lane& lane, const Counts& counts) {
    const auto names = typeNames(lane.track.mime);
    std::string text;
    for (size_t type = 0; type < kFrameTypes; ++type) {
        const bool isUnknown = type == static_cast<size_t>(FrameType::kUnknown);
        const uint64_t count = counts.types[type];
        if (count > 0 && !(isUnknown && lane.track.kind != TrackKind::kVideo)) {
            text += fmt::format(
                    "{}{} {}{}", text.empty() ? "" : ", ", count,
                    isUnknown ? "unknown" : shortTypeName(names[type]),
                    type == static_cast<size_t>(FrameType::kIntra) ? intraText(counts) : "");
        }
    }
    return text.empty() ? "-" : text;
}

/** Reports missing packets, and times without a packet. */
std::string missingText(const Lane& lane, const Timing& timing) {
    const std::string gaps =
            timing.gaps.empty() ? "" : counted(timing.gaps.size(), "gap") + " in time";
    const std::string lost =
            lane.lost.empty() ? ""
                              : counted(lane.lost.size(), lane.countsFrames ? "frame" : "packet");
    return gaps.empty() && lost.empty()   ? "none"
           : gaps.empty() || lost.empty() ? gaps + lost
                                          : lost + ", " + gaps;
}

std::string timesText(const Timing& timing) {
    if (timing.groups.empty()) {
        return "-";
    }
    return secondsText(timing.groups.front().timeUs) + " to " +
           secondsText(timing.groups.back().timeUs);
}

/** Returns the rate over the time that the packets cover, including the last one's usual length. */
std::string averageRateText(const Timing& timing, const Counts& counts) {
    if (timing.groups.size() < 2) {
        return "-";
    }
    const TimeGroup& last = timing.groups.back();
    const double lengthUs = static_cast<double>(last.timeUs) -
                            static_cast<double>(timing.groups.front().timeUs) +
                            static_cast<double>(last.packets.size()) * timing.packetUs;
    return rateText(static_cast<double>(counts.bytes) * 8 / (lengthUs / kUsPerSecond));
}

std::string offTargetText(const Seek& seek) {
    return seek.landedUs ? secondsText(timeDifferenceUs(*seek.landedUs, seek.targetUs)) : "-";
}

}  // namespace

std::string trackTable(const Chart& chart) {
    HtmlTable table({{"Track", Cells::kWords},
                     {"Codec", Cells::kProse},
                     {"Format", Cells::kWords},
                     {"Times (s)", Cells::kWords},
                     {"Packets"},
                     {"Bytes"},
                     {"Mean rate"},
                     {"Largest"},
                     {"Sync"},
                     {"Pictures", Cells::kProse},
                     {"Missing", Cells::kProse},
                     {"Equal times"},
                     {"Backward steps"}});
    for (size_t i = 0; i < chart.timeline.lanes.size(); ++i) {
        const Lane& lane = chart.timeline.lanes[i];
        const Timing& timing = chart.timings[i];
        const Counts counts = countsOf(lane);
        table.add({fmt::format("{} {}", lane.track.index, kindName(lane.track.kind)),
                   lane.track.codec.name, formatText(lane.track), timesText(timing),
                   numberText(lane.packets.size()), numberText(counts.bytes),
                   averageRateText(timing, counts), sizeText(counts.largest),
                   numberText(counts.syncs), typesText(lane, counts), missingText(lane, timing),
                   numberText(timing.repeatedTimes), numberText(timing.backwardSteps.size())},
                  fmt::format("<span class=\"key {}\"></span>", chart.trackClasses[i]));
    }
    return table.text();
}

std::string readTable(const Chart& chart) {
    HtmlTable table({{"What", Cells::kWords},
                     {"Landed at (s)"},
                     {"Off target (s)"},
                     {"Sync", Cells::kWords},
                     {"Reads"},
                     {"Bytes"}});
    const auto add = [&table](const std::string& what, const Seek& seek) {
        table.add({what, secondsText(seek.landedUs), offTargetText(seek),
                   seek.landedUs ? (seek.isSync ? "yes" : "no") : "-", numberText(seek.cost.reads),
                   numberText(seek.cost.bytes)});
    };
    add("opening the file", {0, std::nullopt, false, chart.timeline.opening});
    add("playing it", {0, std::nullopt, false, chart.timeline.playing});
    for (const Seek& seek : chart.timeline.seeks) {
        add(fmt::format("seek to {}", secondsText(seek.targetUs)), seek);
    }
    return table.text();
}

}  // namespace ogmprobe::timeline
