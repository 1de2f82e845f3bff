// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "jobs/Job.h"
#include "jobs/MediaFile.h"
#include "text/TimeArithmetic.h"

namespace ogmprobe {
namespace {

// Plays the whole file in a separate extractor, so that the tested one stays unused.
int64_t measuredDurationUs(const JobContext& context) {
    const RecordSink nowhere = [](const Record&) {};
    const MediaFile file(context.library, context.source);
    const PlayedTracks tracks(file, {}, nowhere);
    TimeOrderedReader reader = tracks.reader();
    int64_t lastUs = 0;
    while (const auto packet = reader.next()) {
        lastUs = std::max(lastUs, packet->packet.timeUs);
        context.sink(Progress{packet->packet.readUpTo});
    }
    tracks.reportEnds(context.sink);
    return lastUs;
}

Landing landingOf(const PlayedTracks& tracks, const TimeOrderedReader& reader, size_t stream) {
    Landing landing;
    landing.track = tracks.streams()[stream]->index();
    if (const Packet* packet = reader.pending(stream)) {
        landing.timeUs = packet->timeUs;
        landing.isSync = packet->isSync;
    }
    return landing;
}

SeekLanded seekTo(int64_t targetUs, const FileSource& source, const PlayedTracks& tracks,
                  TimeOrderedReader& reader) {
    const uint64_t readsBefore = source.reads();
    const uint64_t bytesBefore = source.bytesRead();
    reader.seek(targetUs);
    SeekLanded result;
    result.targetUs = targetUs;
    result.reads = source.reads() - readsBefore;
    result.bytes = source.bytesRead() - bytesBefore;
    result.landings.push_back(landingOf(tracks, reader, tracks.lead()));
    for (size_t i = 0; i < tracks.streams().size(); ++i) {
        if (i != tracks.lead()) {
            result.landings.push_back(landingOf(tracks, reader, i));
        }
    }
    return result;
}

void seekThrough(const JobContext& context, uint32_t steps) {
    const MediaFile file(context.library, context.source);
    const FileOpened facts = file.facts();
    context.sink(facts);
    const PlayedTracks tracks(file, {}, context.sink);
    if (tracks.streams().empty()) {
        return;
    }
    SeekRange range;
    range.lastTargetUs = facts.durationUs.value_or(0);
    range.durationKnown = range.lastTargetUs > 0;
    if (!range.durationKnown) {
        range.lastTargetUs = measuredDurationUs(context);
    }
    context.sink(range);
    TimeOrderedReader reader = tracks.reader();
    for (uint32_t step = 0; step <= steps; ++step) {
        const int64_t targetUs = partOfTimeUs(range.lastTargetUs, step, steps);
        context.sink(seekTo(targetUs, context.source, tracks, reader));
        tracks.reportEnds(context.sink);
    }
    file.requireReadable();
}

}  // namespace

Job seekTestJob(uint32_t steps) {
    return [steps](const JobContext& context) { seekThrough(context, steps); };
}

}  // namespace ogmprobe
