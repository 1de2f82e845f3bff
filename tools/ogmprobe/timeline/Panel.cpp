// SPDX-License-Identifier: Apache-2.0
#include "Panel.h"

#include <fmt/core.h>

#include "PathData.h"

namespace ogmprobe::timeline {
namespace {

constexpr double kNameLeft = 12;
constexpr double kFirstNameY = 13;
constexpr double kNameHeight = 15;
constexpr double kLabelGap = 6;

std::string namesOf(const Panel& panel) {
    std::string text;
    double y = kFirstNameY;
    for (const std::string& name : panel.names) {
        text += fmt::format("<text class=\"{}\" x=\"{}\" y=\"{}\">{}</text>\n",
                            text.empty() ? "name" : "detail", kNameLeft, y, name);
        y += kNameHeight;
    }
    return text;
}

std::string labelsOf(const Panel& panel) {
    std::string text = fmt::format("<g class=\"right\" transform=\"translate({})\">\n", kPlotRight);
    for (const HeightLabel& label : panel.labels) {
        text += fmt::format("<text class=\"label\" x=\"{}\" y=\"{}\">{}</text>\n", kLabelGap,
                            coordinate(label.y), label.text);
    }
    return text + "</g>\n";
}

}  // namespace

std::string panelElement(const Panel& panel, double y) {
    return fmt::format(
            "<g {} transform=\"translate(0 {})\">\n{}{}{}"
            "<svg class=\"plot\" x=\"{}\" width=\"{}\" height=\"{}\" overflow=\"visible\">\n"
            "<rect class=\"ground\" width=\"100%\" height=\"100%\"/>\n{}</svg>\n</g>\n",
            panel.attributes, coordinate(y), namesOf(panel), labelsOf(panel), panel.fixed,
            kPlotLeft, kPlotWidth, coordinate(panel.height), panel.plot);
}

}  // namespace ogmprobe::timeline
