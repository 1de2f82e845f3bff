// SPDX-License-Identifier: Apache-2.0
#include "sync/SyncText.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "text/Csv.h"
#include "text/NumberText.h"
#include "text/TextTable.h"
#include "text/TimeText.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

/** Smaller differences are inaudible, and unavoidable with times that count frames. */
constexpr int64_t kReportedLatenessUs = kUsPerMillisecond;
constexpr double kReportedDriftPpm = 10;
constexpr double kSecondsPerMinute = 60;

/** The largest certain deviation, and the page time at which it occurs. */
struct Worst {
    int64_t lateUs = 0;
    int64_t atUs = 0;
};

/** `point` and `late` convert an index to a point and its difference. */
template <typename PointAt, typename LateAt>
Worst worstOf(const Deviation& deviation, const PointAt& point, const LateAt& late) {
    Worst worst;
    for (const auto& index : {deviation.earliest, deviation.latest}) {
        const int64_t lateUs = index ? late(*index).certainUs() : 0;
        // The lowest number's magnitude does not fit its type.
        if (index &&
            std::abs(static_cast<double>(lateUs)) > std::abs(static_cast<double>(worst.lateUs))) {
            worst = {lateUs, point(*index).pageUs->leastUs};
        }
    }
    return worst;
}

Worst worstOf(const TrackSync& track) {
    return worstOf(
            track.deviation, [&](size_t index) { return track.points[index]; },
            [&](size_t index) { return *track.points[index].lateUs; });
}

Worst worstOf(const FileSync& sync, const PairSync& pair) {
    return worstOf(
            pair.deviation,
            [&](size_t index) {
                return sync.tracks[pair.audio].points[pair.points[index].audioPoint];
            },
            [&](size_t index) { return pair.points[index].lateUs; });
}

std::string rangeText(const std::optional<TimeRange>& range) {
    if (!range) {
        return "-";
    }
    return range->isExact() ? secondsText(range->leastUs)
                            : secondsText(range->leastUs) + ".." + secondsText(range->mostUs);
}

std::string driftText(const std::optional<double>& ppm) {
    return ppm ? fmt::format("{:.0f} ppm", *ppm + 0.0) : "-";
}

/** "up to 0.522 s early at 0:00:12.300000". */
std::string amountText(const Worst& worst) {
    const double seconds =
            std::abs(static_cast<double>(worst.lateUs)) / static_cast<double>(kUsPerSecond);
    return fmt::format("up to {:.3f} s {} at {}", seconds, worst.lateUs < 0 ? "early" : "late",
                       clockText(worst.atUs));
}

bool isReported(const Worst& worst) {
    return worst.lateUs <= -kReportedLatenessUs || worst.lateUs >= kReportedLatenessUs;
}

std::string pairSentence(const FileSync& sync, const PairSync& pair) {
    const std::string audio =
            sync.pairs.size() > 1 ? fmt::format("audio of track {}", sync.tracks[pair.audio].track)
                                  : "audio";
    const Worst worst = worstOf(sync, pair);
    if (pair.deviation.compared == 0) {
        return audio + " and video have no times to compare";
    }
    if (!isReported(worst)) {
        return audio + " keeps with the video" +
               (pair.deviation.exact < pair.deviation.compared ? " as far as the pages show" : "");
    }
    return audio + " runs " + amountText(worst);
}

bool comesOut(const TrackSync& track) {
    return std::any_of(track.points.begin(), track.points.end(),
                       [](const SyncPoint& point) { return point.buffer.has_value(); });
}

std::string trackSentence(const TrackSync& track) {
    const Worst worst = worstOf(track);
    const std::string name = fmt::format("track {} ({})", track.track, kindName(track.kind));
    if (track.deviation.compared == 0) {
        return name + (comesOut(track) ? ": the pages have no times for what is returned"
                                       : ": nothing on the pages is returned");
    }
    if (!isReported(worst)) {
        return name + " has the times of the pages" +
               (track.deviation.exact < track.deviation.compared ? " as far as they show" : "");
    }
    return name + " is " + amountText(worst);
}

std::string withLargeInitial(std::string text) {
    text.front() = text.front() >= 'a' && text.front() <= 'z'
                           ? static_cast<char>(text.front() - 'a' + 'A')
                           : text.front();
    return text;
}

std::string lateText(const std::optional<size_t>& index, int64_t lateUs) {
    return index ? secondsText(lateUs) : "-";
}

template <typename LateAt>
void addRow(TextTable& table, std::vector<std::string> names, const Deviation& deviation,
            const LateAt& late) {
    names.push_back(fmt::format("{}", deviation.compared));
    names.push_back(fmt::format("{}", deviation.compared - deviation.exact));
    names.push_back(rangeText(deviation.offsetUs));
    for (const auto& index : {deviation.earliest, deviation.latest}) {
        names.push_back(lateText(index, index ? late(*index).certainUs() : 0));
    }
    names.push_back(driftText(deviation.driftPpm));
    table.add(std::move(names));
}

