// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <fmt/core.h>

#include <cmath>
#include <iterator>
#include <string>

namespace ogmprobe::timeline {

/** Returns a number for an SVG document. Hundredths are enough for the largest zoom. */
inline std::string coordinate(double value) {
    return fmt::format("{}", std::round(value * 100) / 100);
}

/** The `d` of an SVG path. */
class PathData {
  public:
    PathData& move(double x, double y) { return add('M', x).add(' ', y); }
    PathData& vertical(double y) { return add('V', y); }
    PathData& horizontal(double x) { return add('H', x); }
    /** A quadratic curve that is drawn towards its middle point. */
    PathData& curve(double middleX, double middleY, double x, double y) {
        return add('Q', middleX).add(' ', middleY).add(' ', x).add(' ', y);
    }
    /** A point that is visible only with round caps. */
    PathData& dot(double x, double y) {
        move(x, y);
        mText += "h0";
        return *this;
    }
    PathData& rectangle(double left, double top, double right, double bottom) {
        move(left, top).horizontal(right).vertical(bottom).horizontal(left);
        mText += 'z';
        return *this;
    }

    bool isEmpty() const { return mText.empty(); }
    const std::string& text() const { return mText; }

    /** Returns the element; empty for an empty path. Attributes are not escaped. */
    std::string element(const std::string& cssClass, const std::string& attributes = "") const {
        return isEmpty() ? ""
                         : fmt::format("<path class=\"{}\"{}{} d=\"{}\"/>\n", cssClass,
                                       attributes.empty() ? "" : " ", attributes, mText);
    }

  private:
    PathData& add(char command, double value) {
        mText += command;
        mText += coordinate(value);
        return *this;
    }

    std::string mText;
};

}  // namespace ogmprobe::timeline
