// SPDX-License-Identifier: Apache-2.0
#include "text/TimeText.h"

#include <fmt/core.h>

#include <algorithm>
#include <charconv>
#include <cmath>

#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

// Beyond this a double is no longer exact to the microsecond.
constexpr double kMaxSeconds = 9.0e9;

}  // namespace

std::string secondsText(int64_t timeUs) {
    // The magnitude of the most negative time does not fit the signed type.
    const auto bits = static_cast<uint64_t>(timeUs);
    const uint64_t magnitude = timeUs < 0 ? ~bits + 1 : bits;
    return fmt::format("{}{}.{:06}", timeUs < 0 ? "-" : "", magnitude / kUsPerSecond,
                       magnitude % kUsPerSecond);
}

std::string secondsText(std::optional<int64_t> timeUs) {
    return timeUs ? secondsText(*timeUs) : "-";
}

std::string hoursText(uint64_t seconds) {
    return fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

std::string durationText(std::optional<int64_t> durationUs) {
    if (!durationUs || *durationUs <= 0) {
        return "unknown";
    }
    const auto milliseconds = static_cast<uint64_t>(*durationUs / kUsPerMillisecond);
    return fmt::format("{}.{:03}", hoursText(milliseconds / 1000), milliseconds % 1000);
}

std::string clockText(int64_t timeUs) {
    const auto bits = static_cast<uint64_t>(timeUs);
    const uint64_t magnitude = timeUs < 0 ? ~bits + 1 : bits;
    return fmt::format("{}{}.{:06}", timeUs < 0 ? "-" : "", hoursText(magnitude / kUsPerSecond),
                       magnitude % kUsPerSecond);
}

std::optional<int64_t> parseSeconds(std::string_view text) {
    double seconds = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
    if (error != std::errc() || stop != end || !(std::abs(seconds) <= kMaxSeconds)) {
        return std::nullopt;
    }
    return std::llround(seconds * static_cast<double>(kUsPerSecond));
}

std::optional<int64_t> parseTime(std::string_view text) {
    constexpr int64_t kSixty = 60;
    constexpr int64_t kMost = 1'000'000;
    const size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return parseSeconds(text);
    }
    constexpr int64_t kMaxColons = 2;
    if (std::count(text.begin(), text.end(), ':') > kMaxColons) {
        return std::nullopt;
    }
    int64_t minutes = 0;
    for (std::string_view rest = text.substr(0, colon);;) {
        const size_t end = std::min(rest.find(':'), rest.size());
        int64_t part = 0;
        const auto [stop, error] = std::from_chars(rest.data(), rest.data() + end, part);
        if (error != std::errc() || stop != rest.data() + end || part < 0 || part > kMost ||
            minutes > kMost) {
            return std::nullopt;
        }
        minutes = minutes * kSixty + part;
        if (end == rest.size()) {
            break;
        }
        rest.remove_prefix(end + 1);
    }
    const auto seconds = parseSeconds(text.substr(colon + 1));
    if (!seconds || *seconds < 0 || *seconds >= kSixty * kUsPerSecond) {
        return std::nullopt;
    }
    return minutes * kSixty * kUsPerSecond + *seconds;
}

}  // namespace ogmprobe
