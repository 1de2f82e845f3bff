// SPDX-License-Identifier: Apache-2.0
#include "jobs/MediaFile.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <utility>

namespace ogmprobe {
namespace {

std::vector<size_t> sortedSelection(const std::vector<size_t>& selection, size_t trackCount) {
    std::set<size_t> indices(selection.begin(), selection.end());
    if (indices.empty()) {
        for (size_t i = 0; i < trackCount; ++i) {
            indices.insert(i);
        }
    } else if (*indices.rbegin() >= trackCount) {
        throw ProbeError(ExitCode::kUsage, fmt::format("there is no track {}: the file has {}",
                                                       *indices.rbegin(), trackCount));
    }
    return {indices.begin(), indices.end()};
}

std::unique_ptr<Track> makeTrack(const Extractor& extractor, size_t index) {
    std::unique_ptr<Track> track = extractor.track(index);
    if (track == nullptr) {
        throw ProbeError(ExitCode::kFile, fmt::format("track {} cannot be opened", index));
    }
    return track;
}

void start(Track& track) {
    const media_status_t status = track.start();
    if (status != AMEDIA_OK) {
        throw ProbeError(ExitCode::kFile, fmt::format("track {} does not start: {}", track.index(),
                                                      statusText(status)));
    }
}

// The players start the audio before the video.
void startInPlayersOrder(const std::vector<std::unique_ptr<Track>>& tracks,
                         const std::vector<TrackKind>& kinds) {
    for (const TrackKind kind : {TrackKind::kAudio, TrackKind::kVideo, TrackKind::kOther}) {
        for (size_t i = 0; i < tracks.size(); ++i) {
            if (kinds[i] == kind) {
                start(*tracks[i]);
            }
        }
    }
}

// Why a read returned no usable packet; nothing at the end of the stream.
std::optional<std::string> failureOf(const Track::ReadResult& result) {
    if (result.withoutTime) {
        return "a buffer has no time";
    }
    switch (result.status) {
        case AMEDIA_OK:
            return "a read returned no buffer";
        case AMEDIA_ERROR_END_OF_STREAM:
            return std::nullopt;
        default:
            return statusText(result.status);
    }
}

}  // namespace

MediaFile::MediaFile(const PluginLibrary& library, FileSource& source)
    : mLibrary(library), mSource(source) {
    try {
        mExtractor = library.open(mSource.table());
    } catch (const ProbeError&) {
        // A file that cannot be read looks like one of another kind to the plug-in.
        requireReadable();
        throw;
    }
}

FileOpened MediaFile::facts() const {
    const Format& format = mExtractor->format();
    return {mLibrary.name(),
            format.string(AMEDIAFORMAT_KEY_MIME).value_or(""),
            format.int64(AMEDIAFORMAT_KEY_DURATION),
            mExtractor->trackCount(),
            mSource.size(),
            format.entries()};
}

void MediaFile::requireReadable() const {
    if (mSource.error() != 0) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot read: {}", std::strerror(mSource.error())));
    }
}

TrackStream::TrackStream(std::unique_ptr<Track> track, const FileSource& source)
    : mTrack(std::move(track)), mSource(source) {}

std::optional<Packet> TrackStream::read(const std::optional<SeekRequest>& seek) {
    Track::ReadResult result = mTrack->read(seek);
    mEnd.reset();
    if (!result.packet || result.withoutTime) {
        mEnd = TrackEnded{mTrack->index(), failureOf(result)};
        return std::nullopt;
    }
    result.packet->readUpTo = mSource.readUpTo();
    return std::move(result.packet);
}

PlayedTracks::PlayedTracks(const MediaFile& file, const std::vector<size_t>& selection,
                           const RecordSink& sink) {
    const Extractor& extractor = file.extractor();
    std::vector<std::unique_ptr<Track>> tracks;
    std::vector<TrackKind> kinds;
    for (const size_t index : sortedSelection(selection, extractor.trackCount())) {
        tracks.push_back(makeTrack(extractor, index));
        kinds.push_back(describeTrack(index, extractor.trackFormat(index)).kind);
    }
    startInPlayersOrder(tracks, kinds);
    std::optional<size_t> firstVideo;
    for (auto& track : tracks) {
        // A decoder is configured with the started track's own format.
        TrackDescription description = describeTrack(track->index(), track->format());
        if (description.kind == TrackKind::kVideo && !firstVideo) {
            firstVideo = mStreams.size();
        }
        sink(TrackStarted{std::move(description)});
        mStreams.push_back(std::make_unique<TrackStream>(std::move(track), file.source()));
    }
    mLead = firstVideo.value_or(0);
    sink(PlaybackReady{mStreams.size()});
}

TimeOrderedReader PlayedTracks::reader() const {
    std::vector<PacketStream*> streams;
    for (const auto& stream : mStreams) {
        streams.push_back(stream.get());
    }
    return {streams, mLead};
}

void PlayedTracks::keepEntries() const {
    for (const auto& stream : mStreams) {
        stream->keepEntries();
    }
}

void PlayedTracks::reportEnds(const RecordSink& sink) const {
    for (const auto& stream : mStreams) {
        if (auto end = stream->takeEnd()) {
            sink(*std::move(end));
        }
    }
}

}  // namespace ogmprobe
