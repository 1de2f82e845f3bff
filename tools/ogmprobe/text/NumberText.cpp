// SPDX-License-Identifier: Apache-2.0
#include "text/NumberText.h"

#include <fmt/core.h>

#include <array>

namespace ogmprobe {

std::string sizeText(uint64_t bytes) {
    constexpr std::array kUnits = {"kB", "MB", "GB", "TB"};
    constexpr double kStep = 1000;
    // From here on a value would be rounded to 1000.0.
    constexpr double kNextUnit = 999.95;
    if (bytes < static_cast<uint64_t>(kStep)) {
        return fmt::format("{} B", bytes);
    }
    double value = static_cast<double>(bytes) / kStep;
    size_t unit = 0;
    while (value >= kNextUnit && unit + 1 < kUnits.size()) {
        value /= kStep;
        ++unit;
    }
    return fmt::format("{:.1f} {}", value, kUnits[unit]);
}

std::string rateText(double bitsPerSecond) {
    constexpr double kKilo = 1e3;
    constexpr double kMega = 1e6;
    if (bitsPerSecond < 10 * kKilo) {
        return fmt::format("{:.1f} kbit/s", bitsPerSecond / kKilo);
    }
    return bitsPerSecond < kMega ? fmt::format("{:.0f} kbit/s", bitsPerSecond / kKilo)
                                 : fmt::format("{:.2f} Mbit/s", bitsPerSecond / kMega);
}

std::string counted(uint64_t number, std::string_view noun) {
    return fmt::format("{} {}{}", number, noun, number == 1 ? "" : "s");
}

}  // namespace ogmprobe
