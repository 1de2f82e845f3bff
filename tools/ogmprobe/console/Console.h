// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ogmprobe {

enum class ColorMode { kAuto, kAlways, kNever };

/**
 * Returns whether to colour output to the descriptor. The option has priority over `NO_COLOR`,
 * which applies if it is not empty; otherwise output to a terminal is coloured.
 */
bool wantsColor(ColorMode mode, int descriptor);

/** Returns the terminal's columns; 0 if it is not a terminal or does not report them. */
size_t terminalColumns(int descriptor);

/** Returns the text in grey, if colour is wanted. */
std::string dimmed(std::string_view text, bool color);

/** Returns the text in bold, if colour is wanted. */
std::string emphasised(std::string_view text, bool color);

/** Everything that is not data: messages and the progress line, on standard error. */
class Console {
  public:
    /** `quiet` hides warnings and progress. */
    explicit Console(ColorMode mode, bool quiet = false);
    ~Console();

    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /** "ogmprobe: error: SUBJECT: MESSAGE"; the subject may be empty. */
    void error(std::string_view subject, std::string_view message);
    void warning(std::string_view subject, std::string_view message);

    /**
     * Replaces the progress line by the text. Does nothing unless standard error is a terminal. A
     * message, or the end, clears the line.
     */
    void showProgress(std::string_view text);
    void clearProgress();
    /** Returns whether progress is visible. */
    bool showsProgress() const { return mShowsProgress; }

  private:
    void message(std::string_view kind, const char* color, std::string_view subject,
                 std::string_view text);

    const bool mColor;
    const bool mQuiet;
    const bool mShowsProgress;
    bool mProgressShown = false;
};

}  // namespace ogmprobe
