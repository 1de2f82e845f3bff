// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "Chart.h"

/** The parts of the drawing, one below the other, with one time axis. */
namespace ogmprobe::timeline {

// Columns: names, the plot, labels of the vertical axis.
inline constexpr double kPlotLeft = 172;
inline constexpr double kPlotWidth = 1000;
inline constexpr double kPlotRight = kPlotLeft + kPlotWidth;
inline constexpr double kDrawingWidth = kPlotRight + 88;

/** A label of the vertical axis, that far below the panel's top. */
struct HeightLabel {
    double y = 0;
    std::string text;
};

struct Panel {
    /** Attributes of the panel's element. */
    std::string attributes;
    double height = 0;
    /** Left of the plot; the first is the title. Escaped. */
    std::vector<std::string> names;
    std::vector<HeightLabel> labels;
    /** Elements beside the plot, which neither move nor grow with the time axis. */
    std::string fixed;
    /** Elements of the plot, from 0 to `kPlotWidth`. */
    std::string plot;
};

Panel lanePanel(const Chart& chart, size_t lane);
Panel bitratePanel(const Chart& chart);
Panel positionPanel(const Chart& chart);

/** Returns the panel as an SVG element with its top at y. */
std::string panelElement(const Panel& panel, double y);

/** Returns the place of a time in a plot. */
inline double plotX(const Chart& chart, double timeUs) {
    return chart.axis.place(timeUs) * kPlotWidth;
}

}  // namespace ogmprobe::timeline
