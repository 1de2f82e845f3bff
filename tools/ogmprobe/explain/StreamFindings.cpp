// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "explain/Finding.h"
#include "explain/LogTexts.h"
#include "explain/StreamTypes.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

/** The plug-in reads this many bytes to decide whether it accepts a file. */
constexpr uint64_t kSniffedBytes = 1024;

constexpr std::array<std::string_view, 4> kHeaderSearchEnds = {
        log_text::kNoPageData,
        log_text::kHeaderSearchNoHeader,
        log_text::kHeaderSearchNoPage,
        log_text::kReadFailed,
};

const OggPage* firstPlayableHeader(const OggFile& file) {
    const auto& pages = file.pages();
    const auto found = std::find_if(pages.begin(), pages.end(), [](const OggPage& page) {
        return page.announced && (page.announced->kind == StreamKind::kVideo ||
                                  page.announced->kind == StreamKind::kAudio);
    });
    return found == pages.end() ? nullptr : &*found;
}

std::string whereHeadersAre(const OggFile& file) {
    const OggPage* header = firstPlayableHeader(file);
    if (header == nullptr) {
        return "; the rest of the file announces none either";
    }
    if (header->end() > kSniffedBytes) {
        return fmt::format("; the first one that does is at offset {}, too far on", header->offset);
    }
    return fmt::format(
            "; the one at offset {} is missed, because the search steps from page to page by only "
            "the first lacing value and ignores junk between pages",
            header->offset);
}

std::string refusalText(const OggFile& file, const PluginTrace& trace) {
    if (trace.line(log_text::kSniffReadFailed) != nullptr) {
        return "The file is too short: fewer than 4 bytes can be read.";
    }
    if (trace.line(log_text::kSniffNoPage) != nullptr) {
        const auto& pages = file.pages();
        return fmt::format("No Ogg page begins within the first {} bytes{}.", kSniffedBytes,
                           pages.empty() ? ", nor anywhere else"
                                         : fmt::format("; the first page is at offset {}",
                                                       pages.front().offset));
    }
    if (trace.line(log_text::kSniffOnlyVorbis) != nullptr) {
        return fmt::format(
                "Within the first {} bytes only Vorbis headers are found, whose streams are left "
                "to "
                "other extractors, and no video or audio with an OGM header{}.",
                kSniffedBytes, whereHeadersAre(file));
    }
    return fmt::format("No page within the first {} bytes announces video or audio{}.",
                       kSniffedBytes, whereHeadersAre(file));
}

/** Why a stream has no track: for programs, for the list of pages, for users. */
struct Reason {
    std::string id;
    std::string brief;
    std::string text;
    std::optional<LoggedLine> line;
};

/** Returns why the search for stream headers ended early. */
Reason notReached(const PluginTrace& trace) {
    const auto ended =
            std::find_if(kHeaderSearchEnds.begin(), kHeaderSearchEnds.end(),
                         [&](auto beginning) { return trace.line(beginning) != nullptr; });
    const LoggedLine* line = ended == kHeaderSearchEnds.end() ? nullptr : trace.line(*ended);
    return {"header-not-reached", "header not reached",
            line != nullptr && line->offset
                    ? fmt::format("the search for streams ended at a place that cannot be read, at "
                                  "offset {}",
                                  *line->offset)
                    : "the search for streams ended before its header page",
            copied(line)};
}

/** Returns the reason for a stream whose header page was read. */
Reason notAccepted(const StreamHeader& header, const OggPage& page, const PluginTrace& trace) {
    const auto line = [&](std::string_view beginning) {
        return copied(trace.line(beginning, page.offset, page.end()));
    };
    switch (header.kind) {
        case StreamKind::kVideo:
            return {"codec-not-supported", "codec not supported",
                    fmt::format("its codec \"{}\" is not in the plug-in's list (case matters)",
                                header.codec),
                    line(log_text::kUnknownVideo)};
        case StreamKind::kAudio:
            return {"codec-not-supported", "codec not supported",
                    fmt::format("its audio format tag \"{}\" is not in the plug-in's list",
                                header.codec),
                    line(log_text::kUnknownAudio)};
        case StreamKind::kText:
            return {"text-stream", "text", "text and subtitles are ignored",
                    line(log_text::kUnknownHeader)};
        case StreamKind::kVorbis:
            return {"vorbis-stream", "Vorbis", "Vorbis is ignored", line(log_text::kVorbisHeader)};
        case StreamKind::kTheora:
            return {"theora-stream", "Theora", "Theora is ignored", line(log_text::kUnknownHeader)};
        case StreamKind::kOther:
            break;
    }
    return {"unknown-stream", "unknown header", "its first packet is no header of an OGM stream",
            line(log_text::kUnknownHeader)};
}

const JunkRange* junkInFront(const OggFile& file, const OggPage& page) {
    const auto& junk = file.junk();
    const auto found = std::find_if(junk.begin(), junk.end(), [&](const JunkRange& range) {
        return range.end() == page.offset;
    });
    return found == junk.end() ? nullptr : &*found;
}

Reason whyNoTrack(const Explanation& explanation, size_t index) {
    const OggPage& page = explanation.file().pages()[index];
    const PluginTrace& trace = explanation.trace();
    if (!trace.wasHeaderPage(index)) {
        if (trace.headerPages() < kHeaderPages) {
            return notReached(trace);
        }
        return {"header-too-late",
                "header too late",
                fmt::format("its header is page {} of the file, and streams are looked for on the "
                            "first {} only",
                            index + 1, kHeaderPages),
                {}};
    }
    if (const JunkRange* junk = junkInFront(explanation.file(), page)) {
        return {"header-behind-junk", "header after junk",
                fmt::format("{} of junk come before its header page, and the header is "
                            "looked for where the junk begins",
                            counted(junk->size, "byte")),
                copied(trace.line(log_text::kUnknownHeader, junk->offset, page.end()))};
    }
    if (page.missingBytes > 0) {
        return {"header-cut-off", "header cut off", "its header page is cut off",
                copied(trace.line(log_text::kNoPageData, page.offset, page.end()))};
    }
    return notAccepted(page.announced.value_or(StreamHeader({})), page, trace);
}

