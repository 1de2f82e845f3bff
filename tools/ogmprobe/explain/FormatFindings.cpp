// SPDX-License-Identifier: Apache-2.0
#include <fmt/core.h>

#include <algorithm>
#include <cmath>

#include "codecs/Esds.h"
#include "codecs/Mpeg4Video.h"
#include "codecs/StartCode.h"
#include "explain/Finding.h"
#include "explain/LogTexts.h"
#include "text/NumberText.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

constexpr uint8_t kMpeg4VisualType = 0x20;

/** A track with its stream header and its account, if it has them. */
struct Subject {
    uint64_t index;
    const PlayedTrack& track;
    const StreamHeader* header;
    const StreamAccount* account;

    const TrackDescription& format() const { return track.description; }
    Finding finding(const char* id, std::string text) const {
        Finding made = findingOf(id, index, track.serial);
        made.text = std::move(text);
        return made;
    }
};

void explainFrameRate(Explanation& explanation, const Subject& subject) {
    const auto shown = subject.format().frameRate;
    if (subject.format().kind != TrackKind::kVideo || !shown || subject.header == nullptr ||
        subject.header->timeUnit == 0) {
        return;
    }
    const double rate = static_cast<double>(kUnitsPerSecond) *
                        static_cast<double>(subject.header->samplesPerUnit) /
                        static_cast<double>(subject.header->timeUnit);
    constexpr double kVisible = 0.0005;
    if (*shown < 0 || std::abs(rate - *shown) >= 1) {
        explanation.add(subject.finding(
                "frame-rate-wrong",
                fmt::format("Track {} has {:.5g} frames a second, but its format says {}: the "
                            "plug-in computes with 32 bits of each field. Times are not affected.",
                            subject.index, rate, *shown)));
    } else if (rate - *shown >= kVisible) {
        explanation.add(subject.finding(
                "frame-rate-rounded",
                fmt::format("Track {} has {:.5g} frames a second, but its format says {}: the "
                            "fraction is cut off.",
                            subject.index, rate, *shown)));
    }
}

void explainBits(Explanation& explanation, const Subject& subject) {
    const uint16_t taken = bitsPerSampleTaken(explanation.file(), explanation.trace());
    if (subject.format().mime != "audio/raw" || subject.header == nullptr ||
        subject.header->bitsPerSample == taken) {
        return;
    }
    explanation.add(subject.finding(
            "bits-of-another-stream",
            fmt::format("Track {} has {} bits a sample, but is returned as if it had {}: those of "
                        "the stream header accepted last apply to all tracks.",
                        subject.index, subject.header->bitsPerSample, taken)));
}

void explainEnhancedAc3(Explanation& explanation, const Subject& subject) {
    if (subject.account == nullptr || subject.format().mime != "audio/ac3") {
        return;
    }
    const auto& units = subject.account->units;
    const auto enhanced = std::count_if(units.begin(), units.end(), [](const FileUnit& unit) {
        return unit.frame.kind == AudioFrame::Kind::kEnhancedAc3;
    });
    if (enhanced > 0) {
        explanation.add(subject.finding(
                "eac3-as-ac3",
                fmt::format("{} of {} frames of track {} are E-AC-3, but its MIME type is "
                            "audio/ac3, and a decoder of AC-3 cannot play them.",
                            enhanced, units.size(), subject.index)));
    }
}

void explainAac(Explanation& explanation, const Subject& subject) {
    if (subject.format().mime == "audio/mp4a-latm" && !subject.format().esds) {
        explanation.add(subject.finding(
                "aac-without-configuration",
                fmt::format("Track {} is AAC without a codec configuration: its format has no "
                            "ESDS, and a decoder may not start.",
                            subject.index)));
    }
}

void explainEsds(Explanation& explanation, const Subject& subject) {
    const auto& bytes = subject.format().esds;
    const auto esds = bytes ? parseEsDescriptor(*bytes) : std::nullopt;
    if (subject.format().kind != TrackKind::kVideo || !esds || !esds->decoderConfig) {
        return;
    }
    const DecoderConfig& config = *esds->decoderConfig;
    if (config.objectTypeIndication != kMpeg4VisualType) {
        Finding finding = subject.finding(
                "esds-object-type",
                fmt::format("The ESDS of track {} calls the video {} (object type {:#04x}).",
                            subject.index, objectTypeName(config.objectTypeIndication),
                            config.objectTypeIndication));
        finding.usual = true;
        explanation.add(std::move(finding));
    }
    const auto& info = config.decoderSpecificInfo;
    if (info && !info->empty() &&
        !std::equal(kStartCodePrefix.begin(), kStartCodePrefix.end(), info->begin(),
                    info->begin() + static_cast<ptrdiff_t>(
                                            std::min(info->size(), kStartCodePrefix.size())))) {
        explanation.add(subject.finding(
                "esds-leading-bytes",
                fmt::format("The codec configuration of track {} begins with a byte of the packet "
                            "header before its first start code.",
                            subject.index)));
    }
}

