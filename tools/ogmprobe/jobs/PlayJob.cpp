// SPDX-License-Identifier: Apache-2.0
#include <utility>

#include "jobs/Job.h"
#include "jobs/MediaFile.h"

namespace ogmprobe {
namespace {

void playOn(TimeOrderedReader& reader, const PlayedTracks& tracks,
            const std::optional<uint64_t>& limit, const RecordSink& sink) {
    const auto& streams = tracks.streams();
    std::vector<uint64_t> counts(streams.size(), 0);
    while (auto ordered = reader.next()) {
        const size_t stream = ordered->stream;
        sink(PacketPlayed{streams[stream]->index(), std::move(ordered->packet),
                          ordered->untilNextUs});
        tracks.reportEnds(sink);
        if (++counts[stream] == limit) {
            reader.drop(stream);
        }
    }
    tracks.reportEnds(sink);
}

void play(const JobContext& context, const PlayRequest& request) {
    const RecordSink& sink = context.sink;
    const MediaFile file(context.library, context.source);
    sink(file.facts());
    const PlayedTracks tracks(file, request.tracks, sink);
    if (tracks.streams().empty()) {
        return;
    }
    if (request.keepEntries) {
        tracks.keepEntries();
    }
    TimeOrderedReader reader = tracks.reader();
    if (request.seeksUs.empty()) {
        playOn(reader, tracks, request.count, sink);
    }
    for (const int64_t targetUs : request.seeksUs) {
        sink(SeekBegun{targetUs});
        reader.seek(targetUs);
        playOn(reader, tracks, request.count, sink);
    }
    file.requireReadable();
}

void describe(const JobContext& context) {
    const MediaFile file(context.library, context.source);
    context.sink(file.facts());
    const Extractor& extractor = file.extractor();
    for (size_t i = 0; i < extractor.trackCount(); ++i) {
        context.sink(TrackListed{describeTrack(i, extractor.trackFormat(i))});
    }
    file.requireReadable();
}

}  // namespace

Job describeJob() {
    return describe;
}

Job playJob(PlayRequest request) {
    return [request = std::move(request)](const JobContext& context) { play(context, request); };
}

}  // namespace ogmprobe
