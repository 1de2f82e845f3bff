// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "files/InputFiles.h"
#include "text/Hex.h"
#include "text/Json.h"
#include "text/NumberText.h"
#include "text/TextTable.h"
#include "text/TimeText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** What is shown of a file. */
struct FileInfo {
    FileOpened file;
    /** Fewer than the file has, if its extractor died. */
    std::vector<TrackDescription> tracks;
};

/** Gathers what the records of one file tell. */
class InfoRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    InfoRecords(Session& session, Report& report, Report& reportOfRun)
        : CommandRecords(session, report), mReportOfRun(reportOfRun) {}

    void operator()(const FileOpened& file) {
        mInfo = FileInfo{file, {}};
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

    const std::optional<FileInfo>& info() const { return mInfo; }

  private:
    Report& mReportOfRun;
    std::optional<FileInfo> mInfo;
};

ordered_json toJson(const std::string& path, const std::optional<FileInfo>& info,
                    const Report& report) {
    ordered_json container = nullptr;
    ordered_json extractor = nullptr;
    auto tracks = ordered_json::array();
    if (info) {
        extractor = info->file.extractor;
        container = {{"mime", info->file.mime},
                     {"size_bytes", info->file.sizeBytes},
                     {"duration_us", orNull(info->file.durationUs)}};
        for (const TrackDescription& track : info->tracks) {
            tracks.push_back(toJson(track));
        }
    }
    return {{"path", path},
            {"exit_code", static_cast<int>(report.worst())},
            {"extractor", extractor},
            {"container", container},
            {"tracks", tracks},
            {"errors", report.errorsJson()},
            {"warnings", report.warningsJson()}};
}

std::string trackTable(const std::vector<TrackDescription>& tracks, bool color) {
    TextTable table({{"Track", TextTable::Align::kRight},
                     {"Type"},
                     {"Codec"},
                     {"Format"},
                     {"Duration", TextTable::Align::kRight},
                     {"MIME type"}});
    for (const TrackDescription& track : tracks) {
        table.add({fmt::format("{}", track.index), kindName(track.kind), track.codec.name,
                   formatText(track), durationText(track.durationUs), track.mime});
    }
    return table.text("  ", color);
}

std::string esdsText(const TrackDescription& track) {
    std::string text = fmt::format("  Track {} ESDS, {} bytes: {}\n", track.index,
                                   track.esds->size(), hexText(*track.esds, " "));
    for (const std::string& line : esdsLines(*track.esds)) {
        text += fmt::format("    {}\n", line);
    }
    return text;
}

std::string toText(const std::string& path, const FileInfo& info, bool color) {
    const FileOpened& file = info.file;
    std::string text =
            fmt::format("{}: {}, {}, duration {}, {}\n", emphasised(path, color), file.mime,
                        sizeText(file.sizeBytes), durationText(file.durationUs),
                        counted(file.trackCount, "track"));
    if (!info.tracks.empty()) {
        text += trackTable(info.tracks, color);
    }
    for (const TrackDescription& track : info.tracks) {
        if (track.esds) {
            text += esdsText(track);
        }
    }
    return text;
}

/** Gathers the results of all files: text as it comes, JSON at the end. */
class InfoRun {
  public:
    InfoRun(const InfoOptions& options, Session& session)
        : mOptions(options),
          mSession(session),
          mReport(session.console, ""),
          mColor(wantsColor(session.options.color, STDOUT_FILENO)) {}

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
        report.guard([&] { paths = filesOf(name); });
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
        runReported({path, describeJob()}, mSession, report, records);
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
            mSession.output.write(toText(path, *info, mColor));
            mAnyText = true;
        }
    }

    const InfoOptions& mOptions;
    Session& mSession;
    /** About what concerns all files, so that there is no use in going on. */
    Report mReport;
    const bool mColor;
    ExitCode mWorst = ExitCode::kDone;
    ordered_json mFiles = ordered_json::array();
    bool mAnyText = false;
};

}  // namespace

ExitCode runInfo(const InfoOptions& options, Session& session) {
    return InfoRun(options, session).run();
}

}  // namespace ogmprobe
