// SPDX-License-Identifier: Apache-2.0
#include "console/ProgressLine.h"

#include <fmt/core.h>

#include <algorithm>
#include <utility>

#include "text/NumberText.h"

namespace ogmprobe {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 500ms;
constexpr auto kInterval = 200ms;

constexpr int kWidth = 20;
constexpr int kWhole = 100;

int percentOf(const Advance& advance) {
    if (advance.size == 0) {
        return 0;
    }
    const double part = static_cast<double>(advance.position) / static_cast<double>(advance.size);
    return static_cast<int>(std::clamp(part, 0.0, 1.0) * kWhole);
}

}  // namespace

std::string progressText(const Advance& advance, std::string_view name, std::chrono::seconds time) {
    const int percent = percentOf(advance);
    const auto filled = static_cast<size_t>(percent * kWidth / kWhole);
    return fmt::format("[{:<{}}] {:>3} %  {} {}: {} of {}, {} s", std::string(filled, '='), kWidth,
                       percent, advance.doing, name,
                       sizeText(std::min(advance.position, advance.size)), sizeText(advance.size),
                       time.count());
}

ProgressLine::ProgressLine(Console& console, std::string name)
    : mConsole(console), mName(std::move(name)), mNext(mBegan + kPatience) {}

void ProgressLine::update(const Advance& advance) {
    if (!mConsole.showsProgress()) {
        return;
    }
    const auto now = Clock::now();
    if (now < mNext) {
        return;
    }
    mNext = now + kInterval;
    const auto time = std::chrono::duration_cast<std::chrono::seconds>(now - mBegan);
    mConsole.showProgress(progressText(advance, mName, time));
}

}  // namespace ogmprobe
