// SPDX-License-Identifier: Apache-2.0
#include "MediaFile.h"

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
                         const std::vector<TrackDescription>& descriptions) {
    for (const TrackKind kind : {TrackKind::kAudio, TrackKind::kVideo, TrackKind::kOther}) {
        for (size_t i = 0; i < tracks.size(); ++i) {
            if (descriptions[i].kind == kind) {
                start(*tracks[i]);
            }
        }
    }
}

}  // namespace

MediaFile::MediaFile(const PluginLibrary& library, const std::string& path) : mSource(path) {
    try {
        mExtractor = library.open(mSource.table());
    } catch (const ProbeError&) {
        // A file that cannot be read looks like one of another kind to the plug-in.
        requireReadable();
        throw;
    }
}

std::vector<TrackDescription> MediaFile::describeTracks() const {
    std::vector<TrackDescription> tracks;
    for (size_t i = 0; i < mExtractor->trackCount(); ++i) {
        tracks.push_back(describeTrack(i, mExtractor->trackFormat(i)));
    }
    return tracks;
}

void MediaFile::requireReadable() const {
    if (mSource.error() != 0) {
        throw ProbeError(ExitCode::kFile,
                         fmt::format("cannot read: {}", std::strerror(mSource.error())));
    }
}

TrackStream::TrackStream(std::unique_ptr<Track> track, TrackDescription description, Report& report)
    : mTrack(std::move(track)), mDescription(std::move(description)), mReport(report) {}

std::optional<Packet> TrackStream::read(const std::optional<SeekRequest>& seek) {
    Track::ReadResult result = mTrack->read(seek);
    if (result.packet && !result.withoutTime) {
        return std::move(result.packet);
    }
    if (result.withoutTime) {
        fail("a buffer bears no time");
    } else if (result.status == AMEDIA_OK) {
        fail("a read gave no buffer");
    } else if (result.status != AMEDIA_ERROR_END_OF_STREAM) {
        fail(statusText(result.status));
    }
    return std::nullopt;
}

void TrackStream::fail(const std::string& reason) {
    mFailed = true;
    mReport.error(ExitCode::kFile,
                  fmt::format("reading track {} failed: {}", mTrack->index(), reason));
}

PlayedTracks::PlayedTracks(const MediaFile& file, const std::vector<size_t>& selection,
                           Report& report) {
    const Extractor& extractor = file.extractor();
    std::vector<std::unique_ptr<Track>> tracks;
    std::vector<TrackDescription> descriptions;
    for (const size_t index : sortedSelection(selection, extractor.trackCount())) {
        tracks.push_back(makeTrack(extractor, index));
        descriptions.push_back(describeTrack(index, extractor.trackFormat(index)));
    }
    startInPlayersOrder(tracks, descriptions);
    for (auto& track : tracks) {
        // What a decoder is set up with is the started track's own format.
        TrackDescription description = describeTrack(track->index(), track->format());
        mStreams.push_back(
                std::make_unique<TrackStream>(std::move(track), std::move(description), report));
    }
    const auto isVideo = [](const auto& stream) {
        return stream->description().kind == TrackKind::kVideo;
    };
    const auto video = std::find_if(mStreams.begin(), mStreams.end(), isVideo);
    mLead = video != mStreams.end() ? static_cast<size_t>(video - mStreams.begin()) : 0;
}

TimeOrderedReader PlayedTracks::reader() const {
    std::vector<PacketStream*> streams;
    for (const auto& stream : mStreams) {
        streams.push_back(stream.get());
    }
    return {streams, mLead};
}

}  // namespace ogmprobe