std::string tableText(const FileSync& sync, bool color) {
    constexpr auto kRight = TextTable::Align::kRight;
    TextTable table({{"Track", kRight},
                     {"Type"},
                     {"Packets", kRight},
                     {"Compared", kRight},
                     {"By bounds", kRight},
                     {"Offset", kRight},
                     {"Earliest", kRight},
                     {"Latest", kRight},
                     {"Drift", kRight}});
    for (const TrackSync& track : sync.tracks) {
        addRow(table,
               {fmt::format("{}", track.track), kindName(track.kind),
                fmt::format("{}", track.points.size())},
               track.deviation, [&](size_t index) { return *track.points[index].lateUs; });
    }
    for (const PairSync& pair : sync.pairs) {
        addRow(table,
               {fmt::format("{}-{}", sync.tracks[pair.audio].track, sync.tracks[pair.video].track),
                "audio-video", ""},
               pair.deviation, [&](size_t index) { return pair.points[index].lateUs; });
    }
    return table.text("  ", color);
}

std::string readingSentence(const TrackSync& track) {
    const std::string others = track.isReadLikeOthers ? ", as in the other streams" : "";
    switch (track.reading) {
        case GranuleReading::kEnd:
            return "its granule positions say where packets end" + others;
        case GranuleReading::kBeginning:
            return "its granule positions say where packets begin" + others;
        case GranuleReading::kUnknown:
            break;
    }
    return "its granule positions may say where packets begin or where they end";
}

std::string contentSentence(const TrackSync& track) {
    if (!track.contentDriftPpm || std::abs(*track.contentDriftPpm) < kReportedDriftPpm) {
        return "";
    }
    const double ppm = std::abs(*track.contentDriftPpm);
    return fmt::format(
            "The pages of track {} go {} than its samples by {:.0f} ppm, {:.3f} s in a minute.\n",
            track.track, *track.contentDriftPpm > 0 ? "faster" : "slower", ppm,
            ppm * kSecondsPerMinute / static_cast<double>(kUsPerSecond));
}

}  // namespace

std::string worstSentence(const FileSync& sync) {
    std::string sentence = "no track with times on the pages";
    std::optional<double> most;
    const auto consider = [&](const Worst& worst, const std::string& text) {
        const double magnitude = std::abs(static_cast<double>(worst.lateUs));
        if (!most || magnitude > *most) {
            most = magnitude;
            sentence = text;
        }
    };
    for (const PairSync& pair : sync.pairs) {
        consider(worstOf(sync, pair), pairSentence(sync, pair));
    }
    for (size_t i = 0; i < sync.tracks.size() && sync.pairs.empty(); ++i) {
        consider(worstOf(sync.tracks[i]), trackSentence(sync.tracks[i]));
    }
    return sentence;
}

std::string syncText(const FileSync& sync, bool color) {
    if (sync.tracks.empty()) {
        return "No track with times on the pages.\n";
    }
    std::string text = tableText(sync, color);
    for (const TrackSync& track : sync.tracks) {
        text += withLargeInitial(trackSentence(track)) + "; " + readingSentence(track) + ".\n";
        text += contentSentence(track);
    }
    for (const PairSync& pair : sync.pairs) {
        text += withLargeInitial(pairSentence(sync, pair)) + ".\n";
    }
    return text;
}

std::string packetsText(const FileSync& sync, bool color) {
    constexpr auto kRight = TextTable::Align::kRight;
    TextTable table({{"Track", kRight},
                     {"Number", kRight},
                     {"Offset", kRight},
                     {"Page's time", kRight},
                     {"Plug-in's time", kRight},
                     {"Late", kRight}});
    for (const TrackSync& track : sync.tracks) {
        for (const SyncPoint& point : track.points) {
            table.add({fmt::format("{}", track.track),
                       point.buffer ? fmt::format("{}", *point.buffer) : "-",
                       fmt::format("{}", point.offset), rangeText(point.pageUs),
                       secondsText(point.pluginUs), rangeText(point.lateUs)});
        }
    }
    return table.text("", color);
}

std::string syncCsvLines(const std::string& path, const FileSync& sync) {
    const auto seconds = [](const std::optional<int64_t>& timeUs) {
        return timeUs ? secondsText(*timeUs) : std::string();
    };
    const auto least = [](const std::optional<TimeRange>& range) {
        return range ? secondsText(range->leastUs) : std::string();
    };
    const auto most = [](const std::optional<TimeRange>& range) {
        return range ? secondsText(range->mostUs) : std::string();
    };
    std::string text;
    for (const TrackSync& track : sync.tracks) {
        for (const SyncPoint& point : track.points) {
            text += csvLine({path, fmt::format("{}", track.track), fmt::format("{}", track.serial),
                             point.buffer ? fmt::format("{}", *point.buffer) : "",
                             fmt::format("{}", point.offset), least(point.pageUs),
                             most(point.pageUs), seconds(point.pluginUs), least(point.lateUs),
                             most(point.lateUs)});
        }
    }
    return text;
}

}  // namespace ogmprobe
