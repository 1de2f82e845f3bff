// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

#include "commands/Report.h"
#include "commands/Session.h"

namespace ogmprobe::timeline {

/** A file, and the page or drawing that is to be made of it. */
struct TimelineTask {
    const std::string& file;
    const std::filesystem::path& output;
    /** The options, except files and output. */
    const TimelineOptions& options;
};

struct DrawnTimeline {
    size_t tracks = 0;
    size_t packets = 0;
};

/**
 * Plays the file and draws its timeline. Failures are reported, and are also in the drawing.
 * Nothing is drawn for a file that the plug-in does not open. Throws `ProbeError`.
 */
std::optional<DrawnTimeline> drawTimeline(const TimelineTask& task, Session& session,
                                          Report& report);

}  // namespace ogmprobe::timeline
