// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <set>
#include <string>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "explain/ExplainText.h"
#include "explain/TracedPlay.h"
#include "text/Csv.h"
#include "text/Json.h"
#include "text/NumberText.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

ordered_json explainDocument(const std::string& path, const ExplainOptions& options,
                             const Explanation& explanation, const Report& report) {
    auto findings = ordered_json::array();
    for (const Finding& finding : explanation.findings()) {
        findings.push_back(toJson(finding));
    }
    const auto& opened = explanation.trace().opened();
    return {{"schema_version", kSchemaVersion},
            {"path", path},
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

ExitCode strictCode(const Explanation& explanation) {
    const auto& findings = explanation.findings();
    const bool isUsual = std::all_of(findings.begin(), findings.end(),
                                     [](const Finding& finding) { return finding.usual; });
    return isUsual ? ExitCode::kDone : ExitCode::kUsage;
}

/** Returns the document for a file that cannot be read. */
ordered_json failureDocument(const std::string& path, const Report& report) {
    return {{"schema_version", kSchemaVersion},
            {"path", path},
            {"exit_code", static_cast<int>(report.worst())},
            {"size", nullptr},
            {"duration_us", nullptr},
            {"streams", ordered_json::array()},
            {"findings", ordered_json::array()},
            {"pages", nullptr},
            {"errors", report.errorsJson()},
            {"warnings", report.warningsJson()}};
}

/** Returns one line with the kinds of unusual findings. */
std::string summary(const std::string& path, const Explanation& explanation) {
    std::string kinds;
    uint64_t count = 0;
    std::set<std::string> named;
    for (const Finding& finding : explanation.findings()) {
        count += finding.usual ? 0 : 1;
        if (!finding.usual && named.insert(finding.id).second) {
            kinds += (kinds.empty() ? ": " : ", ") + std::string(finding.id);
        }
    }
    return fmt::format("{}: {}{}\n", visible(path),
                       count == 0 ? "nothing to explain" : counted(count, "finding"), kinds);
}

std::string csvLines(const std::string& path, const Explanation& explanation) {
    const auto number = [](const auto& value) {
        return value ? fmt::format("{}", *value) : std::string();
    };
    std::string text;
    for (const Finding& finding : explanation.findings()) {
        text += csvLine({path, std::string(finding.id), finding.usual ? "1" : "0",
                         number(finding.track), number(finding.serial), number(finding.offset),
                         finding.timeUs ? secondsText(*finding.timeUs) : "", finding.text});
    }
    return text;
}

ExitCode explainFile(const std::string& path, bool isOneOfMany, const ExplainOptions& options,
                     Session& session) {
    Report report(session.console, path);
    std::optional<OggFile> file;
    report.guard([&] { file.emplace(path); });
    if (!file) {
        if (options.json) {
            session.output.write(toDocument(failureDocument(path, report)));
        }
        return report.worst();
    }
    PluginTrace trace(*file, options.pages && options.verbose);
    report.guard([&] { playTraced(path, session, report, trace); });
    Explanation explanation(*file, trace);
    report.guard([&] { explanation.setAccounts(accountsOf(path, *file, trace)); });
    explainAll(explanation);
    if (options.json) {
        session.output.write(toDocument(explainDocument(path, options, explanation, report)));
    } else if (options.csv) {
        session.output.write(csvLines(path, explanation));
    } else if (isOneOfMany && (trace.opened() || !explanation.findings().empty())) {
        session.output.write(summary(path, explanation));
    } else if (trace.opened() || !explanation.findings().empty()) {
        show(options, explanation, session);
    }
    return options.strict ? std::max(report.worst(), strictCode(explanation)) : report.worst();
}

}  // namespace

ExitCode runExplain(const ExplainOptions& options, Session& session) {
    if (options.csv) {
        session.output.write("file,id,usual,track,serial,offset,time,text\n");
    }
    return forEachFile(
            options.files, session,
            [&](const std::string& path, bool isOneOfMany) {
                return explainFile(path, isOneOfMany, options, session);
            },
            [&](const std::string& name, const Report& report) {
                if (options.json) {
                    session.output.write(toDocument(failureDocument(name, report)));
                }
            });
}

}  // namespace ogmprobe
