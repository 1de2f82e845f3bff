// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <filesystem>
#include <string>

#include "FileTimeline.h"
#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "files/OutputFolder.h"
#include "text/NumberText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

bool isPageOrDrawing(const fs::path& path) {
    return path.extension() == ".html" || path.extension() == ".svg";
}

/** Chooses the path of each file's timeline. */
class OutputPaths {
  public:
    explicit OutputPaths(const TimelineOptions& options) : mOptions(options) {}

    /** Throws `ProbeError` with `kUsage` if the output does not suit the files. */
    void require(bool several) {
        const fs::path output = mOptions.output;
        std::error_code ignored;
        mIsFolder = several || !output.has_filename() || fs::is_directory(output, ignored);
        if (!mIsFolder && !isPageOrDrawing(output)) {
            throw ProbeError(ExitCode::kUsage,
                             mOptions.output + " ends neither in .html nor in .svg");
        }
        if (several && isPageOrDrawing(output) && !fs::is_directory(output, ignored)) {
            throw ProbeError(ExitCode::kUsage,
                             mOptions.output + " takes the timeline of one file: name a folder");
        }
    }

    fs::path of(const std::string& file) {
        if (!mIsFolder) {
            return mOptions.output;
        }
        makeFolder(mOptions.output);
        return fs::path(mOptions.output) / (mStems.take(file) + (mOptions.svg ? ".svg" : ".html"));
    }

  private:
    const TimelineOptions& mOptions;
    OutputStems mStems;
    bool mIsFolder = false;
};

void draw(const std::string& file, const fs::path& output, const TimelineOptions& options,
          Session& session, Report& report) {
    if (const auto drawn = timeline::drawTimeline({file, output, options}, session, report)) {
        session.output.write(
                fmt::format("timeline of {}, {}: {}\n", counted(drawn->tracks, "track"),
                            counted(drawn->packets, "packet"), visible(output.string())));
    }
}

}  // namespace

ExitCode runTimeline(const TimelineOptions& options, Session& session) {
    OutputPaths paths(options);
    return forEachFile(options.files, session, [&](const std::string& file, bool isOneOfMany) {
        paths.require(isOneOfMany);
        Report report(session.console, file);
        report.guard([&] { draw(file, paths.of(file), options, session, report); });
        return report.worst();
    });
}

}  // namespace ogmprobe
