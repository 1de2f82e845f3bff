// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "console/Advance.h"
#include "console/Console.h"

namespace ogmprobe {

/** "[=====               ]  25 %"; the part is from 0 to 1. */
std::string progressBar(double part);

/** "[=====               ]  25 %  reading film.ogm: 1.0 MB of 4.0 MB, 12 s" */
std::string progressText(const Advance& advance, std::string_view name, std::chrono::seconds time);

/**
 * Shows a command's progress on the console: after half a second, a few times a second, until this
 * object is destroyed.
 */
class ProgressLine {
  public:
    using Seconds = std::chrono::duration<double>;

    explicit ProgressLine(Console& console);
    ~ProgressLine() { mConsole.clearProgress(); }

    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /**
     * Shows the text that the function returns for the time since the beginning. It is only called
     * when a new text is due, so this is fast enough to be called for each packet.
     */
    template <typename Text>
    void update(const Text& text) {
        const auto now = Clock::now();
        if (isDue(now)) {
            mConsole.showProgress(text(Seconds(now - mBegan)));
        }
    }

  private:
    using Clock = std::chrono::steady_clock;

    bool isDue(Clock::time_point now);

    Console& mConsole;
    const Clock::time_point mBegan = Clock::now();
    Clock::time_point mNext;
};

}  // namespace ogmprobe
