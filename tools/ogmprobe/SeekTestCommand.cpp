// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "Death.h"
#include "Json.h"
#include "MediaFile.h"
#include "Report.h"
#include "TextTable.h"
#include "TimeArithmetic.h"
#include "TimeText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** Where one track came to after a seek; without a time it gave no buffer. */
struct Landing {
    size_t track = 0;
    std::optional<int64_t> timeUs;
    bool isSync = false;
};

struct SeekResult {
    int64_t targetUs = 0;
    /** Of all tracks, the lead first. */
    std::vector<Landing> landings;
    /** What the seek of all tracks cost. */
    uint64_t reads = 0;
    uint64_t bytes = 0;

    std::optional<int64_t> offTargetUs() const {
        const auto& landedUs = landings.front().timeUs;
        return landedUs ? std::optional(timeDifferenceUs(*landedUs, targetUs)) : std::nullopt;
    }
};

struct SeekTest {
    /** The end of the range that the targets are spread over. */
    int64_t lastTargetUs = 0;
    bool durationKnown = false;
    std::vector<SeekResult> results;
};

// Plays the lead through in an extractor of its own, so that the tested one stays fresh.
int64_t measuredDurationUs(const PluginLibrary& library, const std::string& path, Report& report) {
    const MediaFile file(library, path);
    const PlayedTracks tracks(file, {}, report);
    TimeOrderedReader reader = tracks.reader();
    int64_t lastUs = 0;
    while (const auto packet = reader.next()) {
        lastUs = std::max(lastUs, packet->packet.timeUs);
    }
    return lastUs;
}

Landing landingOf(const PlayedTracks& tracks, const TimeOrderedReader& reader, size_t stream) {
    Landing landing;
    landing.track = tracks.streams()[stream]->description().index;
    if (const Packet* packet = reader.pending(stream)) {
        landing.timeUs = packet->timeUs;
        landing.isSync = packet->isSync;
    }
    return landing;
}

SeekResult seekTo(int64_t targetUs, const MediaFile& file, const PlayedTracks& tracks,
                  TimeOrderedReader& reader) {
    const uint64_t readsBefore = file.source().reads();
    const uint64_t bytesBefore = file.source().bytesRead();
    reader.seek(targetUs);
    SeekResult result;
    result.targetUs = targetUs;
    result.reads = file.source().reads() - readsBefore;
    result.bytes = file.source().bytesRead() - bytesBefore;
    result.landings.push_back(landingOf(tracks, reader, tracks.lead()));
    for (size_t i = 0; i < tracks.streams().size(); ++i) {
        if (i != tracks.lead()) {
            result.landings.push_back(landingOf(tracks, reader, i));
        }
    }
    return result;
}

void seekThrough(const SeekTestOptions& options, const GlobalOptions& global, Report& report,
                 SeekTest& test) {
    const PluginLibrary library = loadPlugin(global);
    const MediaFile file(library, options.file);
    const PlayedTracks tracks(file, {}, report);
    if (tracks.streams().empty()) {
        report.warning("the file has no tracks that can be played");
        return;
    }
    const int64_t durationUs =
            file.extractor().format().int64(AMEDIAFORMAT_KEY_DURATION).value_or(0);
    test.durationKnown = durationUs > 0;
    test.lastTargetUs =
            test.durationKnown ? durationUs : measuredDurationUs(library, options.file, report);
    TimeOrderedReader reader = tracks.reader();
    for (uint32_t step = 0; step <= options.steps; ++step) {
        const int64_t targetUs = partOfTimeUs(test.lastTargetUs, step, options.steps);
        test.results.push_back(seekTo(targetUs, file, tracks, reader));
    }
    file.requireReadable();
}

ordered_json toJson(const SeekResult& result) {
    auto tracks = ordered_json::array();
    for (const Landing& landing : result.landings) {
        tracks.push_back({{"track", landing.track},
                          {"time_us", orNull(landing.timeUs)},
                          {"sync", landing.isSync}});
    }
    const Landing& lead = result.landings.front();
    return {{"target_us", result.targetUs},
            {"landed_us", orNull(lead.timeUs)},
            {"off_target_us", orNull(result.offTargetUs())},
            {"sync", lead.isSync},
            {"reads", result.reads},
            {"bytes", result.bytes},
            {"tracks", std::move(tracks)}};
}

std::string documentOf(const SeekTestOptions& options, const SeekTest& test, const Report& report) {
    auto seeks = ordered_json::array();
    for (const SeekResult& result : test.results) {
        seeks.push_back(toJson(result));
    }
    return toDocument({{"schema_version", kSchemaVersion},
                       {"path", options.file},
                       {"exit_code", static_cast<int>(report.worst())},
                       {"duration_known", test.durationKnown},
                       {"last_target_us", test.lastTargetUs},
                       {"seeks", std::move(seeks)},
                       {"errors", report.errorsJson()},
                       {"warnings", report.warningsJson()}});
}

std::string toText(const SeekTest& test, bool color) {
    constexpr auto kRight = TextTable::Align::kRight;
    TextTable table({{"Target", kRight},
                     {"Landed", kRight},
                     {"Off target", kRight},
                     {"Sync"},
                     {"Reads", kRight},
                     {"Bytes", kRight}});
    for (const SeekResult& result : test.results) {
        const Landing& lead = result.landings.front();
        table.add({secondsText(result.targetUs), lead.timeUs ? secondsText(*lead.timeUs) : "end",
                   secondsText(result.offTargetUs()), lead.isSync ? "yes" : "no",
                   fmt::format("{}", result.reads), fmt::format("{}", result.bytes)});
    }
    return table.text("", color);
}

}  // namespace

ExitCode runSeekTest(const SeekTestOptions& options, Session& session) {
    death::nameSubject(options.file);
    Report report(session.console, options.file);
    SeekTest test;
    report.guard([&] { seekThrough(options, session.options, report, test); });
    if (options.json) {
        session.output.write(documentOf(options, test, report));
    } else if (!test.results.empty()) {
        session.output.write(toText(test, wantsColor(session.options.color, STDOUT_FILENO)));
    }
    return report.worst();
}

}  // namespace ogmprobe
