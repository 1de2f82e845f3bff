// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

#include "Markup.h"
#include "Panel.h"
#include "PathData.h"
#include "text/NumberText.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kVideoHeight = 104;
constexpr double kAudioHeight = 60;
// Above the bars, so that the heads of sync frames stay free; below them, for the marks of times.
constexpr double kHeadHeight = 6;
constexpr double kMarkHeight = 13;

constexpr double kWidestBar = 6;
constexpr double kWidestHead = 4;
constexpr double kBarPart = 0.72;
constexpr double kMinLineSpacing = 4;
constexpr size_t kLongestName = 25;

/** Returns an attribute for lines with some space between them. */
std::string widthOf(double spacing, double widest) {
    return fmt::format("stroke-width=\"{}\"",
                       coordinate(std::clamp(spacing * kBarPart, 1.0, widest)));
}

/** The plot of one lane with bars on a base line. */
class LanePlot {
  public:
    LanePlot(const Chart& chart, size_t lane)
        : mChart(chart),
          mLane(chart.timeline.lanes[lane]),
          mTiming(chart.timings[lane]),
          mBars(chart.bars[lane]),
          mTrackClass(chart.trackClasses[lane]) {}

    double base() const { return kHeadHeight + barHeight(); }
    double height() const { return base() + kMarkHeight; }

    std::string text() const {
        // The other packets of its bin would hide a short gap.
        const std::string packets = mBars.bins ? bars() + gaps() : gaps() + bars();
        return syncs() + packets + baseLine() +
               marks("repeated", repeatedTimes(), base() + 2, base() + 7) +
               marks("backward", backwardTimes(), base() + 7, height() - 1);
    }

  private:
    double barHeight() const {
        return mLane.track.kind == TrackKind::kVideo ? kVideoHeight : kAudioHeight;
    }

    double barTop(uint64_t bytes) const {
        const auto top = static_cast<double>(std::max<uint64_t>(mBars.top, 1));
        return base() - static_cast<double>(bytes) / top * barHeight();
    }

    /** Returns the places of the times, rounded to those that can be distinguished. */
    std::set<double> places(const std::vector<double>& timesUs) const {
        std::set<double> result;
        const size_t bins = mChart.detail.bins;
        for (const double timeUs : timesUs) {
            result.insert(plotX(mChart, mChart.detail.packets
                                                ? timeUs
                                                : timeOfBinUs(binOf(timeUs, mChart.axis, bins),
                                                              mChart.axis, bins)));
        }
        return result;
    }

    std::string marks(const char* cssClass, const std::vector<double>& timesUs, double from,
                      double to, const std::string& attributes = "") const {
        PathData path;
        for (const double x : places(timesUs)) {
            path.move(x, from).vertical(to);
        }
        return path.element(cssClass, attributes);
    }

    std::vector<double> repeatedTimes() const {
        std::vector<double> timesUs;
        for (const TimeGroup& group : mTiming.groups) {
            if (group.packets.size() > 1) {
                timesUs.push_back(static_cast<double>(group.timeUs));
            }
        }
        return timesUs;
    }

    std::vector<double> backwardTimes() const {
        std::vector<double> timesUs;
        for (const size_t index : mTiming.backwardSteps) {
            timesUs.push_back(static_cast<double>(mLane.packets[index].timeUs));
        }
        return timesUs;
    }

    std::string syncs() const {
        if (!marksSyncs(mLane)) {
            return "";
        }
        std::vector<double> timesUs;
        for (const PacketPoint& packet : mLane.packets) {
            if (packet.isSync) {
                timesUs.push_back(static_cast<double>(packet.timeUs));
            }
        }
        const double spacing = kPlotWidth / static_cast<double>(places(timesUs).size());
        // Adjacent lines would merge into one area.
        const std::string lines =
                spacing < kMinLineSpacing ? "" : marks("sync", timesUs, 0, base());
        return lines + marks("head", timesUs, 0, kHeadHeight - 1, widthOf(spacing, kWidestHead));
    }

    // At least as wide as a bin, so that many short ones do not add up; their outline shows them.
    std::string gaps() const {
        const double least = kPlotWidth / static_cast<double>(mChart.detail.bins);
        PathData path;
        double drawnTo = -kPlotWidth;
        for (const Gap& gap : mTiming.gaps) {
            const double from = std::max(plotX(mChart, gap.fromUs), drawnTo);
            const double to = plotX(mChart, gap.toUs);
            if (to > from) {
                drawnTo = std::max(to, from + least);
                path.rectangle(from, kHeadHeight, drawnTo, base());
            }
        }
        return path.element("gap");
    }

    std::string barClass(FrameType type) const {
        return mLane.track.kind == TrackKind::kVideo ? fmt::format("bar type-{}", letterOf(type))
                                                     : fmt::format("bar {}", mTrackClass);
    }

    std::string bars() const {
        std::array<PathData, kFrameTypes> paths;
        for (const Bar& bar : mBars.bars) {
            const double from = barTop(bar.from);
            // Stacked bars leave a line free; the smallest is still visible.
            const double to = std::min(barTop(bar.to) + (bar.from > 0 ? 0.5 : 0), from - 1);
            paths[static_cast<size_t>(bar.type)].move(plotX(mChart, bar.timeUs), from).vertical(to);
        }
        const double spacing = mBars.spacingUs / mChart.axis.lengthUs() * kPlotWidth;
        const std::string width = widthOf(spacing, kWidestBar);
        std::string text;
        for (size_t type = 0; type < paths.size(); ++type) {
            text += paths[type].element(barClass(static_cast<FrameType>(type)), width);
        }
        return text;
    }

    std::string baseLine() const {
        return PathData().move(0, base()).horizontal(kPlotWidth).element("base");
    }

    const Chart& mChart;
    const Lane& mLane;
    const Timing& mTiming;
    const LaneBars& mBars;
    const std::string& mTrackClass;
};

/** Returns the name, cut before it would overlap the plot. */
std::string shortName(const std::string& name) {
    return name.size() <= kLongestName ? name : name.substr(0, kLongestName - 3) + "...";
}

}  // namespace

Panel lanePanel(const Chart& chart, size_t index) {
    const Lane& lane = chart.timeline.lanes[index];
    const LanePlot plot(chart, index);
    const std::string kind = kindName(lane.track.kind);
    const std::string packets = counted(lane.packets.size(), "packet");
    const std::string label = fmt::format("Track {}, {}, {}: {}", lane.track.index, kind,
                                          lane.track.codec.name, packets);
    Panel panel;
    panel.attributes =
            fmt::format("class=\"panel lane\" data-lane=\"{}\" role=\"img\" aria-label=\"{}\"",
                        index, escaped(label));
    panel.height = plot.height();
    panel.names = {fmt::format("Track {}, {}", lane.track.index, kind),
                   escaped(shortName(lane.track.codec.name)), packets};
    if (chart.bars[index].top > 0) {
        panel.labels = {{kHeadHeight + 9, sizeText(chart.bars[index].top)}, {plot.base(), "0"}};
    }
    panel.fixed = fmt::format(
            "<rect class=\"swatch {}\" x=\"1\" y=\"4\" width=\"8\" height=\"10\" rx=\"2\"/>\n",
            chart.trackClasses[index]);
    panel.plot = plot.text();
    return panel;
}

}  // namespace ogmprobe::timeline
