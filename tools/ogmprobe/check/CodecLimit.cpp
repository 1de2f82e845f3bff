// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "check/CodecListBuilder.h"
#include "check/CodecXml.h"

namespace ogmprobe::check {
namespace {

constexpr size_t kMaxRanges = 64;

std::string_view trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<double> numberOf(std::string_view text) {
    text = trimmed(text);
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, std::chars_format::fixed);
    return error == std::errc() && stop == end && value >= 0 ? std::optional(value) : std::nullopt;
}

std::optional<Range> rangeOf(std::string_view text) {
    const size_t dash = text.find('-');
    const auto least = numberOf(text.substr(0, dash));
    const auto most = dash == std::string_view::npos ? least : numberOf(text.substr(dash + 1));
    return least && most ? std::optional(Range{*least, *most}) : std::nullopt;
}

/** "640x480", also "640*480". */
std::optional<Extent> extentOf(std::string_view text) {
    const size_t cross = text.find_first_of("x*");
    if (cross == std::string_view::npos) {
        return std::nullopt;
    }
    const auto width = numberOf(text.substr(0, cross));
    const auto height = numberOf(text.substr(cross + 1));
    constexpr double kMost = std::numeric_limits<int32_t>::max();
    if (!width || !height || *width > kMost || *height > kMost) {
        return std::nullopt;
    }
    return Extent{static_cast<int64_t>(*width), static_cast<int64_t>(*height)};
}

std::string_view attribute(const Attributes& attributes, const std::string& name) {
    const auto found = attributes.find(name);
    return found == attributes.end() ? std::string_view() : std::string_view(found->second);
}

/** In any form: "range", "ranges", "min" and "max", "value". */
Ranges rangesIn(const Attributes& attributes) {
    for (const char* name : {"range", "ranges", "value"}) {
        if (const auto text = attribute(attributes, name); !text.empty()) {
            return parseRanges(text);
        }
    }
    const auto least = numberOf(attribute(attributes, "min"));
    const auto most = numberOf(attribute(attributes, "max"));
    if (!least && !most) {
        return {};
    }
    return {{least.value_or(0), most.value_or(std::numeric_limits<double>::max())}};
}

using RangesMember = Ranges DecoderLimits::*;

constexpr std::array<std::pair<std::string_view, RangesMember>, 6> kRangeLimits = {{
        {"block-count", &DecoderLimits::blockCount},
        {"blocks-per-second", &DecoderLimits::blocksPerSecond},
        {"frame-rate", &DecoderLimits::frameRate},
        {"bitrate", &DecoderLimits::bitrate},
        {"sample-rate", &DecoderLimits::sampleRate},
        {"channel-count", &DecoderLimits::channelCount},
}};

}  // namespace

Ranges parseRanges(std::string_view text) {
    Ranges ranges;
    while (!text.empty() && ranges.size() < kMaxRanges) {
        const size_t comma = std::min(text.find(','), text.size());
        if (const auto range = rangeOf(text.substr(0, comma))) {
            ranges.push_back(*range);
        }
        text.remove_prefix(std::min(comma + 1, text.size()));
    }
    return ranges;
}

void addLimit(const Attributes& attributes, DecoderLimits& limits) {
    const std::string_view name = attribute(attributes, "name");
    const auto set = [](std::optional<Extent>& member, std::string_view text) {
        if (const auto extent = extentOf(text)) {
            member = extent;
        }
    };
    if (name == "size") {
        set(limits.minSize, attribute(attributes, "min"));
        set(limits.maxSize, attribute(attributes, "max"));
    } else if (name == "alignment") {
        set(limits.alignment, attribute(attributes, "value"));
    } else if (name == "block-size") {
        set(limits.blockSize, attribute(attributes, "value"));
    }
    for (const auto& [known, member] : kRangeLimits) {
        if (name == known) {
            if (Ranges ranges = rangesIn(attributes); !ranges.empty()) {
                limits.*member = std::move(ranges);
            }
        }
    }
}

}  // namespace ogmprobe::check
