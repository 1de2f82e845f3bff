// SPDX-License-Identifier: Apache-2.0
#include "check/Timelines.h"

#include <fmt/core.h>

#include <cctype>
#include <filesystem>
#include <optional>
#include <utility>

#include "FileTimeline.h"
#include "check/Pool.h"
#include "console/ProgressLine.h"
#include "files/LeftoverFiles.h"
#include "files/NewFile.h"

namespace ogmprobe::check {
namespace {

namespace fs = std::filesystem;

/** Characters without a special meaning in a browser or a shell. */
std::string plainName(const std::string& path) {
    std::string name = fs::path(path).stem().string();
    for (char& letter : name) {
        const auto byte = static_cast<unsigned char>(letter);
        letter = std::isalnum(byte) != 0 || letter == '-' ? letter : '_';
    }
    return name;
}

/** Runs in a separate process. Returns why there is no timeline; empty if it was drawn. */
std::string failureOf(const std::string& path, const fs::path& output, bool force,
                      const GlobalOptions& global) {
    Console console(ColorMode::kNever, true);
    Output nowhere(-1);
    Session session{global, console, nowhere};
    Report report(console, path);
    TimelineOptions options;
    options.seekSteps = 0;
    options.force = force;
    bool isDrawn = false;
    report.guard([&] {
        isDrawn = timeline::drawTimeline({path, output, options}, session, report).has_value();
    });
    if (isDrawn) {
        return "";
    }
    return report.errors().empty() ? "the plug-in does not open the file"
                                   : report.errors().front().message;
}

/**
 * The unfinished file that a process leaves if it is killed. A file that existed before must not be
 * removed.
 */
class WatchedPart {
  public:
    WatchedPart(const fs::path& output, bool force) : mPath(partOf(output)) {
        std::error_code ignored;
        mIsOurs = force || !fs::exists(fs::symlink_status(mPath, ignored));
        if (mIsOurs) {
            mLeftover.watch(mPath.c_str());
        }
    }

  private:
    const fs::path mPath;
    bool mIsOurs = false;
    LeftoverFile mLeftover;
};

/** Draws the timelines in parallel and shows progress. */
class DrawingRun {
  public:
    DrawingRun(const TimelineRequest& request, Session& session)
        : mRequest(request), mSession(session), mLine(session.console) {
        for (const std::string& path : request.paths) {
            const std::string name =
                    fmt::format("{:05}-{}.html", mOutputs.size() + 1, plainName(path));
            mOutputs.push_back(fs::path(request.folder) / name);
        }
    }

    TimelineResults draw() {
        runPool({mRequest.jobs, [this] { return next(); },
                 [this](const PoolAnswer& answer) { take(answer); }, [this] { show(); }});
        return std::move(mResults);
    }

  private:
    std::optional<PoolTask> next() {
        if (mNext == mOutputs.size()) {
            return std::nullopt;
        }
        const std::string& path = mRequest.paths[mNext];
        const fs::path& output = mOutputs[mNext];
        mParts.try_emplace(mNext++, output, mRequest.force);
        return PoolTask{[this, &path, &output] {
            return failureOf(path, output, mRequest.force, mSession.options);
        }};
    }

    void take(const PoolAnswer& answer) {
        ++mDone;
        mParts.erase(answer.task);
        const std::string failure =
                answer.text ? *answer.text
                            : fmt::format("the process that draws it ended: {}", answer.ending);
        mResults[mRequest.paths[answer.task]] = {
                failure.empty() ? mOutputs[answer.task].string() : "", failure};
    }

    void show() {
        mLine.update([this](ProgressLine::Seconds) {
            const auto part = static_cast<double>(mDone) / static_cast<double>(mOutputs.size());
            return fmt::format("{}  drawing timelines: {} of {}", progressBar(part), mDone,
                               mOutputs.size());
        });
    }

    const TimelineRequest& mRequest;
    Session& mSession;
    ProgressLine mLine;
    std::vector<fs::path> mOutputs;
    std::map<size_t, WatchedPart> mParts;
    TimelineResults mResults;
    size_t mNext = 0;
    size_t mDone = 0;
};

}  // namespace

TimelineResults drawTimelines(const TimelineRequest& request, Session& session) {
    return DrawingRun(request, session).draw();
}

}  // namespace ogmprobe::check
