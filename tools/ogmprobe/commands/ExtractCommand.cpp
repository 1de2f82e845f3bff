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
#include "files/NewFile.h"
#include "files/OutputFolder.h"
#include "text/VisibleText.h"

namespace ogmprobe {
namespace {

namespace fs = std::filesystem;

/** Means standard output where a folder is expected. */
constexpr const char* kStandardOutput = "-";

/** Writes a track into its file. */
class Extraction {
  public:
    Extraction(const TrackDescription& track, std::unique_ptr<NewFile> file)
        : mTrack(track), mFile(std::move(file)), mWriter(makeStreamWriter(track, *mFile)) {}

    void write(const Packet& packet) {
        // Not a part of the coded stream: players would treat it as damage.
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

    /** Gives the file its final name, unless the track could not be read to its end. */
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

/** Writes the packets of all tracks as they arrive. */
class ExtractRecords : public CommandRecords {
  public:
    using CommandRecords::operator();

    /** File names begin with the stem. */
    ExtractRecords(const ExtractOptions& options, std::string stem, Session& session,
                   Report& report)
        : CommandRecords(session, report), mOptions(options), mStem(std::move(stem)) {}

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

    /** Gives the files their final names. */
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
        // Before anything is read: an existing file should be reported at once, not after an hour.
        for (const TrackDescription& track : mTracks) {
            mExtractions[track.index] = std::make_unique<Extraction>(
                    track, std::make_unique<NewFile>(pathOf(track), existing));
        }
    }

    fs::path pathOf(const TrackDescription& track) const {
        return fs::path(mOptions.folder) /
               fmt::format("{}.track{}{}", mStem, track.index, track.codec.suffix);
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
    const std::string mStem;
    std::vector<TrackDescription> mTracks;
    std::map<uint64_t, std::unique_ptr<Extraction>> mExtractions;
};

ExitCode extract(const std::string& file, const ExtractOptions& options, OutputStems& stems,
                 Session& session) {
    Report report(session.console, file);
    report.guard([&] {
        ExtractRecords records(options, stems.take(file), session, report);
        warnOfOnlyTracks(options.tracks, report);
        PlayRequest request;
        request.tracks = options.tracks.played;
        runShown({file, playJob(std::move(request))}, session.options, session.console,
                 visitedBy(records));
        records.finish();
    });
    return report.worst();
}

}  // namespace

ExitCode runExtract(const ExtractOptions& options, Session& session) {
    OutputStems stems;
    return forEachFile(options.files, session, [&](const std::string& file, bool isOneOfMany) {
        if (isOneOfMany && options.folder == kStandardOutput) {
            throw ProbeError(ExitCode::kUsage, "standard output takes one track of one file");
        }
        return extract(file, options, stems, session);
    });
}

}  // namespace ogmprobe
