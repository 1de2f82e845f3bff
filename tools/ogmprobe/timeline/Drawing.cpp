// SPDX-License-Identifier: Apache-2.0
#include "Drawing.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <utility>

#include "Markup.h"
#include "PageTexts.h"
#include "Panel.h"
#include "PathData.h"
#include "text/NumberText.h"
#include "text/TimeText.h"
#include "text/TimeUnits.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kLegendHeight = 30;
// The smallest width of the drawing when a page fits it into a window.
constexpr double kLegendWidth = 940;
constexpr double kPanelGap = 14;
constexpr double kAxisHeight = 26;
constexpr double kHeadingLeft = 12;
constexpr double kTitleHeight = 34;
constexpr double kLineHeight = 20;
// Enough for wide fonts at the sheet's 12 px.
constexpr double kCharacterWidth = 7;
constexpr double kSwatchSize = 12;
constexpr double kMarkWidth = 4;
constexpr double kSwatchGap = 6;
constexpr double kEntryGap = 14;
constexpr int kMaxTicks = 12;

struct LegendEntry {
    std::string cssClass;
    std::string text;
    /** Marks are narrower than areas. */
    double width = kSwatchSize;
};

template <typename Predicate>
bool anyPacket(const Chart& chart, Predicate predicate) {
    const auto& lanes = chart.timeline.lanes;
    return std::any_of(lanes.begin(), lanes.end(), [&predicate](const Lane& lane) {
        return std::any_of(lane.packets.begin(), lane.packets.end(),
                           [&](const PacketPoint& packet) { return predicate(lane, packet); });
    });
}

bool hasPictures(const Chart& chart, FrameType type) {
    return anyPacket(chart, [type](const Lane& lane, const PacketPoint& packet) {
        return lane.track.kind == TrackKind::kVideo && packet.type == type;
    });
}

template <typename Predicate>
bool anyTiming(const Chart& chart, Predicate predicate) {
    return std::any_of(chart.timings.begin(), chart.timings.end(), predicate);
}

void addMarks(const Chart& chart, std::vector<LegendEntry>& entries) {
    const auto& lanes = chart.timeline.lanes;
    if (std::any_of(lanes.begin(), lanes.end(), marksSyncs)) {
        entries.push_back({"swatch head", "sync frame", kMarkWidth});
    }
    if (anyTiming(chart, [](const Timing& timing) { return !timing.gaps.empty(); })) {
        entries.push_back({"swatch gap", "gap"});
    }
    if (anyTiming(chart, [](const Timing& timing) { return timing.repeatedTimes > 0; })) {
        entries.push_back({"swatch repeated", "equal times", kMarkWidth});
    }
    if (anyTiming(chart, [](const Timing& timing) { return !timing.backwardSteps.empty(); })) {
        entries.push_back({"swatch backward", "backward step", kMarkWidth});
    }
    if (!chart.timeline.seeks.empty()) {
        entries.push_back({"swatch seek", "read by a seek"});
    }
}

std::vector<LegendEntry> legendOf(const Chart& chart) {
    constexpr std::array kPictures = {std::pair{FrameType::kIntra, "I picture"},
                                      std::pair{FrameType::kPredicted, "P picture"},
                                      std::pair{FrameType::kBidirectional, "B picture"},
                                      std::pair{FrameType::kUnknown, "type unknown"}};
    std::vector<LegendEntry> entries;
    for (const auto& [type, text] : kPictures) {
        if (hasPictures(chart, type)) {
            entries.push_back({fmt::format("swatch type-{}", letterOf(type)), text});
        }
    }
    addMarks(chart, entries);
    return entries;
}

/** Returns the legend in rows; moves y below the last. */
std::string legendElement(const Chart& chart, double& y) {
    std::string text = "<g class=\"legend\">\n";
    double x = kHeadingLeft;
    for (const LegendEntry& entry : legendOf(chart)) {
        const double textAt = entry.width + kSwatchGap;
        const double width = textAt + static_cast<double>(entry.text.size()) * kCharacterWidth;
        if (x + width > kLegendWidth) {
            x = kHeadingLeft;
            y += kLineHeight;
        }
        text += fmt::format(
                "<rect class=\"{}\" x=\"{}\" y=\"{}\" width=\"{}\" height=\"{}\" rx=\"2\"/>"
                "<text class=\"detail\" x=\"{}\" y=\"{}\">{}</text>\n",
                entry.cssClass, coordinate(x), coordinate(y + 4), entry.width, kSwatchSize,
                coordinate(x + textAt), coordinate(y + 14), entry.text);
        x += width + kEntryGap;
    }
    y += kLegendHeight;
    return text + "</g>\n";
}

