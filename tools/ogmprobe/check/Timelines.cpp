// SPDX-License-Identifier: Apache-2.0
#include "check/Timelines.h"

#include <fmt/core.h>

#include <cctype>
#include <filesystem>

#include "check/Pool.h"
#include "commands/Commands.h"

namespace ogmprobe::check {
namespace {

namespace fs = std::filesystem;

/** Letters that mean nothing to a browser or a shell. */
std::string plainName(const std::string& path) {
    std::string name = fs::path(path).stem().string();
    for (char& letter : name) {
        const auto byte = static_cast<unsigned char>(letter);
        letter = std::isalnum(byte) != 0 || letter == '-' ? letter : '_';
    }
    return name;
}

std::string draw(const TimelineOptions& options, const GlobalOptions& global) {
    Console console(ColorMode::kNever, true);
    Output nowhere(-1);
    Session session{global, console, nowhere};
    try {
        runTimeline(options, session);
    } catch (const OutputError&) {
        // It is only what has been drawn that would have been said there.
    }
    return "";
}

}  // namespace

std::map<std::string, std::string> drawTimelines(const TimelineRequest& request, Session& session) {
    std::error_code error;
    fs::create_directories(request.folder, error);
    if (error) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot make the folder {}: {}",
                                                      request.folder, error.message()));
    }
    std::vector<TimelineOptions> tasks;
    for (const std::string& path : request.paths) {
        const std::string name = fmt::format("{:05}-{}.html", tasks.size() + 1, plainName(path));
        TimelineOptions& task = tasks.emplace_back();
        task.files = {path};
        task.output = (fs::path(request.folder) / name).string();
        task.seekSteps = 0;
        task.force = request.force;
    }
    size_t next = 0;
    size_t done = 0;
    runPool({request.jobs,
             [&]() -> std::optional<PoolTask> {
                 if (next == tasks.size()) {
                     return std::nullopt;
                 }
                 const TimelineOptions& options = tasks[next++];
                 return PoolTask{[&] { return draw(options, session.options); }, 0};
             },
             [&](const PoolAnswer&) { ++done; },
             [&] {
                 session.console.showProgress(
                         fmt::format("drawing timelines: {} of {}", done, tasks.size()));
             }});
    session.console.clearProgress();
    std::map<std::string, std::string> drawn;
    for (const TimelineOptions& options : tasks) {
        if (fs::exists(options.output, error)) {
            drawn[options.files.front()] = options.output;
        }
    }
    return drawn;
}

}  // namespace ogmprobe::check
