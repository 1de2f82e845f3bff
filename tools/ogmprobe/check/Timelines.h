// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

#include "commands/Session.h"

namespace ogmprobe::check {

/** How and where to draw timelines of the files. */
struct TimelineRequest {
    const std::vector<std::string>& paths;
    /** It must exist. */
    std::string folder;
    size_t jobs = 1;
    bool force = false;
};

/** A timeline, or the reason why there is none. */
struct TimelineResult {
    /** Empty if it was not drawn. */
    std::string output;
    std::string failure;
};

/** By the paths of the films. */
using TimelineResults = std::map<std::string, TimelineResult>;

TimelineResults drawTimelines(const TimelineRequest& request, Session& session);

}  // namespace ogmprobe::check