std::vector<Panel> panelsOf(const Chart& chart) {
    std::vector<Panel> panels;
    for (size_t i = 0; i < chart.timeline.lanes.size(); ++i) {
        panels.push_back(lanePanel(chart, i));
    }
    panels.push_back(bitratePanel(chart));
    panels.push_back(positionPanel(chart));
    return panels;
}

/** Returns lines through all panels, and the times below them. */
std::string timeAxisElement(const Chart& chart, double top, double bottom) {
    std::string text = fmt::format(
            "<g class=\"times\" transform=\"translate({})\" data-top=\"{}\" data-bottom=\"{}\">\n",
            kPlotLeft, coordinate(top), coordinate(bottom));
    for (const Tick& tick : ticksOf(chart.axis, kMaxTicks)) {
        const double x = plotX(chart, tick.timeUs);
        text += PathData().move(x, top).vertical(bottom).element("grid");
        text += fmt::format("<text class=\"label tick\" x=\"{}\" y=\"{}\">{}</text>\n",
                            coordinate(x), coordinate(bottom + 16), tick.label);
    }
    return text + "</g>\n";
}

/** Returns legend, panels and time axis from y on; moves y below them. */
std::string bodyOf(const Chart& chart, double& y) {
    std::string text = legendElement(chart, y);
    const double top = y;
    std::string panels;
    for (const Panel& panel : panelsOf(chart)) {
        panels += panelElement(panel, y);
        y += panel.height + kPanelGap;
    }
    text += timeAxisElement(chart, top, y - kPanelGap);
    y += kAxisHeight - kPanelGap;
    return text + panels;
}

std::string opening(const std::string& attributes, double height) {
    return fmt::format(
            "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"timeline\" viewBox=\"0 0 {} {}\" "
            "{}>\n",
            kDrawingWidth, coordinate(height), attributes);
}

std::string textLine(const std::string& cssClass, double y, const std::string& text) {
    return fmt::format("<text class=\"{}\" x=\"{}\" y=\"{}\">{}</text>\n", cssClass, kHeadingLeft,
                       coordinate(y), escaped(text));
}

/** Returns what bars mean if they are not packets. */
std::string binText(const Chart& chart) {
    return chart.detail.packets ? ""
                                : fmt::format("; a bar is the largest packet of {:.3g} s",
                                              chart.axis.lengthUs() / kUsPerSecond /
                                                      static_cast<double>(chart.detail.bins));
}

std::string headingOf(const Chart& chart, double& y) {
    std::string text = textLine("title", y + 24, chart.timeline.fileName);
    y += kTitleHeight;
    text += textLine("detail", y + 12, summaryOf(chart) + binText(chart));
    y += kLineHeight;
    for (const std::string& note : notesOf(chart)) {
        text += textLine("note", y + 12, note);
        y += kLineHeight;
    }
    return text;
}

}  // namespace

std::string drawingDocument(const Chart& chart) {
    double y = 0;
    const std::string heading = headingOf(chart, y);
    const std::string body = bodyOf(chart, y);
    const std::string size =
            fmt::format("role=\"img\" width=\"{}\" height=\"{}\"", kDrawingWidth, coordinate(y));
    return fmt::format(
            "{}<title>{}</title>\n<style>\n{}{}</style>\n"
            "<rect class=\"paper\" width=\"100%\" height=\"100%\"/>\n{}{}</svg>\n",
            opening(size, y), escaped("Timeline of " + chart.timeline.fileName), kColours,
            kDrawingSheet, heading, body);
}

std::string summaryOf(const Chart& chart) {
    const FileOpened& file = chart.timeline.file;
    const bool hasPackets = anyPacket(chart, [](const Lane&, const PacketPoint&) { return true; });
    const std::string covered =
            hasPackets ? fmt::format("packets from {} to {} s", secondsText(chart.span.firstUs),
                                     secondsText(chart.span.lastUs))
                       : "no packets";
    return fmt::format("{}, {}, duration {}, {}, {}", file.mime, sizeText(file.sizeBytes),
                       durationText(file.durationUs), counted(chart.timeline.lanes.size(), "track"),
                       covered);
}

std::vector<std::string> notesOf(const Chart& chart) {
    std::vector<std::string> notes = chart.timeline.failures;
    if (!notes.empty()) {
        notes.emplace_back("What could be read is drawn.");
    }
    return notes;
}

}  // namespace ogmprobe::timeline
