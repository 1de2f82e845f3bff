// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include "explain/Finding.h"
#include "explain/LogTexts.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

struct AudioLoss {
    std::string_view line;
    const char* id;
    const char* text;
};

constexpr AudioLoss kAudioLosses[] = {
        {log_text::kNoSync, "audio-without-sync",
         "no beginning of a frame (no sync word), so all is dropped"},
        {log_text::kNoFrameConfirmed, "audio-unconfirmed",
         "no frames that follow each other, so the bytes so far are dropped"},
        {log_text::kNoMatchingFrame, "audio-unlike-first-frame",
         "no frame like the first one of the track, so the bytes so far are dropped"},
        {log_text::kFrameWithoutSize, "audio-frame-without-size",
         "a frame header without a valid size, so the bytes so far are dropped"},
        {log_text::kFrameWithoutRate, "audio-frame-without-size",
         "a frame header without a valid sampling rate, so the frame is dropped"},
        {log_text::kFrameOfUnknownVersion, "audio-frame-refused",
         "a frame of an unknown version (bsid), which is dropped"},
};

void explainAudioLoss(Explanation& explanation, const AudioLoss& loss) {
    const OggFile& file = explanation.file();
    std::map<uint32_t, Finding> findings;
    std::map<uint32_t, uint64_t> counts;
    for (const LoggedLine& line : explanation.trace().lines()) {
        const auto page = line.offset ? file.pageAt(*line.offset) : std::nullopt;
        if (!page || line.function != PluginFunction::kRead || !line.text.starts_with(loss.line) ||
            file.pages()[*page].beginsWithComment) {
            continue;
        }
        const OggPage& place = file.pages()[*page];
        const auto [entry, isNew] =
                findings.emplace(place.serial, findingAt(explanation, loss.id, place));
        if (isNew) {
            entry->second.line = line;
        }
        entry->second.untilUs = file.timeUs(place);
        counts[place.serial] += line.count;
    }
    for (auto& [serial, finding] : findings) {
        finding.text = fmt::format("In {} of {}, from the page at offset {} on: {}.",
                                   counted(counts[serial], "packet"),
                                   trackText(explanation, serial), *finding.offset, loss.text);
        explanation.add(std::move(finding));
    }
}

}  // namespace

void explainAudio(Explanation& explanation) {
    for (const AudioLoss& loss : kAudioLosses) {
        explainAudioLoss(explanation, loss);
    }
}

}  // namespace ogmprobe
