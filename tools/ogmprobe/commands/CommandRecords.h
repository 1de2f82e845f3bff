// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "commands/Report.h"
#include "commands/Session.h"
#include "process/JobRunner.h"
#include "records/RecordSink.h"

namespace ogmprobe {

inline constexpr const char* kNoTracks = "the file has no tracks that can be played";

/**
 * Handles the records that all commands treat in the same way: failures go to the report, log lines
 * to standard error. A command's class adds its own records, and `using
 * CommandRecords::operator();`.
 */
class CommandRecords {
  public:
    CommandRecords(Session& session, Report& report) : mSession(session), mReport(report) {}

    void operator()(const Failure& failure) { mReport.error(failure.code, failure.message); }
    void operator()(const TrackEnded& end);
    void operator()(const LogLine& line);
    void operator()(const Unconfined& unconfined);

    template <typename T>
    void operator()(const T&) {}

  protected:
    /** Throws `ProbeError` with `kUsage` if a track is chosen that the file does not have. */
    static void requireTracks(const TrackChoice& choice, const FileOpened& file);

    Session& session() const { return mSession; }
    Report& report() const { return mReport; }

  private:
    Session& mSession;
    Report& mReport;
};

/**
 * Returns a sink that calls the object with each record by its type. The object must outlive the
 * sink.
 */
template <typename Records>
RecordSink visitedBy(Records& records) {
    return [&records](const Record& record) { std::visit(records, record); };
}

/** Warns that tracks which are played without the others may differ. */
void warnOfOnlyTracks(const TrackChoice& choice, Report& report);

/**
 * Calls `work` with each file that the names refer to, and whether there are several. Returns the
 * largest of its codes. Before that calls `withoutFiles` with each name whose files were not all
 * found: what a program reads has the error too.
 */
ExitCode forEachFile(
        const std::vector<std::string>& names, Session& session,
        const std::function<ExitCode(const std::string& path, bool several)>& work,
        const std::function<void(const std::string& name, Report& report)>& withoutFiles =
                [](const std::string&, Report&) {});

/** Calls `runJob` and shows progress on the console. */
void runShown(JobRequest request, const GlobalOptions& options, Console& console,
              const RecordSink& handler);

/**
 * The same for a handler that throws `EndlessRepetition`: it then gets a failure, which ends the
 * records.
 */
void runLimited(JobRequest request, const GlobalOptions& options, Console& console,
                const RecordSink& handler);

/** Runs the job and passes its records to the object. Reports a `ProbeError` that it throws. */
template <typename Records>
void runReported(const JobRequest& request, Session& session, Report& report, Records& records) {
    report.guard([&] { runShown(request, session.options, session.console, visitedBy(records)); });
}

}  // namespace ogmprobe
