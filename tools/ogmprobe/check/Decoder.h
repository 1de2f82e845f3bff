// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ogmprobe::check {

/** Both ends are included. */
struct Range {
    double least = 0;
    double most = 0;

    bool holds(double value) const { return value >= least && value <= most; }
    bool operator==(const Range&) const = default;
};

/** Empty: nothing is declared, so everything is allowed. */
using Ranges = std::vector<Range>;

inline bool allows(const Ranges& ranges, double value) {
    return ranges.empty() || std::any_of(ranges.begin(), ranges.end(), [value](const Range& range) {
               return range.holds(value);
           });
}

/** In pixels. */
struct Extent {
    int64_t width = 0;
    int64_t height = 0;

    bool operator==(const Extent&) const = default;
};

/** What a decoder declares for a MIME type; nothing for limits that it does not declare. */
struct DecoderLimits {
    std::optional<Extent> minSize;
    std::optional<Extent> maxSize;
    std::optional<Extent> alignment;
    std::optional<Extent> blockSize;
    Ranges blockCount;
    Ranges blocksPerSecond;
    Ranges frameRate;
    Ranges bitrate;
    Ranges sampleRate;
    Ranges channelCount;

    bool operator==(const DecoderLimits&) const = default;
};

/** A decoder for one MIME type. */
struct Decoder {
    std::string name;
    std::string mime;
    DecoderLimits limits;
    /** Why ordinary players cannot use it; empty if they can. */
    std::string unusable = {};

    bool operator==(const Decoder&) const = default;
};

/** The decoders of a device. */
struct DecoderList {
    /** Where the list comes from, for users. */
    std::string source;
    std::vector<Decoder> decoders;
};

}  // namespace ogmprobe::check
