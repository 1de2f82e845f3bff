// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Commands.h"
#include "CommentHeader.h"
#include "Death.h"
#include "MediaFile.h"
#include "NewFile.h"
#include "ProgressBar.h"
#include "Report.h"
#include "StreamWriter.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

/** One track on its way into its file. */
class Extraction {
  public:
    Extraction(const TrackStream& stream, const fs::path& path)
        : mStream(stream), mFile(path), mWriter(makeStreamWriter(stream.description(), mFile)) {}

    void write(const Packet& packet) {
        // No part of the coded stream: players would take it for damage.
        const bool atStart = mBuffers == 0;
        ++mBuffers;
        if (atStart && isCommentHeader(packet.bytes)) {
            mHasComments = true;
            return;
        }
        mWriter->write(packet);
    }

    /** Gives the file its name, unless the track could not be read to its end. */
    void finish(Report& report, Output& output) {
        mWriter->finish();
        if (mStream.failed()) {
            report.warning(fmt::format("what could be read of track {} is in {}",
                                       mStream.description().index, mFile.partPath().string()));
            return;
        }
        mFile.commit();
        const TrackDescription& track = mStream.description();
        output.write(fmt::format("track {}: {}, {} buffers{}, {} bytes: {}\n", track.index,
                                 track.codec.name, mBuffers,
                                 mHasComments ? " (comment header left out)" : "", mFile.size(),
                                 mFile.path().string()));
    }

  private:
    const TrackStream& mStream;
    NewFile mFile;
    std::unique_ptr<StreamWriter> mWriter;
    uint64_t mBuffers = 0;
    bool mHasComments = false;
};

std::vector<fs::path> outputPaths(const ExtractOptions& options, const PlayedTracks& tracks) {
    const std::string stem = fs::path(options.file).stem().string();
    std::vector<fs::path> paths;
    for (const auto& stream : tracks.streams()) {
        const TrackDescription& track = stream->description();
        paths.push_back(fs::path(options.folder) /
                        fmt::format("{}.track{}{}", stem, track.index, track.codec.suffix));
    }
    return paths;
}

// Before anything is read: nobody wants to hear it after an hour.
void requireFree(const std::vector<fs::path>& paths) {
    for (const fs::path& path : paths) {
        std::error_code ignored;
        if (fs::exists(path, ignored)) {
            throw ProbeError(ExitCode::kFile,
                             fmt::format("{} exists; --force overwrites it", path.string()));
        }
    }
}

void makeFolder(const fs::path& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot make the folder {}: {}",
                                                      folder.string(), error.message()));
    }
}

void copyBuffers(const MediaFile& file, const PlayedTracks& tracks, Console& console,
                 std::vector<std::unique_ptr<Extraction>>& extractions) {
    ProgressBar progress(console);
    TimeOrderedReader reader = tracks.reader();
    while (const auto packet = reader.next()) {
        extractions[packet->stream]->write(packet->packet);
        progress.update(file.source().position());
    }
}

void extractFile(const ExtractOptions& options, Session& session, Report& report) {
    const PluginLibrary library = loadPlugin(session.options);
    const MediaFile file(library, options.file);
    const PlayedTracks tracks(file, options.tracks, report);
    if (tracks.streams().empty()) {
        report.warning("the file has no tracks that can be played");
        return;
    }
    const std::vector<fs::path> paths = outputPaths(options, tracks);
    if (!options.force) {
        requireFree(paths);
    }
    makeFolder(options.folder);
    std::vector<std::unique_ptr<Extraction>> extractions;
    for (size_t i = 0; i < paths.size(); ++i) {
        extractions.push_back(std::make_unique<Extraction>(*tracks.streams()[i], paths[i]));
    }
    copyBuffers(file, tracks, session.console, extractions);
    for (const auto& extraction : extractions) {
        extraction->finish(report, session.output);
    }
    file.requireReadable();
}

}  // namespace

ExitCode runExtract(const ExtractOptions& options, Session& session) {
    death::nameSubject(options.file);
    Report report(session.console, options.file);
    report.guard([&] { extractFile(options, session, report); });
    return report.worst();
}

}  // namespace ogmprobe
