// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "Commands.h"
#include "Death.h"
#include "Hex.h"
#include "Json.h"
#include "MediaFile.h"
#include "Report.h"
#include "TextTable.h"
#include "TimeText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

/** What is shown of a file. */
struct FileInfo {
    std::string extractor;
    std::string mime;
    std::optional<int64_t> durationUs;
    std::vector<TrackDescription> tracks;
};

void complain(const FileInfo& info, Report& report) {
    if (info.tracks.empty()) {
        report.warning("the file has no tracks that can be played");
    }
    for (const TrackDescription& track : info.tracks) {
        for (const std::string& complaint : complaints(track)) {
            report.warning(complaint);
        }
    }
}

FileInfo inspect(const PluginLibrary& library, const std::string& path, Report& report) {
    const MediaFile file(library, path);
    FileInfo info;
    info.extractor = file.extractor().name();
    const Format& format = file.extractor().format();
    info.mime = format.string(AMEDIAFORMAT_KEY_MIME).value_or("");
    info.durationUs = format.int64(AMEDIAFORMAT_KEY_DURATION);
    info.tracks = file.describeTracks();
    complain(info, report);
    file.requireReadable();
    return info;
}

ordered_json toJson(const std::string& path, const std::optional<FileInfo>& info,
                    const Report& report) {
    ordered_json container = nullptr;
    ordered_json extractor = nullptr;
    auto tracks = ordered_json::array();
    if (info) {
        extractor = info->extractor;
        container = {{"mime", info->mime}, {"duration_us", orNull(info->durationUs)}};
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
    std::string text = fmt::format("{}: {}, duration {}, {} track{}\n", emphasised(path, color),
                                   info.mime, durationText(info.durationUs), info.tracks.size(),
                                   info.tracks.size() == 1 ? "" : "s");
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
        mReport.guard([this] {
            const PluginLibrary library = loadPlugin(mSession.options);
            for (const std::string& path : mOptions.files) {
                inspectOne(library, path);
            }
        });
        if (mOptions.json) {
            mSession.output.write(toDocument({{"schema_version", kSchemaVersion},
                                              {"files", mFiles},
                                              {"errors", mReport.errorsJson()},
                                              {"warnings", mReport.warningsJson()}}));
        }
        return std::max(mWorst, mReport.worst());
    }

  private:
    void inspectOne(const PluginLibrary& library, const std::string& path) {
        death::nameSubject(path);
        Report report(mSession.console, path);
        std::optional<FileInfo> info;
        report.guard([&] { info = inspect(library, path, report); });
        mWorst = std::max(mWorst, report.worst());
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
