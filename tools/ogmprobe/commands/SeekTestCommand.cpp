// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "text/Json.h"
#include "text/TextTable.h"
#include "text/TimeArithmetic.h"
#include "text/TimeText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** Gathers what the records tell. */
class SeekTestRecords : public CommandRecords {
  public:
    using CommandRecords::operator();
    using CommandRecords::CommandRecords;

    void operator()(const PlaybackReady& ready) {
        if (ready.trackCount == 0) {
            report().warning(kNoTracks);
        }
    }
    void operator()(const SeekRange& range) { mRange = range; }
    void operator()(const SeekLanded& seek) {
        if (!seek.landings.empty()) {
            mSeeks.push_back(seek);
        }
    }

    const SeekRange& range() const { return mRange; }
    const std::vector<SeekLanded>& seeks() const { return mSeeks; }

  private:
    SeekRange mRange;
    std::vector<SeekLanded> mSeeks;
};

std::optional<int64_t> offTargetUs(const SeekLanded& seek) {
    const auto& landedUs = seek.landings.front().timeUs;
    return landedUs ? std::optional(timeDifferenceUs(*landedUs, seek.targetUs)) : std::nullopt;
}

ordered_json toJson(const SeekLanded& result) {
    auto tracks = ordered_json::array();
    for (const Landing& landing : result.landings) {
        tracks.push_back({{"track", landing.track},
                          {"time_us", orNull(landing.timeUs)},
                          {"sync", landing.isSync}});
    }
    const Landing& lead = result.landings.front();
    return {{"target_us", result.targetUs},
            {"landed_us", orNull(lead.timeUs)},
            {"off_target_us", orNull(offTargetUs(result))},
            {"sync", lead.isSync},
            {"reads", result.reads},
            {"bytes", result.bytes},
            {"tracks", std::move(tracks)}};
}

std::string seekTestDocument(const SeekTestOptions& options, const SeekTestRecords& test,
                             const Report& report) {
    auto seeks = ordered_json::array();
    for (const SeekLanded& result : test.seeks()) {
        seeks.push_back(toJson(result));
    }
    return toDocument({{"schema_version", kSchemaVersion},
                       {"path", options.file},
                       {"exit_code", static_cast<int>(report.worst())},
                       {"duration_known", test.range().durationKnown},
                       {"last_target_us", test.range().lastTargetUs},
                       {"seeks", std::move(seeks)},
                       {"errors", report.errorsJson()},
                       {"warnings", report.warningsJson()}});
}

std::string toText(const SeekTestRecords& test, bool color) {
    constexpr auto kRight = TextTable::Align::kRight;
    TextTable table({{"Target", kRight},
                     {"Landed", kRight},
                     {"Off target", kRight},
                     {"Sync"},
                     {"Reads", kRight},
                     {"Bytes", kRight}});
    for (const SeekLanded& result : test.seeks()) {
        const Landing& lead = result.landings.front();
        table.add({secondsText(result.targetUs), lead.timeUs ? secondsText(*lead.timeUs) : "end",
                   secondsText(offTargetUs(result)), lead.isSync ? "yes" : "no",
                   fmt::format("{}", result.reads), fmt::format("{}", result.bytes)});
    }
    return table.text("", color);
}

}  // namespace

ExitCode runSeekTest(const SeekTestOptions& options, Session& session) {
    Report report(session.console, options.file);
    SeekTestRecords records(session, report);
    runReported({options.file, seekTestJob(options.steps)}, session, report, records);
    if (options.json) {
        session.output.write(seekTestDocument(options, records, report));
    } else if (!records.seeks().empty()) {
        session.output.write(toText(records, wantsColor(session.options.color, STDOUT_FILENO)));
    }
    return report.worst();
}

}  // namespace ogmprobe
