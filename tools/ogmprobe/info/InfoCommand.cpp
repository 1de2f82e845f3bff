// SPDX-License-Identifier: Apache-2.0
#include <android/log.h>
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "files/InputFiles.h"
#include "info/FactsText.h"
#include "plugin/TrackJson.h"
#include "text/Hex.h"
#include "text/Json.h"
#include "text/NumberText.h"
#include "text/TextTable.h"
#include "text/TimeText.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** The shown facts of a file. */
struct FileInfo {
    FileOpened file;
    /** Fewer than the file has, if its extractor died. */
    std::vector<TrackDescription> tracks;
    /** What the file itself says. */
    FileFacts facts;
};

/** Collects the facts of one file from its records. */
class InfoRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    InfoRecords(Session& session, Report& report, Report& reportOfRun)
        : CommandRecords(session, report), mReportOfRun(reportOfRun) {}

    void operator()(const FileOpened& file) {
        mInfo = FileInfo{file, {}, {}};
        mSources.tracks = file.trackCount;
        if (file.trackCount == 0) {
            report().warning(kNoTracks);
        }
    }
    void operator()(const TrackListed& listed) {
        for (const std::string& complaint : complaints(listed.track)) {
            report().warning(complaint);
        }
        if (mInfo) {
            mInfo->tracks.push_back(listed.track);
        }
    }
    void operator()(const Failure& failure) {
        Report& concerned = failure.ofPlugin ? mReportOfRun : report();
        concerned.error(failure.code, failure.message);
    }

    void operator()(const LogLine& line) {
        mSources.add(line);
        CommandRecords::operator()(line);
    }

    /** Adds what the file itself says. */
    void lookInto(const std::string& path) {
        if (mInfo) {
            report().guard([&] { mInfo->facts = fileFacts(path, mSources); });
        }
    }

    const std::optional<FileInfo>& info() const { return mInfo; }

  private:
    Report& mReportOfRun;
    TrackSources mSources;
    std::optional<FileInfo> mInfo;
};

ordered_json toJson(const std::string& path, const std::optional<FileInfo>& info,
                    const Report& report) {
    ordered_json container = nullptr;
    ordered_json extractor = nullptr;
    ordered_json fromFile = nullptr;
    auto tracks = ordered_json::array();
    if (info) {
        extractor = info->file.extractor;
        container = {{"mime", info->file.mime},
                     {"size_bytes", info->file.sizeBytes},
                     {"duration_us", orNull(info->file.durationUs)},
                     {"format", toJson(info->file.entries)}};
        fromFile = toJson(info->facts);
        for (const TrackDescription& track : info->tracks) {
            tracks.push_back(toJson(track));
        }
    }
    return {{"path", path},
            {"exit_code", static_cast<int>(report.worst())},
            {"extractor", extractor},
            {"container", container},
            {"tracks", tracks},
            {"from_file", fromFile},
            {"errors", report.errorsJson()},
            {"warnings", report.warningsJson()}};
}

std::string trackTable(const FileInfo& info, bool color) {
    TextTable table({{"Track", TextTable::Align::kRight},
                     {"Type"},
                     {"Codec"},
                     {"Format"},
                     {"Duration", TextTable::Align::kRight},
                     {"MIME type"}});
    for (const TrackDescription& track : info.tracks) {
        table.add({fmt::format("{}", track.index), kindName(track.kind), track.codec.name,
                   formatText(track), durationText(track.durationUs), track.mime});
    }
    addStreamsWithoutTrack(info.facts, table);
    return table.text("  ", color);
}

/** Returns both durations if the plug-in's and the file's differ. */
std::string durationAnswer(const FileInfo& info) {
    std::string byPlugin = durationText(info.file.durationUs);
    const std::string byPages = durationText(info.facts.durationUs);
    if (!info.facts.durationUs || byPlugin == byPages) {
        return byPlugin;
    }
    return info.file.durationUs.value_or(0) > 0
                   ? fmt::format("{} ({} by the pages)", byPlugin, byPages)
                   : fmt::format("unknown to the plug-in ({} by the pages)", byPages);
}

/** The form of the text. */
struct Style {
    bool color = false;
    /** List all entries of formats. */
    bool formats = false;
    /** Longer lines of bytes are cut; 0: none are. */
    size_t columns = 0;
};

std::string fitting(const std::string& line, const Style& style) {
    return style.columns == 0 ? line : shortened(line, style.columns);
}

