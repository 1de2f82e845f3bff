// SPDX-License-Identifier: Apache-2.0
#include "info/AudioFacts.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "codecs/Fields.h"
#include "text/NumberText.h"

namespace ogmprobe {
namespace {

/** About a minute of sound shows whether the bitrate varies. */
constexpr size_t kMaxPackets = 2000;

constexpr std::array<std::pair<std::string_view, AudioFraming>, 4> kFramings = {{
        {"0050", AudioFraming::kMpegAudio},
        {"0055", AudioFraming::kMpegAudio},
        {"2000", AudioFraming::kAc3},
        {"2001", AudioFraming::kDts},
}};

/** In bits 4 and 5 of the family of an MPEG audio frame. */
const char* mpegVersion(const AudioFrame& frame) {
    constexpr std::array kVersions = {"2.5", "", "2", "1"};
    return kVersions[frame.family >> 4 & 3U];
}

std::string codingOf(const AudioFrame& frame) {
    constexpr std::array kLayers = {"", "I", "II", "III"};
    switch (frame.kind) {
        case AudioFrame::Kind::kMpegAudio:
            return fmt::format("MPEG-{} layer {}", mpegVersion(frame), kLayers[frame.layer & 3U]);
        case AudioFrame::Kind::kAc3:
            return "AC-3";
        case AudioFrame::Kind::kEnhancedAc3:
            return "E-AC-3";
        case AudioFrame::Kind::kDtsCore:
        case AudioFrame::Kind::kDtsSubstream:
            return "DTS";
    }
    return "";
}

/** Frames of one bitrate differ by a slot if a second is not a whole number of slots. */
uint64_t slotSize(const AudioFrame& frame) {
    return frame.kind == AudioFrame::Kind::kAc3 ? 2 : frame.layer == 1 ? 4 : 1;
}

void addBitrate(const std::vector<FileUnit>& units, AudioFacts& facts) {
    const AudioFrame& first = units.front().frame;
    if (first.samples == 0) {
        return;
    }
    const auto [least, most] = std::minmax_element(
            units.begin(), units.end(),
            [](const auto& a, const auto& b) { return a.fingerprint.size < b.fingerprint.size; });
    uint64_t bytes = 0;
    uint64_t samples = 0;
    for (const FileUnit& unit : units) {
        bytes += unit.fingerprint.size;
        samples += unit.frame.addsToFrameBefore ? 0 : unit.frame.samples;
    }
    constexpr double kBits = 8;
    const double seconds = static_cast<double>(samples) / static_cast<double>(first.sampleRate);
    facts.bitrate = kBits * static_cast<double>(bytes) / seconds;
    facts.constantBitrate = most->fingerprint.size - least->fingerprint.size <= slotSize(first);
}

}  // namespace

std::optional<AudioFraming> framingOf(const std::string& formatTag) {
    const auto* framing =
            std::find_if(kFramings.begin(), kFramings.end(),
                         [&formatTag](const auto& row) { return row.first == formatTag; });
    return framing == kFramings.end() ? std::nullopt : std::optional(framing->second);
}

std::optional<AudioFacts> framedAudioFacts(const OggFile& file, StreamPackets stream,
                                           const std::string& formatTag, OggScanner& scanner) {
    const auto framing = framingOf(formatTag);
    if (!framing) {
        return std::nullopt;
    }
    stream.packets.resize(std::min(stream.packets.size(), kMaxPackets));
    const UnitKind kind{TrackKind::kAudio, framing};
    const std::vector<FileUnit> units = unitsOf(file, stream, kind, scanner);
    if (units.empty()) {
        return std::nullopt;
    }
    const AudioFrame& frame = units.front().frame;
    AudioFacts facts{codingOf(frame), frame.sampleRate, frame.channels, {}, {}};
    addBitrate(units, facts);
    return facts;
}

std::optional<AudioFacts> vorbisFacts(std::span<const uint8_t> header) {
    // Offsets of the fields in the packet.
    constexpr size_t kChannels = 11;
    constexpr size_t kRate = 12;
    constexpr size_t kNominalBitrate = 20;
    constexpr size_t kSize = 30;
    constexpr uint64_t kFirstNegative = uint64_t{1} << 31;
    if (header.size() < kSize || !holdsAt(header, 0, "\1vorbis")) {
        return std::nullopt;
    }
    AudioFacts facts{
            "Vorbis", static_cast<uint32_t>(numberAt(header, kRate, 4)), header[kChannels], {}, {}};
    const uint64_t nominal = numberAt(header, kNominalBitrate, 4);
    if (nominal != 0 && nominal < kFirstNegative) {
        facts.bitrate = static_cast<double>(nominal);
    }
    return facts;
}

std::string audioFactsText(const AudioFacts& facts) {
    std::string text = facts.coding;
    if (facts.sampleRate != 0) {
        text += fmt::format(", {} Hz", facts.sampleRate);
    }
    if (facts.channels != 0) {
        text += ", " + counted(facts.channels, "channel");
    }
    if (facts.bitrate) {
        text += fmt::format(", {} {}", rateText(*facts.bitrate),
                            !facts.constantBitrate   ? "nominal"
                            : *facts.constantBitrate ? "constant"
                                                     : "on average");
    }
    return text;
}

}  // namespace ogmprobe
