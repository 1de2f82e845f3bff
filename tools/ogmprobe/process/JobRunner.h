// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

#include "console/Advance.h"
#include "jobs/Job.h"
#include "options/Options.h"
#include "records/RecordSink.h"

namespace ogmprobe {

/** A job and its file. */
struct JobRequest {
    /** As the user wrote it. */
    std::string path;
    Job job;
    /** Whether calls, buffers and data-source reads are recorded too. */
    bool traced = false;
    /** Whether a search that is known to find nothing is repeated in full. */
    bool wholeSearches = false;
    /** Called from time to time while the plug-in works; may be empty. */
    std::function<void(const Advance&)> progress = {};
};

/**
 * Runs the job with the plug-in that the options name, in a separate process unless they say
 * otherwise, and passes on its records. Failures, even the extractor's death, are records.
 * Exceptions come only from the handler, and end the job, or from standard input that cannot be
 * spooled.
 */
void runJob(const JobRequest& request, const GlobalOptions& options, const RecordSink& handler);

/**
 * Does the job in this process: loads the plug-in, opens the file and reads it. Calls
 * `beforeReading` when it no longer needs the file system.
 */
void performJob(const JobRequest& request, const GlobalOptions& options, const RecordSink& sink,
                const std::function<void()>& beforeReading);

}  // namespace ogmprobe
