// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>
#include <unistd.h>

#include <optional>
#include <string>
#include <vector>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "text/Csv.h"
#include "text/Json.h"
#include "text/NumberText.h"
#include "text/TextTable.h"
#include "text/TimeArithmetic.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** Collects the seeks from the records. */
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
    // Each seek of a working plug-in has a landing. But a file that controls the plug-in's process
    // may send any records.
    void operator()(const SeekLanded& seek) {
        if (!seek.landings.empty()) {
            mSeeks.push_back(seek);
        }
    }

    const SeekRange& range() const { return mRange; }
    /** Each has a landing. */
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

std::string seekTestDocument(const std::string& path, const SeekTestRecords& test,
                             const Report& report) {
    auto seeks = ordered_json::array();
    for (const SeekLanded& result : test.seeks()) {
        seeks.push_back(toJson(result));
    }
    return toDocument({{"schema_version", kSchemaVersion},
                       {"path", path},
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

/** Returns one line: where the worst seek landed, and the cost of the most expensive one. */
std::string summary(const std::string& path, const SeekTestRecords& test) {
    int64_t worstUs = 0;
    uint64_t reads = 0;
    uint64_t nowhere = 0;
    for (const SeekLanded& result : test.seeks()) {
        const auto offUs = offTargetUs(result);
        nowhere += offUs ? 0 : 1;
        if (std::abs(offUs.value_or(0)) > std::abs(worstUs)) {
            worstUs = *offUs;
        }
        reads = std::max(reads, result.reads);
    }
    return fmt::format("{}: {}, {} at the end, at worst {} s off target, at most {}\n",
                       visible(path), counted(test.seeks().size(), "seek"), nowhere,
                       secondsText(worstUs), counted(reads, "read"));
}

std::string csvLines(const std::string& path, const SeekTestRecords& test) {
    std::string text;
    for (const SeekLanded& result : test.seeks()) {
        const Landing& lead = result.landings.front();
        const auto offUs = offTargetUs(result);
        text += csvLine({path, secondsText(result.targetUs),
                         lead.timeUs ? secondsText(*lead.timeUs) : "",
                         offUs ? secondsText(*offUs) : "", lead.isSync ? "1" : "0",
                         fmt::format("{}", result.reads), fmt::format("{}", result.bytes)});
    }
    return text;
}

/** The last target is excluded: there is nothing to show at the end. */
ExitCode strictCode(const SeekTestRecords& test) {
    const auto& seeks = test.seeks();
    const bool allLand = std::all_of(seeks.begin(), seeks.end(), [&test](const SeekLanded& seek) {
        return seek.landings.front().timeUs || seek.targetUs == test.range().lastTargetUs;
    });
    return allLand ? ExitCode::kDone : ExitCode::kUsage;
}

ExitCode testFile(const std::string& path, bool isOneOfMany, const SeekTestOptions& options,
                  Session& session) {
    Report report(session.console, path);
    SeekTestRecords records(session, report);
    runReported({path, seekTestJob(options.steps)}, session, report, records);
    if (options.json) {
        session.output.write(seekTestDocument(path, records, report));
    } else if (options.csv) {
        session.output.write(csvLines(path, records));
    } else if (isOneOfMany && !records.seeks().empty()) {
        session.output.write(summary(path, records));
    } else if (!records.seeks().empty()) {
        session.output.write(toText(records, wantsColor(session.options.color, STDOUT_FILENO)));
    }
    return options.strict ? std::max(report.worst(), strictCode(records)) : report.worst();
}

}  // namespace

ExitCode runSeekTest(const SeekTestOptions& options, Session& session) {
    if (options.csv) {
        session.output.write("file,target,landed,off_target,sync,reads,bytes\n");
    }
    return forEachFile(
            options.files, session,
            [&](const std::string& path, bool isOneOfMany) {
                return testFile(path, isOneOfMany, options, session);
            },
            [&](const std::string& name, Report& report) {
                if (options.json) {
                    session.output.write(
                            seekTestDocument(name, SeekTestRecords(session, report), report));
                }
            });
}

}  // namespace ogmprobe
