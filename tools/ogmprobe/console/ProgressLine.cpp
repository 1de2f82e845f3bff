// SPDX-License-Identifier: Apache-2.0
#include "console/ProgressLine.h"

#include <fmt/core.h>

#include <algorithm>

#include "text/NumberText.h"

namespace ogmprobe {
namespace {

using namespace std::chrono_literals;

constexpr auto kDelay = 500ms;
constexpr auto kInterval = 200ms;

constexpr int kWidth = 20;
constexpr int kWhole = 100;

double partOf(const Advance& advance) {
    return advance.size == 0
                   ? 0
                   : static_cast<double>(advance.position) / static_cast<double>(advance.size);
}

}  // namespace

std::string progressBar(double part) {
    const int percent = static_cast<int>(std::clamp(part, 0.0, 1.0) * kWhole);
    const auto filled = static_cast<size_t>(percent * kWidth / kWhole);
    return fmt::format("[{:<{}}] {:>3} %", std::string(filled, '='), kWidth, percent);
}

std::string progressText(const Advance& advance, std::string_view name, std::chrono::seconds time) {
    return fmt::format("{}  {} {}: {} of {}, {} s", progressBar(partOf(advance)), advance.doing,
                       name, sizeText(std::min(advance.position, advance.size)),
                       sizeText(advance.size), time.count());
}

ProgressLine::ProgressLine(Console& console) : mConsole(console), mNext(mBegan + kDelay) {}

bool ProgressLine::isDue(Clock::time_point now) {
    if (!mConsole.showsProgress() || now < mNext) {
        return false;
    }
    mNext = now + kInterval;
    return true;
}

}  // namespace ogmprobe
