// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <string_view>

#include "explain/Finding.h"
#include "explain/LogTexts.h"

namespace ogmprobe {
namespace {

struct EndCause {
    /** A part of the assertion's text. */
    std::string_view assertion;
    const char* text;
};

constexpr std::array<EndCause, 9> kEndCauses = {{
        {"Ogmavc_utils:542 ", "A video object layer header is of fine granularity scalable video."},
        {"Ogmavc_utils:573 ", "A video object layer header is not of rectangular pictures."},
        {"Ogmavc_utils:589 ",
         "A video object layer header has a fixed rate and a resolution of 0."},
        {"Ogmavc_utils:768 ",
         "There are more than 16361 bytes between the video object layer header "
         "and the first picture."},
        {"CHECK(br.getBits(1))", "A marker bit of a video object layer header is 0."},
        {"CHECK(getBitsGraceful",
         "A video object layer header, or the beginning of an AC-3 frame, "
         "is cut off."},
        {"OgmExtractor:717 ",
         "An MPEG audio frame has a negative time: its granule position is "
         "too large."},
        {"OgmExtractor:783 ",
         "A DTS frame has a negative time: its granule position is too "
         "large."},
        {"OgmExtractor:499 ", "The frames have more bytes than the packets brought."},
}};

/** `frmsizecod` of frames for which the plug-in's table has no row. */
constexpr uint32_t kEndlessFrameCode = 37;

bool hasEndlessAc3Frame(const Explanation& explanation) {
    return std::any_of(explanation.accounts().begin(), explanation.accounts().end(),
                       [](const auto& entry) {
                           const auto& units = entry.second.units;
                           return std::any_of(units.begin(), units.end(), [](const FileUnit& unit) {
                               return unit.frame.kind == AudioFrame::Kind::kAc3 &&
                                      unit.frame.frameSizeCode == kEndlessFrameCode;
                           });
                       });
}

/** The plug-in uses offset 0 for an unknown place. */
bool beginsWithData(const OggFile& file) {
    return !file.pages().empty() && file.pages().front().offset == 0 &&
           !file.pages().front().beginsStream();
}

bool hasDataOfATrack(const Explanation& explanation) {
    const auto& streams = explanation.file().streams();
    return std::any_of(streams.begin(), streams.end(), [&](const auto& entry) {
        return explanation.trace().trackOf(entry.first) && !entry.second.dataPages.empty();
    });
}

}  // namespace

std::string causeOfEnd(const Explanation& explanation, const std::string& message) {
    for (const EndCause& cause : kEndCauses) {
        if (message.find(cause.assertion) != std::string::npos) {
            return cause.text;
        }
    }
    if (hasEndlessAc3Frame(explanation)) {
        return "An AC-3 frame has a size code (37) for which the plug-in's table says 0 bytes: it "
               "is returned again and again.";
    }
    // The cause of a death without an assertion is unknown.
    if (message.find(" died ") != std::string::npos) {
        return "";
    }
    const auto& failed = explanation.trace();
    if (!failed.opened() && failed.line(log_text::kVideoConfigSearch) != nullptr) {
        return "The search for a start code of MPEG-4 video never ends if there are more than 257 "
               "bytes and none of the first 256 begins one.";
    }
    if (failed.opened() && !hasDataOfATrack(explanation)) {
        return "No page holds data of a track, so the header pages are read as such again and "
               "again.";
    }
    if (failed.opened() && beginsWithData(explanation.file())) {
        return "The file begins with a data page, and offset 0 means an unknown place, so that "
               "page is read again and again.";
    }
    return "";
}

}  // namespace ogmprobe
