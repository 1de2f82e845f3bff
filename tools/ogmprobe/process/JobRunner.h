// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "console/ProgressLine.h"
#include "jobs/Job.h"
#include "options/Options.h"

namespace ogmprobe {

/** A job and the file that it is about. */
struct JobRequest {
    /** As the user names it. */
    std::string path;
    Job job;
    /** Whether calls, buffers and data-source reads are recorded too. */
    bool traced = false;
    /** Whether a search that is known to find nothing is done again in full. */
    bool wholeSearches = false;
    /** Called now and then while the plug-in works; may be empty. */
    std::function<void(const Advance&)> progress = {};
};

/** The plug-in that the options name, or the one beside the program. Throws `ProbeError`. */
std::filesystem::path pluginPath(const GlobalOptions& options);

/**
 * Runs the job with the plug-in that the options name, in a process of its own unless they say
 * otherwise, and hands over its records. What goes wrong, the extractor's death included, is one
 * of them; exceptions come from the handler, which end the job, and from standard input that cannot
 * be spooled.
 */
void runJob(const JobRequest& request, const GlobalOptions& options, const RecordSink& handler);

/**
 * The job itself: loads the plug-in, opens the file and reads, all in this process. `beforeReading`
 * is called once what needs the file system has been done.
 */
void performJob(const JobRequest& request, const GlobalOptions& options, const RecordSink& sink,
                const std::function<void()>& beforeReading);

}  // namespace ogmprobe