void explainPictureSize(Explanation& explanation, const Subject& subject) {
    const auto& bytes = subject.format().esds;
    const auto esds = bytes ? parseEsDescriptor(*bytes) : std::nullopt;
    if (!esds || !esds->decoderConfig || !esds->decoderConfig->decoderSpecificInfo) {
        return;
    }
    const auto size = pictureSize(*esds->decoderConfig->decoderSpecificInfo);
    if (!size ||
        (subject.format().width == size->width && subject.format().height == size->height)) {
        return;
    }
    explanation.add(subject.finding(
            "picture-size-differs",
            fmt::format("The pictures of track {} have {}x{} pixels, but its format says {}x{}, as "
                        "the stream header does.",
                        subject.index, size->width, size->height,
                        subject.format().width.value_or(0), subject.format().height.value_or(0))));
}

void explainAudioFormat(Explanation& explanation, const Subject& subject) {
    if (subject.account == nullptr || subject.account->units.empty() ||
        !subject.account->kind.framing) {
        return;
    }
    const AudioFrame& frame = subject.account->units.front().frame;
    const auto differs = [](uint32_t inFrame, const std::optional<int32_t>& inFormat) {
        return inFrame != 0 && inFormat && static_cast<int64_t>(inFrame) != *inFormat;
    };
    // If there is a low-frequency channel, DTS has more channels than its core header says.
    const bool knowsChannels = subject.account->kind.framing != AudioFraming::kDts;
    if (!differs(frame.sampleRate, subject.format().sampleRate) &&
        !(knowsChannels && differs(frame.channels, subject.format().channelCount))) {
        return;
    }
    explanation.add(subject.finding(
            "audio-format-differs",
            fmt::format("The frames of track {} have {} Hz and {}, but its format says {} Hz and "
                        "{}, as the stream header does.",
                        subject.index, frame.sampleRate, counted(frame.channels, "channel"),
                        subject.format().sampleRate.value_or(0),
                        counted(static_cast<uint64_t>(subject.format().channelCount.value_or(0)),
                                "channel"))));
}

void explainDts(Explanation& explanation, const Subject& subject) {
    if (subject.account == nullptr || subject.account->kind.framing != AudioFraming::kDts ||
        subject.track.buffers.empty()) {
        return;
    }
    const auto& units = subject.account->units;
    const auto substreams = std::count_if(units.begin(), units.end(), [](const FileUnit& unit) {
        return unit.frame.kind == AudioFrame::Kind::kDtsSubstream;
    });
    Finding finding = subject.finding(
            "dts-frames-late",
            fmt::format("A DTS frame of track {} is returned when the next one has begun, with the "
                        "time of the packet that brought it{}.",
                        subject.index, substreams > 0 ? "; a substream is a separate buffer" : ""));
    finding.usual = true;
    explanation.add(std::move(finding));
}

void explainPcm(Explanation& explanation, const Subject& subject) {
    if (subject.account == nullptr || subject.track.buffers.empty() ||
        subject.account->kind.pcmChange != PcmChange::kWidenedFrom8) {
        return;
    }
    Finding finding = subject.finding(
            "pcm8-time-alone",
            fmt::format("The 8-bit samples of track {} are returned with 16 bits, in buffers that "
                        "have only a time: other buffers also have a target time and a sync flag.",
                        subject.index));
    finding.usual = true;
    finding.line = copied(explanation.trace().line(log_text::kPcmWidened));
    explanation.add(std::move(finding));
}

void explainContainer(Explanation& explanation) {
    const auto& opened = explanation.trace().opened();
    const auto& tracks = explanation.trace().tracks();
    const bool hasVideo = std::any_of(tracks.begin(), tracks.end(), [](const auto& track) {
        return track.second.description.kind == TrackKind::kVideo;
    });
    if (!opened || tracks.empty() || hasVideo || opened->mime != "video/ogm") {
        return;
    }
    Finding finding;
    finding.id = "container-type-without-video";
    finding.usual = true;
    finding.text = "The file's type is \"video/ogm\" although no track is video.";
    explanation.add(std::move(finding));
}

}  // namespace

void explainFormats(Explanation& explanation) {
    explainContainer(explanation);
    for (const auto& [index, track] : explanation.trace().tracks()) {
        if (!track.serial) {
            continue;
        }
        const auto account = explanation.accounts().find(*track.serial);
        const bool hasAccount =
                account != explanation.accounts().end() && account->second.ledger.track == index;
        const Subject subject{index, track, explanation.file().headerOf(*track.serial),
                              hasAccount ? &account->second : nullptr};
        for (const auto explain :
             {explainFrameRate, explainBits, explainEnhancedAc3, explainAac, explainEsds,
              explainPictureSize, explainAudioFormat, explainDts, explainPcm}) {
            explain(explanation, subject);
        }
    }
}

}  // namespace ogmprobe
