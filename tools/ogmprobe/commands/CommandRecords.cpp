// SPDX-License-Identifier: Apache-2.0
#include "commands/CommandRecords.h"

#include <android/log.h>
#include <fmt/core.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <utility>

#include "console/ProgressLine.h"
#include "files/InputFiles.h"
#include "jobs/PlayLimit.h"
#include "text/LogText.h"
#include "text/VisibleText.h"

namespace ogmprobe {

void CommandRecords::operator()(const TrackEnded& end) {
    if (end.failure) {
        mReport.error(ExitCode::kFile,
                      fmt::format("reading track {} failed: {}", end.track, *end.failure));
    }
}

void CommandRecords::operator()(const LogLine& line) {
    // A command that needs all lines as data gets more lines than it shows.
    if (line.priority < mSession.options.logPriority.value_or(ANDROID_LOG_SILENT)) {
        return;
    }
    // If both streams have the same target, the line must come after earlier output.
    mSession.output.flush();
    mSession.console.clearProgress();
    __android_log_message message = {};
    message.struct_size = sizeof(message);
    message.buffer_id = LOG_ID_MAIN;
    message.priority = line.priority;
    const std::string tag = visible(line.tag);
    const std::string text = visible(withoutLineEnd(line.text));
    message.tag = tag.c_str();
    message.message = text.c_str();
    __android_log_stderr_logger(&message);
}

void CommandRecords::operator()(const Unconfined& unconfined) {
    (*this)(LogLine{ANDROID_LOG_DEBUG, "ogmprobe",
                    fmt::format("system calls are not filtered: {}", unconfined.reason)});
}

void CommandRecords::requireTracks(const TrackChoice& choice, const FileOpened& file) {
    for (const size_t track : choice.shown) {
        if (track >= file.trackCount) {
            throw ProbeError(ExitCode::kUsage, fmt::format("there is no track {}: the file has {}",
                                                           track, file.trackCount));
        }
    }
}

void warnOfOnlyTracks(const TrackChoice& choice, Report& report) {
    if (!choice.played.empty()) {
        report.warning(
                "the other tracks are not played: seeks, and packets near the end, can differ from "
                "those of --track");
    }
}

ExitCode forEachFile(
        const std::vector<std::string>& names, Session& session,
        const std::function<ExitCode(const std::string& path, bool several)>& work,
        const std::function<void(const std::string& name, Report& report)>& withoutFiles) {
    ExitCode worst = ExitCode::kDone;
    std::vector<std::string> paths;
    for (const std::string& name : names) {
        Report report(session.console, name);
        report.guard([&] {
            const NamedFiles found = filesOf(name);
            paths.insert(paths.end(), found.paths.begin(), found.paths.end());
            for (const std::string& failure : found.failures) {
                report.error(ExitCode::kFile, failure);
            }
        });
        worst = std::max(worst, report.worst());
        if (report.worst() != ExitCode::kDone) {
            withoutFiles(name, report);
        }
    }
    const bool several = names.size() > 1 || paths.size() > 1;
    for (const std::string& path : paths) {
        worst = std::max(worst, work(path, several));
    }
    return worst;
}

void runShown(JobRequest request, const GlobalOptions& options, Console& console,
              const RecordSink& handler) {
    const std::string name = visible(std::filesystem::path(request.path).filename().string());
    ProgressLine line(console);
    request.progress = [&](const Advance& advance) {
        line.update([&](ProgressLine::Seconds time) {
            return progressText(advance, name, std::chrono::floor<std::chrono::seconds>(time));
        });
    };
    runJob(request, options, handler);
}

void runLimited(JobRequest request, const GlobalOptions& options, Console& console,
                const RecordSink& handler) {
    try {
        runShown(std::move(request), options, console, handler);
    } catch (const EndlessRepetition& circles) {
        handler(Failure{ExitCode::kDied,
                        fmt::format("the extractor never ends: {}", circles.what())});
    }
}

}  // namespace ogmprobe
