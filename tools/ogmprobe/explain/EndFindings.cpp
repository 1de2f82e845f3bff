// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "explain/Finding.h"
#include "explain/LogTexts.h"
#include "text/NumberText.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

constexpr std::array<std::string_view, 4> kReadingEnds = {
        log_text::kNextGranuleNoHeader,
        log_text::kNoPayload,
        log_text::kNextGranuleNoPage,
        log_text::kNextGranuleFailed,
};

/** Streams of a file may end at times that differ by this much. */
constexpr int64_t kUsualLossUs = kUsPerSecond;

std::optional<LoggedLine> lineOfTheEnd(const PluginTrace& trace) {
    for (const std::string_view beginning : kReadingEnds) {
        if (const LoggedLine* line = trace.line(beginning)) {
            return *line;
        }
    }
    return std::nullopt;
}

/** Returns the pages whose bytes of a track were never cut into packets. */
std::vector<size_t> unreadPages(const Explanation& explanation, const OggStream& stream) {
    std::vector<size_t> unread;
    for (const size_t index : stream.dataPages) {
        const OggPage& page = explanation.file().pages()[index];
        if (page.bodySize > 0 && explanation.trace().timesCut(index) == 0) {
            unread.push_back(index);
        }
    }
    return unread;
}

Finding findingAt(const Explanation& explanation, uint64_t track, size_t page) {
    const OggPage& first = explanation.file().pages()[page];
    Finding finding;
    finding.track = track;
    finding.serial = first.serial;
    finding.offset = first.offset;
    finding.timeUs = explanation.file().timeUs(first);
    finding.line = lineOfTheEnd(explanation.trace());
    return finding;
}

void explainLastPage(Explanation& explanation, uint64_t track, size_t index) {
    const OggPage& page = explanation.file().pages()[index];
    Finding finding = findingAt(explanation, track, index);
    finding.id = "last-packets-withheld";
    finding.usual = true;
    finding.text = fmt::format(
            "The last packets of track {} are not returned: a stream's last page (here with {}) is "
            "never read, and the packet before it stays open.",
            track, counted(page.packets, "packet"));
    explanation.add(std::move(finding));
}

/** Returns the first page at which reading stops because its stream has no later one. */
std::optional<size_t> stoppingPage(const Explanation& explanation) {
    std::optional<size_t> first;
    for (const auto& [serial, stream] : explanation.file().streams()) {
        if (explanation.trace().trackOf(serial) && !stream.dataPages.empty()) {
            first = std::min(first.value_or(stream.dataPages.back()), stream.dataPages.back());
        }
    }
    return first;
}

/** Returns why reading did not reach the page. */
std::string whyReadingEnded(const Explanation& explanation, size_t page) {
    const auto& pages = explanation.file().pages();
    const LoggedLine* line = explanation.trace().line(kReadingEnds.front());
    if (line != nullptr && line->offset) {
        return fmt::format("reading ended at the damaged page header at offset {}.", *line->offset);
    }
    const auto stop = stoppingPage(explanation);
    if (stop && *stop < page) {
        return fmt::format(
                "all reading stops at the first page that is the last one of its stream, here at "
                "offset {} (track {}).",
                pages[*stop].offset, explanation.trace().trackOf(pages[*stop].serial).value_or(0));
    }
    return "reading ended before them.";
}

void explainUnread(Explanation& explanation, uint64_t track, const std::vector<size_t>& unread) {
    const auto& pages = explanation.file().pages();
    uint64_t packets = 0;
    for (const size_t index : unread) {
        packets += pages[index].packets;
    }
    Finding finding = findingAt(explanation, track, unread.front());
    finding.id = "pages-not-read";
    finding.untilUs = explanation.file().timeUs(pages[unread.back()]);
    finding.text = fmt::format("The last {} of track {}, with {}, are not read: {}",
                               counted(unread.size(), "page"), track, counted(packets, "packet"),
                               whyReadingEnded(explanation, unread.front()));
    finding.usual = finding.timeUs && finding.untilUs &&
                    *finding.untilUs - *finding.timeUs < kUsualLossUs &&
                    explanation.trace().line(kReadingEnds.front()) == nullptr;
    explanation.add(std::move(finding));
}

/** The stream is announced again, and the later track gets the packets. */
void explainSupersededTrack(Explanation& explanation, uint64_t track, uint32_t serial,
                            uint64_t heir) {
    Finding finding;
    finding.id = "serial-number-twice";
    finding.track = track;
    finding.serial = serial;
    finding.text = fmt::format(
            "Track {} returns no packet: its serial number {} is announced again for track {}, "
            "which "
            "gets the packets of both.",
            track, serial, heir);
    const auto& pages = explanation.file().pages();
    const auto again = std::find_if(pages.rbegin(), pages.rend(), [&](const OggPage& page) {
        return page.beginsStream() && page.serial == serial;
    });
    if (again != pages.rend()) {
        finding.offset = again->offset;
    }
    explanation.add(std::move(finding));
}

