// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ogmprobe {

enum class ColorMode { kAuto, kAlways, kNever };

/**
 * Whether to colour what goes to the descriptor. The option beats `NO_COLOR`, which beats the
 * terminal; `NO_COLOR` counts when it is set and not empty.
 */
bool wantsColor(ColorMode mode, int descriptor);

/** Of the terminal there; 0: it is none, or does not say. */
size_t terminalColumns(int descriptor);

/** The text in grey, if colour is wanted. */
std::string dimmed(std::string_view text, bool color);

/** The text in bold, if colour is wanted. */
std::string emphasised(std::string_view text, bool color);

/** Everything that is not data: messages and the progress line, on standard error. */
class Console {
  public:
    /** `quiet` leaves warnings and progress out. */
    explicit Console(ColorMode mode, bool quiet = false);
    ~Console();

    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /** "ogmprobe: error: SUBJECT: MESSAGE"; the subject may be empty. */
    void error(std::string_view subject, std::string_view message);
    void warning(std::string_view subject, std::string_view message);

    /**
     * Shows the text in place of the progress line before. Nothing happens unless standard error is
     * a terminal. A message, or the end, wipes the line.
     */
    void showProgress(std::string_view text);
    void clearProgress();
    /** Whether anybody would see it. */
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
