// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "console/Console.h"

namespace ogmprobe {

/** "[=====     ]  50 %" */
std::string progressText(int percent);

/** A bar on the console's progress line, drawn anew only when its percentage changes. */
class ProgressBar {
  public:
    explicit ProgressBar(Console& console) : mConsole(console) {}
    ~ProgressBar() { mConsole.clearProgress(); }

    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /** The part that is done, 0 to 1; the bar never goes back. */
    void update(double part);

  private:
    Console& mConsole;
    int mPercent = -1;
};

}  // namespace ogmprobe
