// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ogmprobe {

/** Seconds with six decimals: -1500000 is "-1.500000". */
std::string secondsText(int64_t timeUs);
/** The same, or "-" without a time. */
std::string secondsText(std::optional<int64_t> timeUs);

/** Hours, minutes and seconds: "0:01:30". */
std::string hoursText(uint64_t seconds);

/** Hours, minutes, seconds and milliseconds: "0:01:30.000"; "unknown" for 0, less or nothing. */
std::string durationText(std::optional<int64_t> durationUs);

/** Hours, minutes, seconds and microseconds: "-0:00:01.500000". */
std::string clockText(int64_t timeUs);

/**
 * Reads seconds as a decimal number, to the nearest microsecond; returns nothing for any other
 * text.
 */
std::optional<int64_t> parseSeconds(std::string_view text);

/** The same, or minutes and hours before colons: "1:02.5", "0:01:30". */
std::optional<int64_t> parseTime(std::string_view text);

}  // namespace ogmprobe
