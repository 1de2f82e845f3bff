// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>

#include "explain/Finding.h"
#include "explain/LogTexts.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

/** From this number on, damage is reported in a single finding. */
constexpr size_t kTooManyToList = 10;

/** A larger jump of page numbers does not mean lost pages. */
constexpr uint32_t kLargestLoss = 10000;

/** Returns how many pages are lost between two pages of a stream, by their numbers. */
uint32_t lostBetween(const OggPage& before, const OggPage& after) {
    const uint32_t lost = after.sequence - before.sequence - 1;
    return lost <= kLargestLoss ? lost : 0;
}

/** Calls the function with each pair of successive pages of each stream. */
template <typename Function>
void forNeighbours(const OggFile& file, Function&& function) {
    for (const auto& [serial, stream] : file.streams()) {
        for (size_t i = 1; i < stream.dataPages.size(); ++i) {
            function(file.pages()[stream.dataPages[i - 1]], file.pages()[stream.dataPages[i]]);
        }
    }
}

/** "; 2 pages of track 0 are lost there", for each stream with pages before and after. */
std::string lossesIn(const Explanation& explanation, const JunkRange& junk) {
    std::string text;
    forNeighbours(explanation.file(), [&](const OggPage& before, const OggPage& after) {
        if (before.offset >= junk.offset || after.offset < junk.end()) {
            return;
        }
        if (const uint32_t lost = lostBetween(before, after)) {
            text += fmt::format("; {} of {} {} lost there", counted(lost, "page"),
                                trackText(explanation, before.serial), lost == 1 ? "is" : "are");
        }
    });
    return text;
}

void explainJunk(Explanation& explanation, const JunkRange& junk) {
    const OggFile& file = explanation.file();
    const bool isLast = junk.end() == file.size();
    Finding finding;
    finding.id = "junk-skipped";
    finding.text = fmt::format("{} from offset {} on are no Ogg page and are skipped{}{}.",
                               counted(junk.size, "byte"), junk.offset,
                               isLast ? "; no page follows" : "", lossesIn(explanation, junk));
    finding.offset = junk.offset;
    finding.bytes = junk.size;
    finding.timeUs = file.timeBefore(junk.offset);
    finding.untilUs = isLast ? std::nullopt : file.timeAfter(junk.offset);
    finding.line = copied(explanation.trace().line(fmt::format(
            "{}{} bytes of junk from {} ", log_text::kJunkSkipped, junk.size, junk.offset)));
    explanation.add(std::move(finding));
}

void explainAllJunk(Explanation& explanation) {
    const auto& junk = explanation.file().junk();
    if (junk.size() < kTooManyToList) {
        for (const JunkRange& range : junk) {
            explainJunk(explanation, range);
        }
        return;
    }
    Finding finding;
    finding.id = "junk-skipped";
    uint64_t bytes = 0;
    for (const JunkRange& range : junk) {
        bytes += range.size;
    }
    finding.text = fmt::format(
            "{} at {} places are no Ogg pages and are skipped, the first at offset {}, the last at "
            "offset {} (--pages lists all).",
            counted(bytes, "byte"), junk.size(), junk.front().offset, junk.back().offset);
    finding.offset = junk.front().offset;
    finding.bytes = bytes;
    finding.timeUs = explanation.file().timeBefore(junk.front().offset);
    finding.untilUs = explanation.file().timeAfter(junk.back().offset);
    finding.line = copied(explanation.trace().line(log_text::kJunkSkipped));
    explanation.add(std::move(finding));
}

/** Returns how playing continues at a page header that cannot be read. */
std::string consequence(const PluginTrace& trace, const OggPage& page, const LoggedLine* line) {
    if (trace.line(log_text::kNextGranuleNoHeader, page.offset, page.end()) != nullptr) {
        return "Playing ends before it: the search for the next page of a stream cannot pass it.";
    }
    if (line != nullptr && line->function == PluginFunction::kRead) {
        return "Playing continues some 10000 bytes before it and cuts packets there by the lacing "
               "of the page before: garbage is returned, or packets are repeated.";
    }
    return "Playing did not reach it.";
}

void explainDamagedHeader(Explanation& explanation, const OggPage& page) {
    const PluginTrace& trace = explanation.trace();
    const std::string_view beginning =
            page.version != 0 ? log_text::kWrongVersion : log_text::kWrongFlags;
    const LoggedLine* line = nullptr;
    for (const LoggedLine* candidate : trace.linesAt(page.offset, page.end())) {
        if (candidate->text.starts_with(beginning)) {
            line = candidate;
        }
    }
    Finding finding;
    finding.id = "page-header-damaged";
    finding.text = fmt::format(
            "The header of the page at offset {} has {}, so it cannot be read{}. {}", page.offset,
            page.version != 0 ? fmt::format("version {}", page.version)
                              : fmt::format("undefined flags ({:#04x})", page.flags),
            line == nullptr ? "" : "; a search for streams or for the duration ends here",
            consequence(trace, page, line));
    finding.offset = page.offset;
    finding.timeUs = explanation.file().timeBefore(page.offset);
    finding.untilUs = explanation.file().timeAfter(page.end());
    finding.line = copied(line);
    explanation.add(std::move(finding));
}

