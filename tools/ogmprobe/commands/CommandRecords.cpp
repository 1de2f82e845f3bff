// SPDX-License-Identifier: Apache-2.0
#include "commands/CommandRecords.h"

#include <android/log.h>
#include <fmt/core.h>

#include <filesystem>
#include <utility>

#include "text/VisibleText.h"

namespace ogmprobe {

void CommandRecords::operator()(const TrackEnded& end) {
    if (end.failure) {
        mReport.error(ExitCode::kFile,
                      fmt::format("reading track {} failed: {}", end.track, *end.failure));
    }
}

void CommandRecords::operator()(const LogLine& line) {
    // A command that wants all lines as data has them recorded beyond what is to be shown.
    if (line.priority < mSession.options.logPriority.value_or(ANDROID_LOG_SILENT)) {
        return;
    }
    // Where both streams go to one place, the line stands behind what came before it.
    mSession.output.flush();
    mSession.console.clearProgress();
    __android_log_message message = {};
    message.struct_size = sizeof(message);
    message.buffer_id = LOG_ID_MAIN;
    message.priority = line.priority;
    message.tag = line.tag.c_str();
    message.message = line.text.c_str();
    __android_log_stderr_logger(&message);
}

void CommandRecords::operator()(const Unconfined& unconfined) {
    (*this)(LogLine{ANDROID_LOG_DEBUG, "ogmprobe",
                    fmt::format("system calls are not filtered: {}", unconfined.reason)});
}

void runShown(JobRequest request, const GlobalOptions& options, Console& console,
              const RecordSink& handler) {
    ProgressLine line(console, visible(std::filesystem::path(request.path).filename().string()));
    request.progress = [&line](const Advance& advance) { line.update(advance); };
    runJob(request, options, handler);
}

}  // namespace ogmprobe
