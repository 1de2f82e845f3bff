// SPDX-License-Identifier: Apache-2.0
#include "console/Console.h"

#include <fmt/core.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>

#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

constexpr const char* kRed = "\033[31m";
constexpr const char* kYellow = "\033[33m";
constexpr const char* kBold = "\033[1m";
constexpr const char* kDim = "\033[2m";
constexpr const char* kPlain = "\033[0m";
constexpr std::string_view kWipeLine = "\r\033[K";

// A failure of standard error itself cannot be reported.
void writeToStandardError(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written <= 0) {
            return;
        }
        text.remove_prefix(static_cast<size_t>(written));
    }
}

std::string fittingTerminal(std::string_view text) {
    const size_t columns = terminalColumns(STDERR_FILENO);
    // The last column stays empty: some terminals begin a new line there.
    return columns == 0 ? std::string(text) : shortened(text, columns - 1);
}

}  // namespace

bool wantsColor(ColorMode mode, int descriptor) {
    if (mode != ColorMode::kAuto) {
        return mode == ColorMode::kAlways;
    }
    const char* noColor = std::getenv("NO_COLOR");
    if (noColor != nullptr && *noColor != '\0') {
        return false;
    }
    return isatty(descriptor) == 1;
}

size_t terminalColumns(int descriptor) {
    winsize size = {};
    return ioctl(descriptor, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::string dimmed(std::string_view text, bool color) {
    return color ? fmt::format("{}{}{}", kDim, text, kPlain) : std::string(text);
}

std::string emphasised(std::string_view text, bool color) {
    return color ? fmt::format("{}{}{}", kBold, text, kPlain) : std::string(text);
}

Console::Console(ColorMode mode, bool quiet)
    : mColor(wantsColor(mode, STDERR_FILENO)),
      mQuiet(quiet),
      mShowsProgress(!quiet && isatty(STDERR_FILENO) == 1) {}

Console::~Console() {
    clearProgress();
}

void Console::error(std::string_view subject, std::string_view text) {
    message("error", kRed, subject, text);
}

void Console::warning(std::string_view subject, std::string_view text) {
    if (mQuiet) {
        return;
    }
    message("warning", kYellow, subject, text);
}

void Console::showProgress(std::string_view text) {
    if (!mShowsProgress) {
        return;
    }
    writeToStandardError(fmt::format("{}{}", kWipeLine, fittingTerminal(text)));
    mProgressShown = true;
}

void Console::clearProgress() {
    if (mProgressShown) {
        writeToStandardError(kWipeLine);
        mProgressShown = false;
    }
}

void Console::message(std::string_view kind, const char* color, std::string_view subject,
                      std::string_view text) {
    clearProgress();
    const std::string label =
            mColor ? fmt::format("{}{}:{}", color, kind, kPlain) : fmt::format("{}:", kind);
    const std::string about = subject.empty() ? "" : fmt::format("{}: ", visible(subject));
    writeToStandardError(fmt::format("ogmprobe: {} {}{}\n", label, about, visible(text)));
}

}  // namespace ogmprobe
