// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "codecs/CommentHeader.h"
#include "commands/CommandRecords.h"
#include "commands/Commands.h"
#include "commands/StreamWriter.h"
#include "files/InputFiles.h"
#include "files/NewFile.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

/** What names standard output where a folder is asked for. */
constexpr const char* kStandardOutput = "-";

/** One track on its way into its file. */
class Extraction {
  public:
    Extraction(const TrackDescription& track, std::unique_ptr<NewFile> file)
        : mTrack(track), mFile(std::move(file)), mWriter(makeStreamWriter(track, *mFile)) {}

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
            mFile->keepPart();
            report.warning(fmt::format("what could be read of track {} is in {}", mTrack.index,
                                       mFile->partPath().string()));
            return;
        }
        mFile->commit();
        if (mFile->path().empty()) {
            return;
        }
        const bool isBare = mTrack.codec.packaging == Packaging::kBare;
        output.write(fmt::format("track {}: {}{}, {} buffers{}, {} bytes: {}\n", mTrack.index,
                                 mTrack.codec.name,
                                 isBare ? " (bare packets: no file format for it)" : "", mBuffers,
                                 mHasComments ? " (comment header left out)" : "", mFile->size(),
                                 visible(mFile->path().string())));
    }

  private:
    const TrackDescription mTrack;
    std::unique_ptr<NewFile> mFile;
    std::unique_ptr<StreamWriter> mWriter;
    uint64_t mBuffers = 0;
    bool mHasComments = false;
    bool mWhole = false;
};

fs::path outputPath(const ExtractOptions& options, const TrackDescription& track) {
    const std::string stem =
            options.file == kStandardInput ? "stdin" : fs::path(options.file).stem().string();
    return fs::path(options.folder) /
           fmt::format("{}.track{}{}", stem, track.index, track.codec.suffix);
}

void makeFolder(const fs::path& folder) {
    std::error_code error;
    if (fs::exists(folder, error) && !fs::is_directory(folder, error)) {
        throw ProbeError(ExitCode::kFile, fmt::format("cannot make the folder {}: a file has that "
                                                      "name",
                                                      folder.string()));
    }
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
        : CommandRecords(session, report), mOptions(options) {}

    void operator()(const FileOpened& file) { requireTracks(mOptions.tracks, file); }
    void operator()(const TrackStarted& started) {
        if (mOptions.tracks.shows(started.track.index)) {
            mTracks.push_back(started.track);
        }
    }
    void operator()(const PlaybackReady&) { createFiles(); }

    void operator()(const PacketPlayed& packet) {
        const auto extraction = mExtractions.find(packet.track);
        if (extraction != mExtractions.end()) {
            extraction->second->write(packet.packet);
        }
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
            report().guard([&, &file = *extraction] { file.finish(report(), session().output); });
        }
    }

  private:
    void createFiles() {
        if (mTracks.empty()) {
            report().warning(kNoTracks);
            return;
        }
        if (mOptions.folder == kStandardOutput) {
            writeToStandardOutput();
            return;
        }
        makeFolder(mOptions.folder);
        const Existing existing = mOptions.force ? Existing::kOverwrite : Existing::kRefuse;
        // Before anything is read: nobody wants to hear of a name that is taken after an hour.
        for (const TrackDescription& track : mTracks) {
            mExtractions[track.index] = std::make_unique<Extraction>(
                    track, std::make_unique<NewFile>(outputPath(mOptions, track), existing));
        }
    }

    void writeToStandardOutput() {
        if (mTracks.size() != 1) {
            throw ProbeError(ExitCode::kUsage,
                             fmt::format("standard output takes one track, and there are {}: "
                                         "choose one with --track",
                                         mTracks.size()));
        }
        mExtractions[mTracks.front().index] =
                std::make_unique<Extraction>(mTracks.front(), NewFile::onStandardOutput());
    }

    const ExtractOptions& mOptions;
    std::vector<TrackDescription> mTracks;
    std::map<uint64_t, std::unique_ptr<Extraction>> mExtractions;
};

}  // namespace

ExitCode runExtract(const ExtractOptions& options, Session& session) {
    Report report(session.console, options.file);
    ExtractRecords records(options, session, report);
    report.guard([&] {
        warnOfOnlyTracks(options.tracks, report);
        PlayRequest request;
        request.tracks = options.tracks.played;
        runShown({options.file, playJob(std::move(request))}, session.options, session.console,
                 visitedBy(records));
        records.finish();
    });
    return report.worst();
}

}  // namespace ogmprobe
