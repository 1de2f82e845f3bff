// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "Timeline.h"

namespace ogmprobe::timeline {

/** Presentation time as a place between 0 and 1. */
class TimeAxis {
  public:
    /** From the first to the last time, with a small margin on both sides. */
    explicit TimeAxis(const TimeSpan& span);

    double startUs() const { return mStartUs; }
    double lengthUs() const { return mLengthUs; }
    double place(double timeUs) const { return (timeUs - mStartUs) / mLengthUs; }
    double place(int64_t timeUs) const { return place(static_cast<double>(timeUs)); }

  private:
    double mStartUs;
    double mLengthUs;
};

/**
 * Returns the possible distances of a time axis's labels, rising; beyond the last, ten times it.
 */
std::span<const double> tickStepsUs();

struct Tick {
    double timeUs = 0;
    std::string label;
};

/** Returns at most `most` round times on the axis. */
std::vector<Tick> ticksOf(const TimeAxis& axis, int most);

/** Returns "1:05", "-0:00.04", "2:00:00", with the decimals that the step needs. */
std::string tickLabel(double timeUs, double stepUs);

}  // namespace ogmprobe::timeline
