// SPDX-License-Identifier: Apache-2.0
#include "sync/PageTimes.h"

#include "sync/ContentDrift.h"
#include "sync/GranuleClock.h"
#include "sync/GroupRanges.h"
#include "sync/PageGroups.h"

namespace ogmprobe {
namespace {

using Groups = std::map<uint32_t, std::vector<PageGroup>>;

/** Returns the reading on which all streams that show one agree, because a file has one writer. */
GranuleReading commonReading(const Groups& groups) {
    auto common = GranuleReading::kUnknown;
    for (const auto& [serial, ofStream] : groups) {
        const GranuleReading reading = readingOf(ofStream);
        if (reading == GranuleReading::kUnknown) {
            continue;
        }
        if (common != GranuleReading::kUnknown && common != reading) {
            return GranuleReading::kUnknown;
        }
        common = reading;
    }
    return common;
}

std::optional<TimeRange> timesOf(const GranuleRange& range, const GranuleClock& clock) {
    const auto least = clock.timeUs(range.least);
    const auto most = clock.timeUs(range.most);
    return least && most ? std::optional(TimeRange{*least, *most}) : std::nullopt;
}

void setTimes(const std::vector<PageGroup>& groups, const GranuleClock& clock, PageTimes& times) {
    const PageGroup* before = nullptr;
    for (const PageGroup& group : groups) {
        const auto ranges = rangesOf(group, before, times.reading);
        for (size_t i = 0; i < ranges.size(); ++i) {
            times.units[group.units[i].unit] = timesOf(ranges[i], clock);
        }
        times.firstOfPages.push_back(group.units.front().unit);
        before = &group;
    }
}

}  // namespace

std::map<uint32_t, PageTimes> pageTimesOf(const OggFile& file,
                                          const std::map<uint32_t, StreamAccount>& accounts) {
    Groups groups;
    for (const auto& [serial, account] : accounts) {
        groups.emplace(serial, pageGroupsOf(file, account));
    }
    const GranuleReading common = commonReading(groups);
    std::map<uint32_t, PageTimes> all;
    for (const auto& [serial, account] : accounts) {
        PageTimes& times = all[serial];
        times.units.resize(account.units.size());
        const StreamHeader* header = file.headerOf(serial);
        if (header == nullptr) {
            continue;
        }
        times.reading = readingOf(groups.at(serial));
        if (times.reading == GranuleReading::kUnknown) {
            times.reading = common;
            times.isReadLikeOthers = common != GranuleReading::kUnknown;
        }
        times.contentDriftPpm = contentDriftOf(groups.at(serial), account, *header, times.reading);
        setTimes(groups.at(serial), GranuleClock(*header), times);
    }
    return all;
}

}  // namespace ogmprobe
