// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <map>

#include "explain/Finding.h"
#include "explain/StreamTypes.h"
#include "text/NumberText.h"
#include "text/TimeText.h"

namespace ogmprobe {
namespace {

/** The number of buffers of one kind, and the first one. */
struct OddTimes {
    uint64_t count = 0;
    size_t first = 0;

    void add(size_t buffer) {
        first = count == 0 ? buffer : first;
        ++count;
    }
};

bool isReordered(const PlayedTrack& track) {
    return track.description.kind == TrackKind::kVideo;
}

/** Returns whether the plug-in moves pictures by their types. */
bool isMovedByType(const PlayedTrack& track) {
    const int64_t type = track.streamType.value_or(0);
    return type == stream_type::kMpeg4Video || type == stream_type::kMpegVideo;
}

void explainNegative(Explanation& explanation, uint64_t index, const PlayedTrack& track) {
    OddTimes odd;
    for (size_t i = 0; i < track.buffers.size(); ++i) {
        if (track.buffers[i].timeUs < 0) {
            odd.add(i);
        }
    }
    if (odd.count == 0) {
        return;
    }
    const auto least =
            std::min_element(track.buffers.begin(), track.buffers.end(),
                             [](const auto& a, const auto& b) { return a.timeUs < b.timeUs; });
    Finding finding = findingOf("negative-times", index, track.serial);
    finding.timeUs = least->timeUs;
    finding.text = fmt::format(
            "{} of track {} {} a time below 0, down to {} s, the first of them number {}{}.",
            counted(odd.count, "buffer"), index, odd.count == 1 ? "has" : "have",
            secondsText(least->timeUs), odd.first,
            isMovedByType(track)
                    ? ": B pictures are moved one picture back from the time of their page"
                    : "");
    explanation.add(std::move(finding));
}

/**
 * Counts steps back in time, except those of pictures that are only stored after a later picture:
 * these are not earlier than what was shown before that picture.
 */
OddTimes stepsBack(const PlayedTrack& track) {
    OddTimes odd;
    int64_t latest = INT64_MIN;
    int64_t before = INT64_MIN;
    for (size_t i = 0; i < track.buffers.size(); ++i) {
        const int64_t timeUs = track.buffers[i].timeUs;
        if (timeUs < (isReordered(track) ? before : latest)) {
            odd.add(i);
        }
        if (timeUs > latest) {
            before = latest;
            latest = timeUs;
        }
    }
    return odd;
}

void explainStepsBack(Explanation& explanation, uint64_t index, const PlayedTrack& track) {
    const OddTimes odd = stepsBack(track);
    if (odd.count == 0) {
        return;
    }
    Finding finding = findingOf("times-step-back", index, track.serial);
    finding.timeUs = track.buffers[odd.first].timeUs;
    finding.text = fmt::format(
            "{} of track {} {} an earlier time than a buffer before{}; the first is number {}.",
            counted(odd.count, "buffer"), index, odd.count == 1 ? "has" : "have",
            isReordered(track) ? ", by more than pictures stored out of order explain" : "",
            odd.first);
    explanation.add(std::move(finding));
}

/** Where a buffer's time comes from. */
struct TimeSource {
    uint32_t page = 0;
    /** From the stream's page before that. */
    uint64_t granule = 0;
};

/** Returns a source for each buffer; nothing for a comment, or for one that matches no unit. */
std::vector<std::optional<TimeSource>> timeSources(const OggFile& file,
                                                   const StreamAccount& account, size_t buffers) {
    std::map<uint32_t, uint64_t> granuleBefore;
    uint64_t last = 0;
    for (const size_t page : file.streams().at(account.ledger.serial).dataPages) {
        granuleBefore[static_cast<uint32_t>(page)] = last;
        last = file.pages()[page].granule;
    }
    std::vector<std::optional<TimeSource>> sources(buffers);
    for (size_t i = 0; i < account.units.size(); ++i) {
        const FileUnit& unit = account.units[i];
        const auto buffer = account.delivery.units[i].buffer;
        if (buffer && !unit.isComment) {
            const uint32_t page = file.pieces()[account.packets.pieces[unit.lastPiece]].page;
            sources[*buffer] = {page, granuleBefore[page]};
        }
    }
    return sources;
}

void addStandstill(Explanation& explanation, uint64_t index, const PlayedTrack& track,
                   const OddTimes& odd, bool onOnePage) {
    if (odd.count == 0) {
        return;
    }
    Finding finding =
            findingOf(onOnePage ? "page-shares-time" : "times-stand-still", index, track.serial);
    finding.usual = onOnePage;
    finding.timeUs = track.buffers[odd.first].timeUs;
    finding.text = fmt::format(
            "{} of track {} {} the time of the one before{}; the first is number {}.",
            counted(odd.count, "buffer"), index, odd.count == 1 ? "has" : "have",
            onOnePage ? ", because the packets of one page share its time" : " from another page",
            odd.first);
    explanation.add(std::move(finding));
}

void explainStandstill(Explanation& explanation, uint64_t index, const PlayedTrack& track) {
    const auto account = explanation.accounts().find(track.serial.value_or(0));
    if (!track.serial || account == explanation.accounts().end() ||
        account->second.ledger.track != index) {
        return;
    }
    const auto sources = timeSources(explanation.file(), account->second, track.buffers.size());
    OddTimes onOnePage;
    OddTimes onTwo;
    for (size_t i = 1; i < track.buffers.size(); ++i) {
        const auto& before = sources[i - 1];
        const auto& source = sources[i];
        if (before && source && track.buffers[i].timeUs == track.buffers[i - 1].timeUs) {
            // A frame may be returned with the packet after its own.
            const bool isShared =
                    before->page == source->page || before->granule != source->granule;
            (isShared ? onOnePage : onTwo).add(i);
        }
    }
    addStandstill(explanation, index, track, onOnePage, true);
    addStandstill(explanation, index, track, onTwo, false);
}

}  // namespace

void explainTimes(Explanation& explanation) {
    for (const auto& [index, track] : explanation.trace().tracks()) {
        explainNegative(explanation, index, track);
        explainStepsBack(explanation, index, track);
        explainStandstill(explanation, index, track);
    }
}

}  // namespace ogmprobe
