// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include "Markup.h"
#include "Panel.h"
#include "PathData.h"
#include "text/NumberText.h"
#include "text/TimeUnits.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kRateHeight = 96;
constexpr double kTop = 6;
constexpr double kRateBase = kRateHeight - 1;

/** One step for each window. */
PathData stepsOf(const Chart& chart, const std::vector<double>& rates) {
    const Bitrate& bitrate = chart.bitrate;
    PathData path;
    for (size_t i = 0; i < rates.size(); ++i) {
        const double fromUs = bitrate.startUs + static_cast<double>(i) * bitrate.windowUs;
        const double y = kRateBase - rates[i] / bitrate.highest * (kRateBase - kTop);
        if (i == 0) {
            path.move(plotX(chart, fromUs), y);
        } else {
            path.vertical(y);
        }
        path.horizontal(plotX(chart, fromUs + bitrate.windowUs));
    }
    return path;
}

PathData areaOf(const Chart& chart) {
    PathData path = stepsOf(chart, chart.bitrate.total);
    path.vertical(kRateBase).horizontal(plotX(chart, chart.bitrate.startUs));
    return path;
}

}  // namespace

Panel bitratePanel(const Chart& chart) {
    const Bitrate& bitrate = chart.bitrate;
    Panel panel;
    panel.attributes = "class=\"panel bitrate\" role=\"img\" aria-label=\"Bitrate over time\"";
    panel.height = kRateHeight;
    panel.names = {"Bitrate", "all tracks: area",
                   fmt::format("windows of {:.3g} s", bitrate.windowUs / kUsPerSecond)};
    if (bitrate.highest > 0) {
        panel.labels = {{kTop + 9, rateText(bitrate.highest)}, {kRateBase, "0"}};
        panel.plot = areaOf(chart).element("total");
        for (size_t i = 0; i < bitrate.lanes.size(); ++i) {
            panel.plot += stepsOf(chart, bitrate.lanes[i]).element("rate " + chart.trackClasses[i]);
        }
    }
    panel.plot += PathData().move(0, kRateBase).horizontal(kPlotWidth).element("base");
    return panel;
}

}  // namespace ogmprobe::timeline
