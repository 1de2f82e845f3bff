// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

#include "commands/Session.h"

namespace ogmprobe::check {

/** What draws timelines of the files into a folder. */
struct TimelineRequest {
    const std::vector<std::string>& paths;
    /** Made if need be. */
    std::string folder;
    size_t jobs = 1;
    bool force = false;
};

/** The files of the timelines by the paths of the films; what cannot be drawn has none. */
std::map<std::string, std::string> drawTimelines(const TimelineRequest& request, Session& session);

}  // namespace ogmprobe::check
