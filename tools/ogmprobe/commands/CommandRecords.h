// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "commands/Report.h"
#include "commands/Session.h"
#include "process/JobRunner.h"
#include "records/Records.h"

namespace ogmprobe {

inline constexpr const char* kNoTracks = "the file has no tracks that can be played";

/**
 * What all commands do alike with records: failures go to the report, log lines to standard error.
 * A command's own class adds the records that it wants, beside
 * `using CommandRecords::operator();`.
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

/** A sink that calls the object, which must live as long, with each record as what it is. */
template <typename Records>
RecordSink visitedBy(Records& records) {
    return [&records](const Record& record) { std::visit(records, record); };
}

/** Says what differs where tracks are played without the others. */
void warnOfOnlyTracks(const TrackChoice& choice, Report& report);

/**
 * Calls the function with each file that the names stand for, and whether there are several; the
 * largest of its codes is the result.
 */
ExitCode forEachFile(const std::vector<std::string>& names, Session& session,
                     const std::function<ExitCode(const std::string& path, bool several)>& work);

/** `runJob`, with progress on the console. */
void runShown(JobRequest request, const GlobalOptions& options, Console& console,
              const RecordSink& handler);

/**
 * The same for a handler that throws `GoesInCircles`, which then gets a failure that ends the
 * records.
 */
void runLimited(JobRequest request, const GlobalOptions& options, Console& console,
                const RecordSink& handler);

/** Runs the job and lets the object have its records. What it throws as `ProbeError` is reported.
 */
template <typename Records>
void runReported(const JobRequest& request, Session& session, Report& report, Records& records) {
    report.guard([&] { runShown(request, session.options, session.console, visitedBy(records)); });
}

}  // namespace ogmprobe
