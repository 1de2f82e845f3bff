// SPDX-License-Identifier: Apache-2.0
#include "sync/ContentDrift.h"

#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

constexpr double kMinSeconds = 1;
constexpr double kMillion = 1e6;

/** The audio between the granule positions of two pages, the second of which follows the first. */
std::optional<int64_t> lengthBetween(const PageGroup& before, const PageGroup& group,
                                     GranuleReading reading) {
    if (reading != GranuleReading::kBeginning) {
        return group.length();
    }
    const auto first = before.lastLength();
    const auto others = group.lengthOf(0, group.units.size() - 1);
    return first && others ? std::optional(*first + *others) : std::nullopt;
}

/** From the headers of its frames; if there are none, from that of the stream. */
double rateOf(const StreamAccount& account, double rateOfStream) {
    return account.kind.framing && !account.units.empty() &&
                           account.units.front().frame.sampleRate != 0
                   ? account.units.front().frame.sampleRate
                   : rateOfStream;
}

}  // namespace

std::optional<double> contentDriftOf(const std::vector<PageGroup>& groups,
                                     const StreamAccount& account, const StreamHeader& header,
                                     GranuleReading reading) {
    if (header.kind != StreamKind::kAudio || header.timeUnit == 0 || header.samplesPerUnit == 0) {
        return std::nullopt;
    }
    double granules = 0;
    double samples = 0;
    for (size_t i = 1; i < groups.size(); ++i) {
        const auto length = lengthBetween(groups[i - 1], groups[i], reading);
        if (length && groups[i].follows && groups[i].granule > groups[i - 1].granule) {
            granules += static_cast<double>(groups[i].granule - groups[i - 1].granule);
            samples += static_cast<double>(*length);
        }
    }
    const double rate = static_cast<double>(header.samplesPerUnit) *
                        static_cast<double>(kUnitsPerSecond) / static_cast<double>(header.timeUnit);
    const double seconds = samples / rateOf(account, rate);
    return seconds < kMinSeconds ? std::nullopt
                                 : std::optional((granules / rate / seconds - 1) * kMillion);
}

}  // namespace ogmprobe
