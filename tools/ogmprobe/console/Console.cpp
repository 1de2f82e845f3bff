// SPDX-License-Identifier: Apache-2.0
#include "console/Console.h"

#include <fmt/core.h>
#include <unistd.h>

#include <cstdlib>

namespace ogmprobe {
namespace {

constexpr const char* kRed = "\033[31m";
constexpr const char* kYellow = "\033[33m";
constexpr const char* kBold = "\033[1m";
constexpr const char* kPlain = "\033[0m";
constexpr std::string_view kWipeLine = "\r\033[K";

// Nobody can be told when standard error itself is gone.
void writeToStandardError(std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, text.data(), text.size());
        if (written <= 0) {
            return;
        }
        text.remove_prefix(static_cast<size_t>(written));
    }
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

std::string emphasised(std::string_view text, bool color) {
    return color ? fmt::format("{}{}{}", kBold, text, kPlain) : std::string(text);
}

Console::Console(ColorMode mode)
    : mColor(wantsColor(mode, STDERR_FILENO)), mTerminal(isatty(STDERR_FILENO) == 1) {}

Console::~Console() {
    clearProgress();
}

void Console::error(std::string_view subject, std::string_view text) {
    message("error", kRed, subject, text);
}

void Console::warning(std::string_view subject, std::string_view text) {
    message("warning", kYellow, subject, text);
}

void Console::showProgress(std::string_view text) {
    if (!mTerminal) {
        return;
    }
    writeToStandardError(fmt::format("{}{}", kWipeLine, text));
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
    const std::string about = subject.empty() ? "" : fmt::format("{}: ", subject);
    writeToStandardError(fmt::format("ogmprobe: {} {}{}\n", label, about, text));
}

}  // namespace ogmprobe
