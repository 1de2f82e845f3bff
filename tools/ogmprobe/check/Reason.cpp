// SPDX-License-Identifier: Apache-2.0
#include "check/Reason.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace ogmprobe::check {
namespace {

constexpr Verdict kTold = Verdict::kPlays;
constexpr Verdict kFault = Verdict::kPlaysWithFaults;
constexpr Verdict kEnd = Verdict::kDoesNotPlay;
constexpr Verdict kUnknown = Verdict::kUnknown;

constexpr std::array kKinds = {
        // About the whole file.
        ReasonKind{"cannot-read", kUnknown, "cannot be read"},
        ReasonKind{"plugin-unusable", kUnknown, "plug-in that cannot be used"},
        ReasonKind{"check-ended", kUnknown, "could not be checked"},
        ReasonKind{"extractor-ended", kEnd, "ends the extractor, or never lets it end"},
        ReasonKind{"not-taken", kEnd, "not taken by the extractor"},
        ReasonKind{"no-tracks", kEnd, "without a track"},
        // About a stream without a track.
        ReasonKind{"codec-not-supported", kEnd, "stream refused by the extractor"},
        ReasonKind{"vorbis-stream", kEnd, "Vorbis stream ignored"},
        ReasonKind{"theora-stream", kEnd, "Theora stream ignored"},
        ReasonKind{"text-stream", kFault, "subtitles ignored"},
        ReasonKind{"unknown-stream", kFault, "unknown stream ignored"},
        ReasonKind{"header-not-reached", kEnd, "stream header not reached"},
        ReasonKind{"header-too-late", kEnd, "stream header too late"},
        ReasonKind{"header-behind-junk", kEnd, "stream header after junk"},
        ReasonKind{"header-cut-off", kEnd, "stream header cut off"},
        ReasonKind{"header-missing", kEnd, "stream header missing"},
        ReasonKind{"header-from-junk", kEnd, "stream header from junk"},
        // About a track's format.
        ReasonKind{"mime-missing", kEnd, "no MIME type"},
        ReasonKind{"size-missing", kEnd, "no picture size"},
        ReasonKind{"sample-rate-missing", kEnd, "no sample rate"},
        ReasonKind{"channels-missing", kEnd, "no channel count"},
        ReasonKind{"configuration-missing", kEnd, "no codec configuration"},
        ReasonKind{"codec-config-missing", kFault, "no codec configuration up front"},
        ReasonKind{"aac-without-configuration", kTold, "AAC without configuration"},
        ReasonKind{"eac3-as-ac3", kEnd, "E-AC-3 called AC-3"},
        ReasonKind{"frame-rate-wrong", kFault, "wrong frame rate"},
        ReasonKind{"bits-of-another-stream", kFault, "bits per sample of another stream"},
        ReasonKind{"picture-size-differs", kFault, "picture size differs from the stream's"},
        ReasonKind{"audio-format-differs", kFault, "rate or channels differ from the stream's"},
        ReasonKind{"serial-number-twice", kFault, "serial number announced twice"},
        // About decoders.
        ReasonKind{"no-decoder", kEnd, "no decoder"},
        ReasonKind{"size-outside", kEnd, "picture size outside of what decoders declare"},
        ReasonKind{"profile-outside", kEnd, "profile that no decoder declares"},
        ReasonKind{"sample-rate-outside", kEnd, "sample rate outside of what decoders declare"},
        ReasonKind{"channels-outside", kEnd, "more channels than decoders declare"},
        ReasonKind{"frame-rate-outside", kFault, "more pictures a second than decoders declare"},
        ReasonKind{"bitrate-outside", kFault, "bitrate outside of what decoders declare"},
        // About what is returned.
        ReasonKind{"track-without-packets", kEnd, "track without packets"},
        ReasonKind{"reading-failed", kFault, "reading fails"},
        ReasonKind{"frames-mostly-lost", kEnd, "most frames lost"},
        ReasonKind{"frames-lost", kFault, "frames lost"},
        ReasonKind{"few-frames-lost", kTold, "one or two frames lost"},
        ReasonKind{"end-withheld", kTold, "last packets withheld, as with every file"},
        ReasonKind{"ac3-frame-size", kFault, "AC-3 frames of a wrong size"},
        ReasonKind{"foreign-tail", kFault, "packets with foreign bytes"},
        ReasonKind{"audio-packet-header", kFault, "audio packets of a wrong size"},
        ReasonKind{"dts-frame-cut", kFault, "DTS frames cut in two"},
        ReasonKind{"packets-changed", kFault, "packets changed"},
        ReasonKind{"packets-repeated", kFault, "packets repeated"},
        ReasonKind{"false-frames", kFault, "bytes cut as frames that are none"},
        ReasonKind{"buffers-not-in-file", kFault, "returned bytes that are no packet"},
        ReasonKind{"checksum-wrong", kFault, "pages with a wrong checksum"},
        ReasonKind{"file-cut-off", kFault, "file cut off"},
        ReasonKind{"page-header-damaged", kFault, "damaged page header"},
        ReasonKind{"pages-missing", kFault, "pages missing"},
        ReasonKind{"junk-skipped", kFault, "junk between pages"},
        ReasonKind{"junk-searched-again", kFault, "junk searched again and again"},
        // About times.
        ReasonKind{"negative-times", kFault, "times below 0"},
        ReasonKind{"times-step-back", kFault, "times that step back"},
        ReasonKind{"times-stand-still", kFault, "times that stand still"},
        ReasonKind{"pictures-share-times", kFault, "pictures that share a time"},
        ReasonKind{"audio-drifts", kFault, "sound that drifts from its pages"},
        ReasonKind{"audio-against-video", kFault, "audio against video"},
        // About seeking.
        ReasonKind{"no-sync-frames", kFault, "no sync frames"},
        ReasonKind{"sync-frames-far-apart", kFault, "sync frames far apart"},
        ReasonKind{"duration-unknown", kFault, "duration unknown"},
        ReasonKind{"duration-unknown-short-file", kFault,
                   "duration unknown, as in all short files"},
        ReasonKind{"duration-from-granule-minus-1", kFault, "duration from a page without a time"},
        ReasonKind{"duration-from-stray-granule", kFault, "duration from a stray page"},
        ReasonKind{"duration-too-short", kFault, "duration too short"},
};

}  // namespace

std::string_view nameOf(Verdict verdict) {
    switch (verdict) {
        case Verdict::kPlays:
            return "plays";
        case Verdict::kPlaysWithFaults:
            return "plays with faults";
        case Verdict::kDoesNotPlay:
            return "does not play";
        case Verdict::kUnknown:
            break;
    }
    return "unknown";
}

const ReasonKind* reasonKind(std::string_view id) {
    const auto* found = std::find_if(kKinds.begin(), kKinds.end(),
                                     [id](const ReasonKind& kind) { return kind.id == id; });
    return found == kKinds.end() ? nullptr : found;
}

Reason reasonOf(std::string_view id, std::string text, std::optional<double> value,
                std::optional<double> limit) {
    const ReasonKind* kind = reasonKind(id);
    assert(kind != nullptr);
    return {std::string(id), kind->verdict, std::move(text), value, limit};
}

Verdict worstOf(const std::vector<Reason>& reasons) {
    Verdict worst = Verdict::kPlays;
    for (const Reason& reason : reasons) {
        worst = std::max(worst, reason.verdict);
    }
    return worst;
}

}  // namespace ogmprobe::check
