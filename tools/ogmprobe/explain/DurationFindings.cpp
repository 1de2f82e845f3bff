// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "explain/Finding.h"
#include "explain/LogTexts.h"
#include "text/TimeText.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

/** The part at the end of a file in which the plug-in searches for the duration. */
constexpr uint64_t kTailSize = 650520;
/** Tracks of a file may end at times that differ by this much. */
constexpr double kToleranceUs = kUsPerSecond;

uint64_t tailOffset(const OggFile& file) {
    return file.size() > kTailSize ? file.size() - kTailSize : 0;
}

/** Returns the plug-in's time for the page's granule position, even for -1. */
std::optional<int64_t> takenTimeUs(const Explanation& explanation, const OggPage& page) {
    const StreamHeader* header = explanation.file().headerOf(page.serial);
    if (header == nullptr || !explanation.trace().trackOf(page.serial)) {
        return std::nullopt;
    }
    return header->timeUs(page.granule);
}

const OggPage* decidingPage(const Explanation& explanation, int64_t durationUs) {
    const auto& pages = explanation.file().pages();
    const uint64_t tail = tailOffset(explanation.file());
    const auto found = std::find_if(pages.begin(), pages.end(), [&](const OggPage& page) {
        return page.offset >= tail && takenTimeUs(explanation, page) == durationUs;
    });
    return found == pages.end() ? nullptr : &*found;
}

/** Returns the stream's last page with a time. */
const OggPage* lastPage(const Explanation& explanation, const OggStream& stream) {
    const auto& pages = explanation.file().pages();
    const auto found =
            std::find_if(stream.dataPages.rbegin(), stream.dataPages.rend(), [&](size_t index) {
                return pages[index].granule != kNoGranule && takenTimeUs(explanation, pages[index]);
            });
    return found == stream.dataPages.rend() ? nullptr : &pages[*found];
}

/** Returns the same page for the track that ends last. */
const OggPage* lastPage(const Explanation& explanation) {
    const OggPage* last = nullptr;
    for (const auto& [serial, stream] : explanation.file().streams()) {
        const OggPage* page = lastPage(explanation, stream);
        if (page != nullptr && (last == nullptr || takenTimeUs(explanation, *page) >
                                                           takenTimeUs(explanation, *last))) {
            last = page;
        }
    }
    return last;
}

Finding unknownInAShortFile(const Explanation& explanation) {
    Finding finding;
    finding.id = "duration-unknown-short-file";
    finding.line = copied(explanation.trace().line(log_text::kDurationNoPage));
    finding.text = fmt::format(
            "The duration is unknown: the plug-in looks for it in the last {} bytes, and for a "
            "file of {} bytes it asks for bytes before the beginning, which is refused.",
            kTailSize, explanation.file().size());
    return finding;
}

Finding unknownInALongFile(const Explanation& explanation) {
    Finding finding;
    finding.id = "duration-unknown";
    finding.line = copied(explanation.trace().line(log_text::kDurationNoPage));
    finding.text = fmt::format(
            "The duration is unknown: the last {} bytes hold no page of a track with a time "
            "before the place where the search ends.",
            kTailSize);
    finding.offset = tailOffset(explanation.file());
    if (!finding.line) {
        finding.line = copied(explanation.trace().line(log_text::kDurationOtherStream));
    }
    return finding;
}

/** Returns a finding whose text begins with the two durations; `page` causes the wrong one. */
Finding wrongDuration(const Explanation& explanation, const char* id, int64_t durationUs,
                      int64_t endUs, const OggPage* page) {
    Finding finding;
    finding.id = id;
    finding.line = copied(explanation.trace().line(log_text::kDurationFound));
    finding.text =
            fmt::format("The plug-in reports a duration of {} s, but the last pages say {} s: ",
                        secondsText(durationUs), secondsText(endUs));
    if (page != nullptr) {
        finding.offset = page->offset;
        finding.track = explanation.trace().trackOf(page->serial);
    }
    return finding;
}

Finding fromGranuleMinusOne(const Explanation& explanation, int64_t durationUs, int64_t endUs,
                            const OggPage& page) {
    Finding finding =
            wrongDuration(explanation, "duration-from-granule-minus-1", durationUs, endUs, &page);
    finding.text += fmt::format(
            "the page at offset {} has granule position -1 (no packet ends on it), which the "
            "plug-in takes for a time.",
            page.offset);
    return finding;
}

Finding fromStrayGranule(const Explanation& explanation, int64_t durationUs, int64_t endUs,
                         const OggPage* page) {
    Finding finding =
            wrongDuration(explanation, "duration-from-stray-granule", durationUs, endUs, page);
    finding.text += fmt::format(
            "the granule position of the page at offset {} is larger than those that follow, and "
            "the plug-in uses the largest.",
            page != nullptr ? page->offset : 0);
    return finding;
}

Finding tooShort(const Explanation& explanation, int64_t durationUs, int64_t endUs,
                 const OggPage* deciding, const OggPage& last) {
    Finding finding = wrongDuration(explanation, "duration-too-short", durationUs, endUs, deciding);
    finding.offset = last.offset;
    finding.text += "the search through the end of the file stopped before the last page.";
    if (const auto* line = explanation.trace().line(log_text::kDurationNoPage)) {
        finding.line = *line;
    }
    return finding;
}

void explainKnown(Explanation& explanation, int64_t durationUs) {
    const OggPage* last = lastPage(explanation);
    const OggPage* deciding = decidingPage(explanation, durationUs);
    const int64_t endUs = last != nullptr ? *takenTimeUs(explanation, *last) : 0;
    if (last == nullptr ||
        std::abs(static_cast<double>(durationUs) - static_cast<double>(endUs)) <= kToleranceUs) {
        return;
    }
    if (deciding != nullptr && deciding->granule == kNoGranule) {
        explanation.add(fromGranuleMinusOne(explanation, durationUs, endUs, *deciding));
    } else if (durationUs > endUs) {
        explanation.add(fromStrayGranule(explanation, durationUs, endUs, deciding));
    } else {
        explanation.add(tooShort(explanation, durationUs, endUs, deciding, *last));
    }
}

}  // namespace

void explainDuration(Explanation& explanation) {
    const auto& opened = explanation.trace().opened();
    if (!opened) {
        return;
    }
    const int64_t durationUs = opened->durationUs.value_or(0);
    if (durationUs == 0) {
        explanation.add(explanation.file().size() < kTailSize ? unknownInAShortFile(explanation)
                                                              : unknownInALongFile(explanation));
    } else {
        explainKnown(explanation, durationUs);
    }
}

}  // namespace ogmprobe
