// SPDX-License-Identifier: Apache-2.0
#include "console/ProgressBar.h"

#include <fmt/core.h>

#include <algorithm>

namespace ogmprobe {
namespace {

constexpr int kWidth = 50;

}  // namespace

std::string progressText(int percent) {
    const int filled = std::clamp(percent, 0, 100) * kWidth / 100;
    return fmt::format("[{:<{}}] {:>3} %", std::string(static_cast<size_t>(filled), '='), kWidth,
                       percent);
}

void ProgressBar::update(double part) {
    const int percent = static_cast<int>(std::clamp(part, 0.0, 1.0) * 100);
    if (percent > mPercent) {
        mPercent = percent;
        mConsole.showProgress(progressText(percent));
    }
}

}  // namespace ogmprobe
