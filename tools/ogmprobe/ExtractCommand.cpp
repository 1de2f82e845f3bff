// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "CommandRecords.h"
#include "Commands.h"
#include "CommentHeader.h"
#include "NewFile.h"
#include "ProgressBar.h"
#include "StreamWriter.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

/** One track on its way into its file. */
class Extraction {
  public:
    Extraction(const TrackDescription& track, const fs::path& path)
        : mTrack(track), mFile(path), mWriter(makeStreamWriter(track, mFile)) {}

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

    /** The track has been read to its end. */
    void isWhole() { mWhole = true; }

    /** Gives the file its name, unless the track could not be read to its end. */
    void finish(Report& report, Output& output) {
        mWriter->finish();
        if (!mWhole) {
            report.warning(fmt::format("what could be read of track {} is in {}", mTrack.index,
                                       mFile.partPath().string()));
            return;
        }
        mFile.commit();
        output.write(fmt::format("track {}: {}, {} buffers{}, {} bytes: {}\n", mTrack.index,
                                 mTrack.codec.name, mBuffers,
                                 mHasComments ? " (comment header left out)" : "", mFile.size(),
                                 mFile.path().string()));
    }

  private:
    const TrackDescription mTrack;
    NewFile mFile;
    std::unique_ptr<StreamWriter> mWriter;
    uint64_t mBuffers = 0;
    bool mHasComments = false;
    bool mWhole = false;
};

fs::path outputPath(const ExtractOptions& options, const TrackDescription& track) {
    return fs::path(options.folder) / fmt::format("{}.track{}{}",
                                                  fs::path(options.file).stem().string(),
                                                  track.index, track.codec.suffix);
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

/** Writes the packets of all tracks while they come. */
class ExtractRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    ExtractRecords(const ExtractOptions& options, Session& session, Report& report)
        : CommandRecords(session, report), mOptions(options), mProgress(session.console) {}

    void operator()(const FileOpened& file) { mFileSize = file.sizeBytes; }
    void operator()(const TrackStarted& started) { mTracks.push_back(started.track); }
    void operator()(const PlaybackReady&) { createFiles(); }

    void operator()(const PacketPlayed& packet) {
        const auto extraction = mExtractions.find(packet.track);
        if (extraction != mExtractions.end()) {
            extraction->second->write(packet.packet);
        }
        mProgress.update(static_cast<double>(packet.packet.readUpTo) /
                         static_cast<double>(mFileSize));
    }
    void operator()(const TrackEnded& end) {
        CommandRecords::operator()(end);
        const auto extraction = mExtractions.find(end.track);
        if (extraction != mExtractions.end() && !end.failure) {
            extraction->second->isWhole();
        }
    }

    /** Gives the files their names. */
    void finish() {
        for (const auto& [index, extraction] : mExtractions) {
            extraction->finish(report(), session().output);
        }
    }

  private:
    void createFiles() {
        if (mTracks.empty()) {
            report().warning(kNoTracks);
            return;
        }
        std::vector<fs::path> paths;
        for (const TrackDescription& track : mTracks) {
            paths.push_back(outputPath(mOptions, track));
        }
        if (!mOptions.force) {
            requireFree(paths);
        }
        makeFolder(mOptions.folder);
        for (size_t i = 0; i < paths.size(); ++i) {
            mExtractions[mTracks[i].index] = std::make_unique<Extraction>(mTracks[i], paths[i]);
        }
    }

    const ExtractOptions& mOptions;
    ProgressBar mProgress;
    uint64_t mFileSize = 0;
    std::vector<TrackDescription> mTracks;
    std::map<uint64_t, std::unique_ptr<Extraction>> mExtractions;
};

}  // namespace

ExitCode runExtract(const ExtractOptions& options, Session& session) {
    Report report(session.console, options.file);
    ExtractRecords records(options, session, report);
    runReported({options.file, playJob({options.tracks, {}, {}})}, session, report, records);
    report.guard([&records] { records.finish(); });
    return report.worst();
}

}  // namespace ogmprobe
