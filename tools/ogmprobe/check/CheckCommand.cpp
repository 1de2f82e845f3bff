// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "check/CheckText.h"
#include "check/CodecFiles.h"
#include "check/DecoderJson.h"
#include "check/FileCheck.h"
#include "check/HtmlReport.h"
#include "check/Pool.h"
#include "check/StockDecoders.h"
#include "check/Summary.h"
#include "check/Timelines.h"
#include "check/Triage.h"
#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "files/InputFiles.h"
#include "files/NewFile.h"
#include "files/OutputFolder.h"
#include "process/PluginPath.h"
#include "records/Digest.h"
#include "text/Json.h"

namespace ogmprobe {
namespace check {
namespace {

namespace fs = std::filesystem;
using nlohmann::ordered_json;

uint64_t digestOf(const std::string& text) {
    return fnv1a64({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
}

/** What verdicts depend on besides the files. */
std::string circumstancesOf(const DecoderList& decoders, const GlobalOptions& options) {
    std::string list;
    for (const Decoder& decoder : decoders.decoders) {
        list += toLine(toJson(decoder));
    }
    const std::ifstream plugin(pluginPath(options), std::ios::binary);
    std::ostringstream library;
    library << plugin.rdbuf();
    return fmt::format("ogmprobe {}, plug-in {:016x}, decoders {:016x}", OGMPROBE_VERSION,
                       digestOf(library.str()), digestOf(list));
}

/** Checks all files and shows the results. */
class CheckRun {
  public:
    CheckRun(const CheckOptions& options, Session& session)
        : mOptions(options),
          mSession(session),
          mReport(session.console, ""),
          mColor(wantsColor(session.options.color, STDOUT_FILENO)),
          mDecoders(options.codecs.empty() ? stockDecoders() : decodersOfFiles(options.codecs)) {}

    ExitCode run();

  private:
    std::vector<std::string> paths();
    std::unique_ptr<NewFile> newPage() const;
    void checkAll(const std::vector<std::string>& paths);
    void show(const CheckedFile& file);
    void reportFailures(const CheckedFile& file);
    void writePage(NewFile& page, const TimelineResults& timelines);
    TimelineResults timelines();
    void writeEnd();
    size_t jobs() const { return mOptions.jobs == 0 ? availableProcessors() : mOptions.jobs; }

    const CheckOptions& mOptions;
    Session& mSession;
    /** Errors about names that are not files to check. */
    Report mReport;
    const bool mColor;
    const DecoderList mDecoders;
    bool mIsOne = false;
    ExitCode mWorst = ExitCode::kDone;
    Summary mSummary;
    /** Kept only if they are needed at the end. */
    std::vector<CheckedFile> mKept;
    ordered_json mJson = ordered_json::array();
};

/** Also reports names that are not files. */
std::vector<std::string> CheckRun::paths() {
    std::vector<std::string> all;
    std::vector<CheckedFile> none;
    for (const std::string& name : mOptions.files) {
        try {
            const NamedFiles found = filesOf(name);
            all.insert(all.end(), found.paths.begin(), found.paths.end());
            for (const std::string& failure : found.failures) {
                none.push_back(uncheckedFile(name, kCannotRead, ExitCode::kFile, failure));
            }
        } catch (const ProbeError& error) {
            none.push_back(uncheckedFile(name, kCannotRead, error.code(), error.what()));
        }
    }
    mIsOne = all.size() + none.size() == 1;
    for (const CheckedFile& file : none) {
        show(file);
    }
    return all;
}

std::unique_ptr<NewFile> CheckRun::newPage() const {
    return mOptions.html.empty()
                   ? nullptr
                   : std::make_unique<NewFile>(mOptions.html, mOptions.force ? Existing::kOverwrite
                                                                             : Existing::kRefuse);
}

/** Checks several files in parallel. A single file has its own messages, log lines and progress. */
void CheckRun::checkAll(const std::vector<std::string>& paths) {
    if (mIsOne && paths.size() == 1 && mOptions.state.empty()) {
        const CheckedFile file = checkFile(paths.front(), mDecoders, mSession);
        requirePlugin(file);
        show(file);
        return;
    }
    std::unique_ptr<TriageState> state;
    if (!mOptions.state.empty()) {
        state = std::make_unique<TriageState>(mOptions.state,
                                              circumstancesOf(mDecoders, mSession.options));
    }
    triage({paths, mDecoders, jobs(), state.get(), [this](const CheckedFile& file) { show(file); }},
           mSession);
}

/** Reports only files that cannot be read: other failures are verdicts. */
void CheckRun::reportFailures(const CheckedFile& file) {
    if (file.verdict() == Verdict::kUnknown && !file.failures.empty()) {
        mSession.console.error(file.path, file.failures.front().message);
    }
}

void CheckRun::show(const CheckedFile& file) {
    mSummary.add(file);
    mWorst = std::max(mWorst, file.exitCode());
    if (!mOptions.html.empty() || !mOptions.timelines.empty()) {
        mKept.push_back(file);
    }
    if (mOptions.json) {
        mJson.push_back(toJson(file));
    } else if (mOptions.csv) {
        mSession.output.write(csvText(file));
    } else if (mIsOne && file.verdict() != Verdict::kUnknown) {
        mSession.output.write(fullText(file, mDecoders.source, mColor));
    } else if (!mIsOne) {
        mSession.output.write(lineText(file, mColor));
    }
    reportFailures(file);
}

/** Draws only files that were opened and have faults. */
TimelineResults CheckRun::timelines() {
    if (mOptions.timelines.empty()) {
        return {};
    }
    std::vector<std::string> paths;
    for (const CheckedFile& file : mKept) {
        if (file.verdict() != Verdict::kPlays && file.durationUs) {
            paths.push_back(file.path);
        }
    }
    TimelineResults results =
            drawTimelines({paths, mOptions.timelines, jobs(), mOptions.force}, mSession);
    for (const auto& [path, result] : results) {
        if (!result.failure.empty()) {
            mReport.error(ExitCode::kFile,
                          fmt::format("no timeline of {}: {}", path, result.failure));
        }
    }
    return results;
}

/** Relative to the folder of the page. */
HtmlReport::Timeline seenFrom(const fs::path& folder, const TimelineResult& timeline) {
    std::error_code ignored;
    return {timeline.output.empty() ? "" : fs::relative(timeline.output, folder, ignored).string(),
            timeline.failure};
}

void CheckRun::writePage(NewFile& page, const TimelineResults& timelines) {
    HtmlReport report;
    const fs::path folder = fs::absolute(mOptions.html).parent_path();
    for (const CheckedFile& file : mKept) {
        const auto timeline = timelines.find(file.path);
        report.add(file, timeline == timelines.end() ? HtmlReport::Timeline{}
                                                     : seenFrom(folder, timeline->second));
    }
    const std::string text = report.document(mSummary, mDecoders.source);
    page.append({reinterpret_cast<const uint8_t*>(text.data()), text.size()});
    page.commit();
}

void CheckRun::writeEnd() {
    if (mOptions.json) {
        mSession.output.write(toDocument({{"schema_version", kSchemaVersion},
                                          {"decoders", mDecoders.source},
                                          {"files", std::move(mJson)},
                                          {"summary", toJson(mSummary)},
                                          {"errors", mReport.errorsJson()},
                                          {"warnings", mReport.warningsJson()}}));
    } else if (!mOptions.csv && !mIsOne) {
        mSession.output.write("\n" + summaryText(mSummary, mColor));
    }
}

ExitCode CheckRun::run() {
    // Before anything is played: an existing file should be reported at once, not after an hour.
    const std::unique_ptr<NewFile> page = newPage();
    if (!mOptions.timelines.empty()) {
        makeFolder(mOptions.timelines);
    }
    if (mOptions.csv) {
        mSession.output.write(kCsvHeading);
    }
    const std::vector<std::string> all = paths();
    checkAll(all);
    const auto drawn = timelines();
    if (page != nullptr) {
        // If the disk is full, the summary is still printed.
        mReport.guard([&] { writePage(*page, drawn); });
    }
    writeEnd();
    return std::max(mWorst, mReport.worst());
}

}  // namespace
}  // namespace check

ExitCode runCheck(const CheckOptions& options, Session& session) {
    return check::CheckRun(options, session).run();
}

}  // namespace ogmprobe
