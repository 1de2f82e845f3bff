// SPDX-License-Identifier: Apache-2.0
#include <unistd.h>

#include <optional>
#include <string>

#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "explain/TracedPlay.h"
#include "sync/SyncText.h"
#include "text/Json.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

using nlohmann::ordered_json;

constexpr const char* kNotOgg = "the file has no Ogg pages to compare the times with";

/** A played file and the times of its pages; nothing if the file cannot be read. */
class SyncedFile {
  public:
    SyncedFile(const std::string& path, Session& session) : mReport(session.console, path) {
        mReport.guard([&] { mFile.emplace(path); });
        if (!mFile) {
            return;
        }
        PluginTrace trace(*mFile, false);
        mReport.guard([&] { playTraced(path, session, mReport, trace); });
        if (!trace.opened()) {
            return;
        }
        if (mFile->pages().empty()) {
            mReport.warning(kNotOgg);
        } else if (trace.tracks().empty()) {
            mReport.warning(kNoTracks);
        }
        mReport.guard(
                [&] { mSync.emplace(fileSyncOf(*mFile, trace, accountsOf(path, *mFile, trace))); });
    }

    const Report& report() const { return mReport; }
    const std::optional<FileSync>& sync() const { return mSync; }

  private:
    Report mReport;
    std::optional<OggFile> mFile;
    std::optional<FileSync> mSync;
};

ordered_json syncDocument(const std::string& path, const std::optional<FileSync>& sync,
                          const Report& report) {
    return {{"schema_version", kSchemaVersion},
            {"path", path},
            {"exit_code", static_cast<int>(report.worst())},
            {"summary", sync ? ordered_json(worstSentence(*sync)) : ordered_json(nullptr)},
            {"tracks", sync ? tracksJson(*sync) : ordered_json::array()},
            {"pairs", sync ? pairsJson(*sync) : ordered_json::array()},
            {"errors", report.errorsJson()},
            {"warnings", report.warningsJson()}};
}

std::string textOf(const std::string& path, bool isOneOfMany, const SyncOptions& options,
                   const FileSync& sync, const Session& session) {
    const bool color = wantsColor(session.options.color, STDOUT_FILENO);
    if (isOneOfMany && !options.packets) {
        return visible(path) + ": " + worstSentence(sync) + "\n";
    }
    return (isOneOfMany ? "# " + visible(path) + "\n" : "") +
           (options.packets ? packetsText(sync, color) + "\n" : "") + syncText(sync, color);
}

ExitCode syncFile(const std::string& path, bool isOneOfMany, const SyncOptions& options,
                  Session& session) {
    const SyncedFile synced(path, session);
    const auto& sync = synced.sync();
    if (options.json) {
        session.output.write(toDocument(syncDocument(path, sync, synced.report())));
    } else if (sync && options.csv) {
        session.output.write(syncCsvLines(path, *sync));
    } else if (sync) {
        session.output.write(textOf(path, isOneOfMany, options, *sync, session));
    }
    return synced.report().worst();
}

}  // namespace

ExitCode runSync(const SyncOptions& options, Session& session) {
    if (options.csv) {
        session.output.write(kSyncCsvHeading);
    }
    return forEachFile(
            options.files, session,
            [&](const std::string& path, bool isOneOfMany) {
                return syncFile(path, isOneOfMany, options, session);
            },
            [&](const std::string& name, const Report& report) {
                if (options.json) {
                    session.output.write(toDocument(syncDocument(name, std::nullopt, report)));
                }
            });
}

}  // namespace ogmprobe
