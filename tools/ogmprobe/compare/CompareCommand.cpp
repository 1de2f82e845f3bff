// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands/Commands.h"
#include "compare/DeviceDump.h"
#include "compare/Difference.h"
#include "compare/LogLineFinder.h"
#include "text/Json.h"
#include "text/LogText.h"
#include "text/NumberText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** A file and the plug-in that plays it. */
struct Side {
    std::string path;
    GlobalOptions options;
    Report report;
    PlayedFile played;
    /** This side is a device's dump. */
    bool isDevice = false;
};

class Comparison {
  public:
    Comparison(const CompareOptions& options, Session& session)
        : mOptions(options),
          mSession(session),
          mWithLog(options.logs.value_or(!options.pluginB.empty())),
          mA(side("A", options.a, session.options.pluginPath)),
          mB(side("B", pathOfB(options),
                  options.pluginB.empty() ? session.options.pluginPath : options.pluginB)) {
        mB.isDevice = !options.device.empty();
    }

    ExitCode run() {
        play(mA);
        if (mB.isDevice) {
            readDump();
        } else {
            play(mB);
        }
        if (wasCompared()) {
            compare();
        }
        if (mOptions.json) {
            mSession.output.write(toDocument(document()));
        } else if (wasCompared()) {
            mSession.output.write(text());
        }
        return code();
    }

  private:
    static std::string pathOfB(const CompareOptions& options) {
        if (!options.device.empty()) {
            return options.device;
        }
        return options.b.empty() ? options.a : options.b;
    }

    void readDump() {
        mB.report.guard([&] { mB.played = readDeviceDump(mB.path); });
        if (const auto& failure = mB.played.failure) {
            const std::string message = "on the device: " + failure->message;
            failure->code == ExitCode::kFile ? mB.report.error(ExitCode::kFile, message)
                                             : mB.report.warning(message);
        }
        // A dump gives other reasons for refusing a file.
        if (mA.played.failure && mB.played.failure && !mA.played.opened && !mB.played.opened) {
            mB.played.failure->message = mA.played.failure->message;
        }
        reduceToPublicInterface(mA.played);
    }

    Side side(const char* name, const std::string& path, const std::string& plugin) const {
        GlobalOptions options = mSession.options;
        options.pluginPath = plugin;
        if (mWithLog) {
            options.logPriority = ANDROID_LOG_VERBOSE;
        }
        return {path,
                options,
                Report(mSession.console, fmt::format("{} ({})", name, path)),
                {},
                false};
    }

    void play(Side& side) {
        PlayedFileRecords records(mSession, side.report);
        side.report.guard([&] {
            PlayRequest request;
            request.keepEntries = true;
            show(side, playJob(request), records);
        });
        side.played = std::move(records.file());
        if (mOptions.seeks > 0 && side.played.opened) {
            seek(side);
        }
    }

    /** Seeks in a separate run, of which only the seeks are used. */
    void seek(Side& side) {
        PlayedFileRecords records(mSession, side.report);
        side.report.guard([&] { show(side, seekTestJob(mOptions.seeks), records); });
        side.played.seeks = std::move(records.file().seeks);
    }

    void show(const Side& side, Job job, PlayedFileRecords& records) {
        JobRequest request{side.path, std::move(job), mOptions.reads};
        // A difference that is only in a later search must be found too.
        request.wholeSearches = true;
        runLimited(std::move(request), side.options, mSession.console, visitedBy(records));
    }

    bool wasCompared() const { return mA.played.wasTried() && mB.played.wasTried(); }

    void compare() {
        mDifferences = differencesBetween(mA.played, mB.played);
        mTracks = compareTracks(mA.played, mB.played);
        for (auto first : {mOptions.reads ? firstReadDifference(mA.played, mB.played)
                                          : std::optional<Difference>(),
                           firstSeekDifference(mA.played, mB.played)}) {
            if (first) {
                mDifferences.push_back(*std::move(first));
            }
        }
        const auto line = firstLogDifference(mA.played, mB.played);
        if (mWithLog && line) {
            mDifferences.push_back(logDifference(*line));
        }
    }

