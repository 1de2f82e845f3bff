// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "Markup.h"
#include "Panel.h"
#include "PathData.h"
#include "text/NumberText.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kPositionHeight = 220;
// The strip above the positions, with an arc from each seek's target to where it landed.
constexpr double kStripHeight = 30;
constexpr double kArcFoot = 22;
constexpr double kFlattestArc = 8;
constexpr double kSteepestArc = 40;
constexpr double kArcRise = 0.1;
constexpr double kPositionBase = kPositionHeight - 1;
// The column beside the plot that shows what opening read.
constexpr double kOpeningX = kPlotLeft - 14;
// Parts of the file that are closer than this cannot be distinguished.
constexpr double kMinDistance = 0.5;

class PositionPlot {
  public:
    explicit PositionPlot(const Chart& chart) : mChart(chart) {}

    double y(uint64_t position) const {
        const auto size =
                static_cast<double>(std::max<uint64_t>(mChart.timeline.file.sizeBytes, 1));
        const double part = std::min(static_cast<double>(position) / size, 1.0);
        return kPositionBase - part * (kPositionBase - kStripHeight);
    }

    PathData partsRead(double x, const ReadCost& cost) const {
        PathData path;
        double drawnTo = kPositionHeight + 1;
        bool open = false;
        for (const auto& [begin, end] : cost.extents.parts()) {
            const double top = std::min(y(end), y(begin) - 1);
            if (open && drawnTo - y(begin) < kMinDistance) {
                drawnTo = std::min(drawnTo, top);
                continue;
            }
            if (open) {
                path.vertical(drawnTo);
            }
            path.move(x, y(begin));
            drawnTo = top;
            open = true;
        }
        return open ? path.vertical(drawnTo) : path;
    }

    std::string text() const {
        std::string text = PathData().move(0, kPositionBase).horizontal(kPlotWidth).element("base");
        for (const Seek& shown : mChart.timeline.seeks) {
            text += seek(shown);
        }
        for (size_t i = 0; i < mChart.timeline.lanes.size(); ++i) {
            text += points(i).element("point " + mChart.trackClasses[i]);
        }
        return text;
    }

  private:
    PathData points(size_t lane) const {
        PathData path;
        if (const auto& bins = mChart.bars[lane].bins) {
            for (const Bin& bin : *bins) {
                const double timeUs = timeOfBinUs(bin.number, mChart.axis, mChart.detail.bins);
                path.dot(plotX(mChart, timeUs), y(bin.readUpTo));
            }
            return path;
        }
        for (const PacketPoint& packet : mChart.timeline.lanes[lane].packets) {
            path.dot(plotX(mChart, static_cast<double>(packet.timeUs)), y(packet.readUpTo));
        }
        return path;
    }

    std::string seek(const Seek& seek) const {
        const double target = plotX(mChart, static_cast<double>(seek.targetUs));
        std::string text =
                partsRead(target, seek.cost).element("seek") +
                PathData().move(target, kArcFoot - 4).vertical(kArcFoot + 4).element("target");
        if (seek.landedUs) {
            const double landed = plotX(mChart, static_cast<double>(*seek.landedUs));
            text += arc(target, landed).element("way") +
                    PathData().dot(landed, kArcFoot).element("landing");
        }
        return text;
    }

    // Longer arcs are higher, so that arcs to one place stay separate.
    static PathData arc(double from, double to) {
        const double rise = std::clamp(std::abs(to - from) * kArcRise, kFlattestArc, kSteepestArc);
        return PathData()
                .move(from, kArcFoot)
                .curve((from + to) / 2, kArcFoot - rise, to, kArcFoot);
    }

    const Chart& mChart;
};

}  // namespace

Panel positionPanel(const Chart& chart) {
    const PositionPlot plot(chart);
    Panel panel;
    panel.attributes =
            "class=\"panel position\" role=\"img\" "
            "aria-label=\"File position that had been read for each packet, over time\"";
    panel.height = kPositionHeight;
    panel.names = {"File position", "read for each packet"};
    if (!chart.timeline.seeks.empty()) {
        panel.names.insert(panel.names.end(), {"and by seeks; arcs go", "from target to landing"});
    }
    panel.labels = {{kStripHeight + 9, sizeText(chart.timeline.file.sizeBytes)},
                    {kPositionBase, "0"}};
    panel.fixed =
            plot.partsRead(kOpeningX, chart.timeline.opening).element("opening") +
            fmt::format("<text class=\"detail end\" x=\"{}\" y=\"{}\">read by opening</text>\n",
                        kOpeningX - 10, kPositionBase);
    panel.plot = plot.text();
    return panel;
}

}  // namespace ogmprobe::timeline
