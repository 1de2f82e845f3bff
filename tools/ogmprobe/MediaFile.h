// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Extractor.h"
#include "FileSource.h"
#include "PluginLibrary.h"
#include "Report.h"
#include "TimeOrderedReader.h"
#include "TrackDescription.h"

namespace ogmprobe {

/** A file that a plug-in has opened. */
class MediaFile {
  public:
    /**
     * Throws `ProbeError`: the file cannot be opened or read, or the plug-in does not take it. The
     * library must outlive this object.
     */
    MediaFile(const PluginLibrary& library, const std::string& path);

    const FileSource& source() const { return mSource; }
    const Extractor& extractor() const { return *mExtractor; }

    std::vector<TrackDescription> describeTracks() const;

    /** Throws `ProbeError` when the file itself could not be read at some time. */
    void requireReadable() const;

  private:
    // The extractor reads from its source until it is freed.
    FileSource mSource;
    std::unique_ptr<Extractor> mExtractor;
};

/** A started track as a stream of packets; failures go to the report and end the stream. */
class TrackStream : public PacketStream {
  public:
    TrackStream(std::unique_ptr<Track> track, TrackDescription description, Report& report);

    const TrackDescription& description() const { return mDescription; }
    /** Whether a read has failed; the end of the track is no failure. */
    bool failed() const { return mFailed; }

    std::optional<Packet> read(const std::optional<SeekRequest>& seek) override;

  private:
    void fail(const std::string& reason);

    std::unique_ptr<Track> mTrack;
    TrackDescription mDescription;
    Report& mReport;
    bool mFailed = false;
};

/** Tracks of one file, ready to be read side by side. */
class PlayedTracks {
  public:
    /**
     * Makes and starts tracks in the players' order; an empty selection means all. Throws
     * `ProbeError`: `kUsage` for a track that the file does not have, `kFile` when one does not
     * start. File and report must outlive this object.
     */
    PlayedTracks(const MediaFile& file, const std::vector<size_t>& selection, Report& report);

    const std::vector<std::unique_ptr<TrackStream>>& streams() const { return mStreams; }
    /** The first video track, else the first track: the one that a seek moves first. */
    size_t lead() const { return mLead; }
    TimeOrderedReader reader() const;

  private:
    std::vector<std::unique_ptr<TrackStream>> mStreams;
    size_t mLead = 0;
};

}  // namespace ogmprobe