    /** Only digests of the lines are kept, so the file is played again to find the line. */
    Difference logDifference(uint64_t number) const {
        Difference difference;
        difference.kind = DifferenceKind::kLog;
        difference.number = number;
        const FoundLine a = findLogLine(mA.path, mA.options, number);
        const FoundLine b = findLogLine(mB.path, mB.options, number);
        difference.a = orNull(a.text);
        difference.b = orNull(b.text);
        if (a.text && b.text && a.call != b.call) {
            difference.call = fmt::format("{} (A), {} (B)", a.call, b.call);
        } else {
            difference.call = a.text ? a.call : b.call;
        }
        return difference;
    }

    ExitCode code() const {
        return mDifferences.empty() ? std::max(mA.report.worst(), mB.report.worst())
                                    : ExitCode::kDiffer;
    }

    std::string text() const {
        const bool color = wantsColor(mSession.options.color, STDOUT_FILENO);
        std::string text = sideText("A", mA) + sideText("B", mB);
        if (mDifferences.empty()) {
            return text + emphasised("No difference", color) + ": " + extentText() + "\n";
        }
        text += emphasised("First difference", color) +
                fmt::format(": {}\n", toText(mDifferences.front()));
        for (size_t i = 1; i < mDifferences.size(); ++i) {
            text += fmt::format("Then: {}\n", toText(mDifferences[i]));
        }
        return text + tracksText(mTracks, color);
    }

    static std::string sideText(const char* name, const Side& side) {
        const std::string& plugin = side.options.pluginPath;
        if (side.isDevice) {
            return fmt::format("{}: a device, by {}\n", name, visible(side.path));
        }
        return fmt::format("{}: {}{}\n", name, visible(side.path),
                           plugin.empty() ? "" : " with " + visible(plugin));
    }

    /** Returns what was found to be equal. */
    std::string extentText() const {
        if (!mA.played.opened) {
            return "neither is taken";
        }
        uint64_t packets = 0;
        for (const TrackComparison& track : mTracks) {
            packets += track.packetsA;
        }
        std::string more;
        if (mOptions.reads) {
            uint64_t reads = 0;
            for (const SourceRead& read : mA.played.reads) {
                reads += read.count;
            }
            more += counted(reads, "read") + ", ";
        }
        if (mOptions.seeks > 0) {
            more += counted(mA.played.seeks.size(), "seek") + ", ";
        }
        return fmt::format("{}, {}, {}{}", counted(mTracks.size(), "track"),
                           counted(packets, "packet"), more, logText());
    }

    std::string logText() const {
        if (mB.isDevice) {
            return "as far as a device returns them";
        }
        return mWithLog ? counted(mA.played.logDigests.size(), "log line")
                        : "log not compared (--logs)";
    }

    ordered_json document() const {
        auto differences = ordered_json::array();
        for (const Difference& difference : mDifferences) {
            differences.push_back(toJson(difference));
        }
        return {{"schema_version", kSchemaVersion},
                {"a", sideJson(mA)},
                {"b", sideJson(mB)},
                {"exit_code", static_cast<int>(code())},
                {"same", wasCompared() ? ordered_json(mDifferences.empty()) : ordered_json()},
                {"differences", std::move(differences)},
                {"tracks", tracksJson(mTracks)},
                {"errors", entries(&Report::errorsJson)},
                {"warnings", entries(&Report::warningsJson)}};
    }

    ordered_json sideJson(const Side& side) const {
        const std::string& plugin = side.options.pluginPath;
        const bool isNamed = !plugin.empty() && !side.isDevice;
        return {{"path", side.path},
                {"device", side.isDevice},
                {"plugin", isNamed ? ordered_json(plugin) : ordered_json(nullptr)},
                {"log_lines",
                 mWithLog ? ordered_json(side.played.logDigests.size()) : ordered_json(nullptr)}};
    }

    /** Returns the entries of both sides, each with its side. */
    ordered_json entries(ordered_json (Report::*list)() const) const {
        auto all = ordered_json::array();
        for (const auto& [name, side] : {std::pair{"a", &mA}, std::pair{"b", &mB}}) {
            for (ordered_json entry : (side->report.*list)()) {
                entry["side"] = name;
                all.push_back(std::move(entry));
            }
        }
        return all;
    }

    const CompareOptions& mOptions;
    Session& mSession;
    const bool mWithLog;
    Side mA;
    Side mB;
    std::vector<Difference> mDifferences;
    std::vector<TrackComparison> mTracks;
};

}  // namespace

ExitCode runCompare(const CompareOptions& options, Session& session) {
    return Comparison(options, session).run();
}

}  // namespace ogmprobe