/** For a stream whose pages were all read, except perhaps the last. */
std::string whatThePagesHold(const Explanation& explanation, const OggStream& stream) {
    const std::string pages = counted(stream.dataPages.size(), "page");
    const auto account = explanation.accounts().find(stream.serial);
    if (account == explanation.accounts().end() || account->second.ledger.inFile == 0) {
        return fmt::format("nothing on its {} is a packet or frame.", pages);
    }
    std::string text;
    for (const Loss& loss : account->second.ledger.losses) {
        text += fmt::format("{}{} {}", text.empty() ? "" : ", ",
                            text.empty() ? counted(loss.count, account->second.ledger.noun())
                                         : std::to_string(loss.count),
                            textOf(loss.reason).brief);
    }
    return fmt::format("its {} {} {}.", pages, stream.dataPages.size() == 1 ? "holds" : "hold",
                       text);
}

void explainEmptyTrack(Explanation& explanation, uint64_t track, const OggStream* stream) {
    const auto heir = stream != nullptr ? explanation.trace().trackOf(stream->serial) : track;
    if (heir && *heir != track) {
        explainSupersededTrack(explanation, track, stream->serial, *heir);
        return;
    }
    Finding finding;
    finding.id = "track-without-packets";
    finding.track = track;
    finding.line = lineOfTheEnd(explanation.trace());
    finding.text = fmt::format("Track {} returns no packet: ", track);
    if (stream == nullptr || stream->dataPages.empty()) {
        finding.text += "no page holds any of its data.";
    } else {
        finding.serial = stream->serial;
        finding.offset = explanation.file().pages()[stream->dataPages.front()].offset;
        const auto unread = unreadPages(explanation, *stream);
        finding.text += unread.size() > 1 ? whyReadingEnded(explanation, unread.front())
                                          : whatThePagesHold(explanation, *stream);
    }
    explanation.add(std::move(finding));
}

void explainFailure(Explanation& explanation, uint64_t index, const std::string& failure) {
    Finding finding;
    finding.id = "reading-failed";
    finding.track = index;
    finding.text = fmt::format("Reading track {} ended with {}.", index, failure);
    finding.line = copied(explanation.trace().line(log_text::kNoPayload));
    explanation.add(std::move(finding));
}

void explainComment(Explanation& explanation, uint64_t index) {
    Finding finding;
    finding.id = "comment-header-comes-out";
    finding.usual = true;
    finding.text = fmt::format(
            "The first buffer of track {} is its comment header, which is returned like a frame.",
            index);
    finding.track = index;
    explanation.add(std::move(finding));
}

void explainTrack(Explanation& explanation, uint64_t index, const PlayedTrack& track) {
    const auto& streams = explanation.file().streams();
    const auto found = track.serial ? streams.find(*track.serial) : streams.end();
    const OggStream* stream = found == streams.end() ? nullptr : &found->second;
    if (track.failure) {
        explainFailure(explanation, index, *track.failure);
    }
    if (track.buffers.empty()) {
        explainEmptyTrack(explanation, index, stream);
        return;
    }
    if (track.beginsWithComment) {
        explainComment(explanation, index);
    }
    if (stream == nullptr) {
        return;
    }
    const auto unread = unreadPages(explanation, *stream);
    if (unread.size() == 1 && unread.front() == stream->dataPages.back()) {
        explainLastPage(explanation, index, unread.front());
    } else if (!unread.empty()) {
        explainUnread(explanation, index, unread);
    }
}

void explainDeath(Explanation& explanation, const Failure& failure) {
    const PluginTrace& trace = explanation.trace();
    Finding finding;
    finding.id = "extractor-ended";
    const bool isSentence = failure.message.ends_with('.');
    finding.text = fmt::format("Playing did not end: {}{}", failure.message, isSentence ? "" : ".");
    if (const std::string cause = causeOfEnd(explanation, failure.message); !cause.empty()) {
        finding.text += " " + cause;
    }
    if (const auto offset = trace.lastReadOffset(); offset && *offset >= 0) {
        finding.text += fmt::format(" The last read was at offset {}.", *offset);
        finding.offset = static_cast<uint64_t>(*offset);
        finding.timeUs = explanation.file().timeBefore(*finding.offset);
    }
    if (!trace.lines().empty()) {
        finding.line = trace.lines().back();
    }
    explanation.add(std::move(finding));
}

/** Unless it is a track's own failure, which another finding reports. */
void explainBreakOff(Explanation& explanation, const Failure& failure) {
    const auto& tracks = explanation.trace().tracks();
    const bool isTold = std::any_of(tracks.begin(), tracks.end(), [](const auto& track) {
        return track.second.failure.has_value();
    });
    if (isTold) {
        return;
    }
    Finding finding;
    finding.id = "not-played";
    finding.text = fmt::format("The file was not played to its end: {}.", failure.message);
    explanation.add(std::move(finding));
}

}  // namespace

void explainEnd(Explanation& explanation) {
    const auto& failure = explanation.trace().failure();
    if (failure && failure->code == ExitCode::kDied) {
        explainDeath(explanation, *failure);
        return;
    }
    if (failure && failure->code != ExitCode::kNotTaken) {
        explainBreakOff(explanation, *failure);
    }
    for (const auto& [index, track] : explanation.trace().tracks()) {
        if (track.ended) {
            explainTrack(explanation, index, track);
        }
    }
}

}  // namespace ogmprobe
