// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "jobs/TimeOrderedReader.h"
#include "plugin/Extractor.h"
#include "plugin/FileSource.h"
#include "plugin/PluginLibrary.h"
#include "plugin/TrackDescription.h"
#include "records/RecordSink.h"

namespace ogmprobe {

/** A file that a plug-in has opened. */
class MediaFile {
  public:
    /**
     * Throws `ProbeError` if the file cannot be read or the plug-in does not take it. Library and
     * source must outlive this object.
     */
    MediaFile(const PluginLibrary& library, FileSource& source);

    const FileSource& source() const { return mSource; }
    const Extractor& extractor() const { return *mExtractor; }

    FileOpened facts() const;

    /** Throws `ProbeError` if a read of the file has failed. */
    void requireReadable() const;

  private:
    const PluginLibrary& mLibrary;
    FileSource& mSource;
    std::unique_ptr<Extractor> mExtractor;
};

/** A started track as a stream of packets. */
class TrackStream : public PacketStream {
  public:
    TrackStream(std::unique_ptr<Track> track, const FileSource& source);

    size_t index() const { return mTrack->index(); }

    std::optional<Packet> read(const std::optional<SeekRequest>& seek) override;
    void keepEntries() { mTrack->keepEntries(); }

    /** Returns, once, why the last read returned no packet; nothing if it returned one. */
    std::optional<TrackEnded> takeEnd() { return std::exchange(mEnd, std::nullopt); }

  private:
    std::unique_ptr<Track> mTrack;
    const FileSource& mSource;
    std::optional<TrackEnded> mEnd;
};

/** Started tracks of a file, to be read together. */
class PlayedTracks {
  public:
    /**
     * Creates and starts tracks in the order of players, and records each. An empty selection means
     * all tracks. Throws `ProbeError`: `kUsage` for a track that the file does not have, `kFile` if
     * a track does not start. The file must outlive this object.
     */
    PlayedTracks(const MediaFile& file, const std::vector<size_t>& selection,
                 const RecordSink& sink);

    const std::vector<std::unique_ptr<TrackStream>>& streams() const { return mStreams; }
    /** Returns the first video track, else the first track: the one that a seek moves first. */
    size_t lead() const { return mLead; }
    TimeOrderedReader reader() const;
    /** Packets include the format entries of their buffers from now on. */
    void keepEntries() const;

    /** Records the tracks that have ended since the last call. */
    void reportEnds(const RecordSink& sink) const;

  private:
    std::vector<std::unique_ptr<TrackStream>> mStreams;
    size_t mLead = 0;
};

}  // namespace ogmprobe
