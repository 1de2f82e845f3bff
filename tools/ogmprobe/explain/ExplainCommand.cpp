// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <fmt/core.h>
#include <unistd.h>

#include <optional>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "explain/ExplainText.h"
#include "text/Json.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

class ExplainRecords : public CommandRecords {
  public:
    ExplainRecords(Session& session, Report& report, PluginTrace& trace)
        : CommandRecords(session, report), mTrace(trace) {}

    template <typename T>
    void operator()(const T& record) {
        if constexpr (requires { mTrace.add(record); }) {
            mTrace.add(record);
        }
        CommandRecords::operator()(record);
    }

  private:
    PluginTrace& mTrace;
};

void playTraced(const ExplainOptions& options, Session& session, Report& report,
                PluginTrace& trace) {
    GlobalOptions withLines = session.options;
    withLines.logPriority = ANDROID_LOG_VERBOSE;
    ExplainRecords records(session, report, trace);
    try {
        runShown({options.file, playJob({}), true}, withLines, session.console, visitedBy(records));
    } catch (const GoesInCircles& circles) {
        const Failure failure{ExitCode::kDied,
                              fmt::format("the extractor never ends: {}", circles.what())};
        trace.add(failure);
        report.error(failure.code, failure.message);
    }
}

void explainAll(Explanation& explanation) {
    explainRefusal(explanation);
    if (!explanation.trace().opened()) {
        explainEnd(explanation);
        return;
    }
    // A file that another plug-in takes need not be Ogg.
    if (!explanation.file().pages().empty()) {
        explainStreams(explanation);
        explainDuration(explanation);
        explainDamage(explanation);
        explainAudio(explanation);
    }
    explainEnd(explanation);
    explainLedgers(explanation);
    explainFormats(explanation);
    explainTimes(explanation);
    explainLines(explanation);
}

ordered_json explainDocument(const ExplainOptions& options, const Explanation& explanation,
                             const Report& report) {
    auto findings = ordered_json::array();
    for (const Finding& finding : explanation.findings()) {
        findings.push_back(toJson(finding));
    }
    const auto& opened = explanation.trace().opened();
    return {{"schema_version", kSchemaVersion},
            {"path", options.file},
            {"exit_code", static_cast<int>(report.worst())},
            {"size", explanation.file().size()},
            {"duration_us", opened ? orNull(opened->durationUs) : ordered_json(nullptr)},
            {"streams", streamsJson(explanation)},
            {"findings", std::move(findings)},
            {"pages", options.pages ? pagesJson(explanation) : ordered_json(nullptr)},
            {"errors", report.errorsJson()},
            {"warnings", report.warningsJson()}};
}

void show(const ExplainOptions& options, const Explanation& explanation, Session& session) {
    const bool color = wantsColor(session.options.color, STDOUT_FILENO);
    if (options.pages) {
        writePages(explanation, color, session.output);
        session.output.write("\n");
    }
    session.output.write(findingsText(explanation, options, color));
    session.output.write(ledgersText(explanation));
}

/** The document of a file that cannot be read. */
ordered_json failureDocument(const ExplainOptions& options, const Report& report) {
    return {{"schema_version", kSchemaVersion},
            {"path", options.file},
            {"exit_code", static_cast<int>(report.worst())},
            {"size", nullptr},
            {"duration_us", nullptr},
            {"streams", ordered_json::array()},
            {"findings", ordered_json::array()},
            {"pages", nullptr},
            {"errors", report.errorsJson()},
            {"warnings", report.warningsJson()}};
}

}  // namespace

ExitCode runExplain(const ExplainOptions& options, Session& session) {
    Report report(session.console, options.file);
    std::optional<OggFile> file;
    report.guard([&] { file.emplace(options.file); });
    if (!file) {
        if (options.json) {
            session.output.write(toDocument(failureDocument(options, report)));
        }
        return report.worst();
    }
    PluginTrace trace(*file, options.pages && options.verbose);
    report.guard([&] { playTraced(options, session, report, trace); });
    Explanation explanation(*file, trace);
    report.guard([&] { explanation.setAccounts(accountsOf(options.file, *file, trace)); });
    explainAll(explanation);
    if (options.json) {
        session.output.write(toDocument(explainDocument(options, explanation, report)));
    } else {
        show(options, explanation, session);
    }
    return report.worst();
}

}  // namespace ogmprobe