/** If junk contains another stream's header, the plug-in reads it as that of the page. */
void explainForeignHeader(Explanation& explanation, const OggPage& page, const JunkRange& junk,
                          const LoggedLine& line) {
    Finding finding;
    finding.id = "header-from-junk";
    finding.text = fmt::format(
            "The track of the stream with serial number {} has the format of another one: {} of "
            "junk come before its header page, the header is looked for where the junk "
            "begins, and one lies there.",
            page.serial, counted(junk.size, "byte"));
    finding.track = explanation.trace().trackOf(page.serial);
    finding.serial = page.serial;
    finding.offset = page.offset;
    finding.line = line;
    explanation.add(std::move(finding));
}

void explainAnnouncement(Explanation& explanation, size_t index) {
    const OggPage& page = explanation.file().pages()[index];
    if (explanation.trace().line(log_text::kStreamAccepted, page.offset, page.end()) != nullptr) {
        return;
    }
    if (const JunkRange* junk = junkInFront(explanation.file(), page)) {
        if (const auto* line = explanation.trace().line(log_text::kStreamAccepted, junk->offset,
                                                        junk->end())) {
            explainForeignHeader(explanation, page, *junk, *line);
            return;
        }
    }
    const Reason reason = whyNoTrack(explanation, index);
    const StreamHeader header = page.announced.value_or(StreamHeader({}));
    Finding finding;
    finding.id = reason.id;
    finding.text = fmt::format("No track for the {} stream with serial number {}: {}.",
                               header.name(), page.serial, reason.text);
    finding.serial = page.serial;
    finding.offset = page.offset;
    finding.line = reason.line;
    explanation.addNoTrack(reason.brief, std::move(finding));
}

std::optional<uint64_t> firstDamage(const OggFile& file) {
    const auto& pages = file.pages();
    const auto page = std::find_if(pages.begin(), pages.end(), [](const OggPage& candidate) {
        return !candidate.isReadable();
    });
    std::optional<uint64_t> offset;
    if (page != pages.end()) {
        offset = page->offset;
    }
    if (!file.junk().empty()) {
        const uint64_t junk = file.junk().front().offset;
        offset = std::min(offset.value_or(junk), junk);
    }
    return offset;
}

void explainUnannounced(Explanation& explanation, const OggStream& stream) {
    const OggFile& file = explanation.file();
    const OggPage& first = file.pages()[stream.dataPages.front()];
    Finding finding;
    finding.id = "header-missing";
    finding.text = fmt::format(
            "No track for the stream with serial number {}: no page announces it ({} from offset "
            "{} on).",
            stream.serial, counted(stream.dataPages.size(), "page"), first.offset);
    if (const auto damage = firstDamage(file); damage && *damage < first.offset) {
        finding.text +=
                fmt::format(" Its header page may be what is damaged at offset {}.", *damage);
    }
    finding.serial = stream.serial;
    finding.offset = first.offset;
    explanation.addNoTrack("no header page", std::move(finding));
}

/** One log line begins a search for a stream's codec configuration, another reports its failure. */
void explainCodecConfigs(Explanation& explanation) {
    std::optional<uint32_t> serial;
    for (const LoggedLine& line : explanation.trace().lines()) {
        if (line.text.starts_with(log_text::kVideoConfigSearch) ||
            line.text.starts_with(log_text::kAudioConfigSearch)) {
            serial = static_cast<uint32_t>(
                    numberAfter(line.text.substr(line.text.rfind('=')), "=").value_or(0));
        }
        if (!line.text.starts_with(log_text::kConfigFailed) || !serial) {
            continue;
        }
        Finding finding;
        finding.id = "codec-config-missing";
        finding.text =
                numberAfter(line.text, log_text::kConfigFailed) >= stream_type::kFirstVideo
                        ? "No MPEG-4 configuration (video object layer) was found: the track has "
                          "no ESDS, and a decoder may not start."
                        : "No MPEG audio frame was confirmed: MIME type and layer are those that "
                          "the stream header suggests.";
        finding.serial = serial;
        finding.track = explanation.trace().trackOf(*serial);
        finding.line = line;
        explanation.add(std::move(finding));
    }
}

}  // namespace

void explainRefusal(Explanation& explanation) {
    const auto& failure = explanation.trace().failure();
    if (!failure || failure->code != ExitCode::kNotTaken) {
        return;
    }
    Finding finding;
    finding.id = "not-taken";
    finding.text = "The plug-in does not take the file. " +
                   refusalText(explanation.file(), explanation.trace());
    for (const std::string_view beginning :
         {log_text::kSniffNoPage, log_text::kSniffReadFailed, log_text::kSniffNoHeader}) {
        if (!finding.line) {
            finding.line = copied(explanation.trace().line(beginning));
        }
    }
    explanation.add(std::move(finding));
}

void explainStreams(Explanation& explanation) {
    const auto& pages = explanation.file().pages();
    for (size_t i = 0; i < pages.size(); ++i) {
        if (pages[i].beginsStream() && pages[i].isReadable()) {
            explainAnnouncement(explanation, i);
        }
    }
    for (const auto& [serial, stream] : explanation.file().streams()) {
        if (!stream.announcement) {
            explainUnannounced(explanation, stream);
        }
    }
    explainCodecConfigs(explanation);
}

}  // namespace ogmprobe
