// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "console/Console.h"

namespace ogmprobe {

/** How far the work on a file has come. */
struct Advance {
    /** "opening", "reading". */
    std::string_view doing;
    uint64_t position = 0;
    /** 0: not known yet. */
    uint64_t size = 0;
};

/** "[==      ]  25 %  reading film.ogm: 1.0 MB of 4.0 MB, 12 s" */
std::string progressText(const Advance& advance, std::string_view name, std::chrono::seconds time);

/**
 * Where a command is in its file, on the console's progress line: from half a second on, a few
 * times a second, until this object goes.
 */
class ProgressLine {
  public:
    /** The name says what is worked on. */
    ProgressLine(Console& console, std::string name);
    ~ProgressLine() { mConsole.clearProgress(); }

    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /** Cheap enough for each packet. */
    void update(const Advance& advance);

  private:
    using Clock = std::chrono::steady_clock;

    Console& mConsole;
    const std::string mName;
    const Clock::time_point mBegan = Clock::now();
    Clock::time_point mNext;
};

}  // namespace ogmprobe