void explainCut(Explanation& explanation, const OggPage& page) {
    Finding finding = findingAt(explanation, "file-cut-off", page);
    const uint64_t size = page.end() - page.offset;
    finding.text = fmt::format(
            "The file ends within the page at offset {}: at least {} of its {} bytes are missing.",
            page.offset, page.missingBytes, size);
    finding.bytes = page.missingBytes;
    if (!finding.timeUs) {
        finding.timeUs = explanation.file().timeBefore(page.offset);
    }
    for (const std::string_view beginning : {log_text::kNoPayload, log_text::kReadFailed}) {
        if (!finding.line) {
            finding.line = copied(explanation.trace().line(beginning, page.offset, page.end()));
        }
    }
    explanation.add(std::move(finding));
}

void explainChecksum(Explanation& explanation, const OggPage& page) {
    Finding finding = findingAt(explanation, "checksum-wrong", page);
    finding.text = fmt::format(
            "The page of {} at offset {} has a wrong checksum: the plug-in does not check it{}.",
            trackText(explanation, page.serial), page.offset,
            finding.track && !page.beginsStream() ? ", so damaged data is returned unchanged" : "");
    explanation.add(std::move(finding));
}

void explainChecksums(Explanation& explanation) {
    std::vector<const OggPage*> wrong;
    for (const OggPage& page : explanation.file().pages()) {
        if (page.isReadable() && !page.checksumRight) {
            wrong.push_back(&page);
        }
    }
    if (wrong.size() < kTooManyToList) {
        for (const OggPage* page : wrong) {
            explainChecksum(explanation, *page);
        }
        return;
    }
    Finding finding = findingAt(explanation, "checksum-wrong", *wrong.front());
    finding.text = fmt::format(
            "{} of {} pages have a wrong checksum, the first at offset {}: the plug-in does not "
            "check it, so damaged data is returned unchanged.",
            wrong.size(), explanation.file().pages().size(), wrong.front()->offset);
    explanation.add(std::move(finding));
}

/** Returns whether damage that another finding reports explains the missing pages. */
bool damageBetween(const OggFile& file, const OggPage& before, const OggPage& after) {
    const auto isBetween = [&](const auto& range) {
        return range.offset >= before.end() && range.end() <= after.offset;
    };
    return std::any_of(file.junk().begin(), file.junk().end(), isBetween) ||
           std::any_of(file.pages().begin(), file.pages().end(),
                       [&](const OggPage& page) { return !page.isReadable() && isBetween(page); });
}

void explainMissingPages(Explanation& explanation) {
    forNeighbours(explanation.file(), [&](const OggPage& before, const OggPage& after) {
        const uint32_t lost = lostBetween(before, after);
        if (lost == 0 || damageBetween(explanation.file(), before, after)) {
            return;
        }
        Finding finding = findingAt(explanation, "pages-missing", after);
        finding.text = fmt::format("Before offset {}, {} of {} {} missing.", after.offset,
                                   counted(lost, "page"), trackText(explanation, after.serial),
                                   lost == 1 ? "is" : "are");
        finding.timeUs = explanation.file().timeUs(before);
        finding.untilUs = explanation.file().timeUs(after);
        explanation.add(std::move(finding));
    });
}

/** Dropped packets of a page. */
void explainGranules(Explanation& explanation) {
    const OggPage* cause = nullptr;
    const OggPage* causeBefore = nullptr;
    forNeighbours(explanation.file(), [&](const OggPage& before, const OggPage& page) {
        if (page.granule < before.granule) {
            cause = &page;
            causeBefore = &before;
        }
        const LoggedLine* line =
                explanation.trace().line(log_text::kGranuleFell, page.bodyOffset(), page.end());
        if (line == nullptr) {
            return;
        }
        Finding finding = findingAt(explanation, "packets-dropped", page);
        finding.text = fmt::format(
                "{} of {} on the page at offset {} {} dropped", counted(line->count, "packet"),
                trackText(explanation, page.serial), page.offset, line->count == 1 ? "is" : "are");
        if (cause != nullptr && cause->serial == page.serial) {
            finding.text += fmt::format(
                    ": the granule position falls from {} to {} at offset {}{}, and packets are "
                    "used only once it rises again",
                    static_cast<int64_t>(causeBefore->granule),
                    static_cast<int64_t>(cause->granule), cause->offset,
                    causeBefore->granule == kNoGranule
                            ? " (-1, for a page on which no packet ends, is taken as the largest)"
                            : "");
        }
        finding.text += ".";
        finding.line = *line;
        explanation.add(std::move(finding));
    });
}

}  // namespace

void explainDamage(Explanation& explanation) {
    explainAllJunk(explanation);
    for (const OggPage& page : explanation.file().pages()) {
        if (!page.isReadable()) {
            explainDamagedHeader(explanation, page);
        }
        if (page.missingBytes > 0) {
            explainCut(explanation, page);
        }
    }
    explainChecksums(explanation);
    explainMissingPages(explanation);
    explainGranules(explanation);
}

}  // namespace ogmprobe