std::string esdsText(const TrackDescription& track, const Style& style) {
    std::string text = fitting(fmt::format("  Track {} ESDS, {} bytes: {}", track.index,
                                           track.esds->size(), hexText(*track.esds, " ")),
                               style) +
                       "\n";
    for (const std::string& line : esdsLines(*track.esds)) {
        text += fitting("    " + line, style) + "\n";
    }
    return text;
}

std::string formatList(const std::string& of, const std::vector<FormatEntry>& entries,
                       const Style& style) {
    std::string text = fmt::format("  Format of {}:\n", of);
    for (const FormatEntry& entry : entries) {
        text += fitting(fmt::format("    {}: {}", visible(entry.name), visible(entry.value)),
                        style) +
                "\n";
    }
    return text;
}

std::string toText(const std::string& path, const FileInfo& info, const Style& style) {
    const FileOpened& file = info.file;
    std::string text =
            fmt::format("{}: {}, {}, duration {}, {}\n", emphasised(visible(path), style.color),
                        visible(file.mime), sizeText(file.sizeBytes), durationAnswer(info),
                        counted(file.trackCount, "track"));
    if (!info.tracks.empty() || info.facts.streamsWithoutTrack() > 0) {
        text += trackTable(info, style.color);
    }
    for (const TrackDescription& track : info.tracks) {
        if (track.esds) {
            text += esdsText(track, style);
        }
    }
    if (style.formats) {
        text += formatList("the container", file.entries, style);
        for (const TrackDescription& track : info.tracks) {
            text += formatList(fmt::format("track {}", track.index), track.entries, style);
        }
    }
    return text + factsText(info.facts, style.color);
}

/** Collects the results of all files: text at once, JSON at the end. */
class InfoRun {
  public:
    InfoRun(const InfoOptions& options, Session& session)
        : mOptions(options),
          mSession(session),
          mReport(session.console, ""),
          mStyle{wantsColor(session.options.color, STDOUT_FILENO), options.format,
                 options.verbose ? 0 : terminalColumns(STDOUT_FILENO)} {
        // Log lines say which streams become tracks; whether they are shown is decided later.
        mWithLines.logPriority = ANDROID_LOG_VERBOSE;
    }

    ExitCode run() {
        for (const std::string& name : mOptions.files) {
            inspectAll(name);
        }
        if (mOptions.json) {
            mSession.output.write(toDocument({{"schema_version", kSchemaVersion},
                                              {"files", mFiles},
                                              {"errors", mReport.errorsJson()},
                                              {"warnings", mReport.warningsJson()}}));
        }
        return std::max(mWorst, mReport.worst());
    }

  private:
    /** A file, or those of a folder. */
    void inspectAll(const std::string& name) {
        Report report(mSession.console, name);
        std::vector<std::string> paths;
        report.guard([&] {
            NamedFiles found = filesOf(name);
            paths = std::move(found.paths);
            for (const std::string& failure : found.failures) {
                report.error(ExitCode::kFile, failure);
            }
        });
        if (report.worst() != ExitCode::kDone) {
            mWorst = std::max(mWorst, report.worst());
            show(name, std::nullopt, report);
        }
        for (const std::string& path : paths) {
            if (mReport.worst() == ExitCode::kDone) {
                inspect(path);
            }
        }
    }

    void inspect(const std::string& path) {
        Report report(mSession.console, path);
        InfoRecords records(mSession, report, mReport);
        report.guard([&] {
            runShown({path, describeJob()}, mWithLines, mSession.console, visitedBy(records));
        });
        records.lookInto(path);
        mWorst = std::max(mWorst, report.worst());
        if (mReport.worst() == ExitCode::kDone) {
            show(path, records.info(), report);
        }
    }

    void show(const std::string& path, const std::optional<FileInfo>& info, const Report& report) {
        if (mOptions.json) {
            mFiles.push_back(toJson(path, info, report));
        } else if (info) {
            mSession.output.write(mAnyText ? "\n" : "");
            mSession.output.write(toText(path, *info, mStyle));
            mAnyText = true;
        }
    }

    const InfoOptions& mOptions;
    Session& mSession;
    /** For failures that concern all files: the others need not be tried. */
    Report mReport;
    const Style mStyle;
    GlobalOptions mWithLines = mSession.options;
    ExitCode mWorst = ExitCode::kDone;
    ordered_json mFiles = ordered_json::array();
    bool mAnyText = false;
};

}  // namespace

ExitCode runInfo(const InfoOptions& options, Session& session) {
    return InfoRun(options, session).run();
}

}  // namespace ogmprobe
