// SPDX-License-Identifier: Apache-2.0
#include "check/Judgement.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "check/DecoderChoice.h"
#include "codecs/Esds.h"
#include "codecs/VideoFacts.h"
#include "text/NumberText.h"

namespace ogmprobe::check {
namespace {

/** A further finding with the name of an existing reason only adds to that reason's count. */
void addFinding(const Finding& finding, std::vector<Reason>& reasons) {
    if (reasonKind(finding.id) == nullptr) {
        return;
    }
    const auto known =
            std::find_if(reasons.begin(), reasons.end(),
                         [&finding](const Reason& reason) { return reason.id == finding.id; });
    if (known == reasons.end()) {
        reasons.push_back(reasonOf(finding.id, finding.text));
    } else {
        known->value = known->value.value_or(1) + 1;
    }
}

/** A reason for several findings has the text of the first one. */
void nameNumbers(std::vector<Reason>& reasons) {
    for (Reason& reason : reasons) {
        if (reason.value > 1 && !reason.limit && reason.text.ends_with('.')) {
            reason.text += fmt::format(" And {:g} more of these.", *reason.value - 1);
        }
    }
}

using ReadProfile = std::optional<VideoFacts> (*)(std::span<const uint8_t>);

constexpr std::array<std::pair<std::string_view, ReadProfile>, 3> kProfileReaders = {{
        {"video/mp4v-es", mpeg4Facts},
        {"video/avc", h264Facts},
        {"video/mpeg2", mpeg2Facts},
}};

/** Returns the profile in the format's configuration or in the stream's first packets. */
std::string profileOf(const TrackDescription& track, const PlayedPackets& packets) {
    const auto* reader =
            std::find_if(kProfileReaders.begin(), kProfileReaders.end(),
                         [&track](const auto& row) { return row.first == track.mime; });
    if (reader == kProfileReaders.end()) {
        return "";
    }
    std::vector<uint8_t> bytes;
    const auto esds = track.esds ? parseEsDescriptor(*track.esds) : std::nullopt;
    if (esds && esds->decoderConfig && esds->decoderConfig->decoderSpecificInfo) {
        bytes = *esds->decoderConfig->decoderSpecificInfo;
    }
    bytes.insert(bytes.end(), packets.head().begin(), packets.head().end());
    const auto facts = reader->second(bytes);
    return facts ? facts->profile : "";
}

Needs needsOf(const TrackDescription& track, const PlayedPackets& packets) {
    return {track.mime,       track.width,        track.height,      track.frameRate,
            track.sampleRate, track.channelCount, packets.bitrate(), profileOf(track, packets)};
}

const StreamAccount* accountOf(const Explanation& explanation, uint64_t track) {
    for (const auto& [serial, account] : explanation.accounts()) {
        if (account.ledger.track == track) {
            return &account;
        }
    }
    return nullptr;
}

CheckedTrack judgeTrack(const Evidence& evidence, uint64_t index, const PlayedTrack& played) {
    const TrackDescription& description = played.description;
    const auto found = evidence.packets.find(index);
    const PlayedPackets packets = found == evidence.packets.end() ? PlayedPackets() : found->second;
    CheckedTrack track;
    track.index = index;
    track.serial = played.serial;
    track.kind = kindName(description.kind);
    track.codec = description.codec.name;
    track.mime = description.mime;
    track.format = formatText(description);
    track.returned = packets.count();
    judgeFormat(description, track.reasons);
    if (!description.mime.empty()) {
        DecoderChoice choice = chooseDecoder(needsOf(description, packets), evidence.decoders);
        track.decoder = std::move(choice.name);
        std::move(choice.reasons.begin(), choice.reasons.end(), std::back_inserter(track.reasons));
    }
    if (const StreamAccount* account = accountOf(evidence.explanation, index)) {
        track.inFile = account->ledger.inFile;
        judgeLosses(account->ledger, description, track.reasons);
    }
    judgeTimes(description, packets, track.reasons);
    judgeSeeking(description, packets, track.reasons);
    return track;
}

/** Kind and codec from the stream's header, such as "video XVID". */
CheckedTrack withoutTrack(const Evidence& evidence, const OggStream& stream) {
    CheckedTrack track;
    track.serial = stream.serial;
    const OggFile& file = evidence.explanation.file();
    const StreamHeader* header = file.headerOf(stream.serial);
    track.kind = header != nullptr ? kindName(header->kind) : "unknown";
    track.codec = header != nullptr ? header->codec : "";
    uint64_t packets = 0;
    for (const size_t page : stream.dataPages) {
        packets += file.pages()[page].packets;
    }
    track.inFile = packets;
    return track;
}

void addStreamsWithoutTrack(const Evidence& evidence, CheckedFile& file) {
    for (const auto& [serial, stream] : evidence.explanation.file().streams()) {
        if (!evidence.explanation.whyNoTrack(serial).empty()) {
            file.tracks.push_back(withoutTrack(evidence, stream));
        }
    }
}

/** The reasons of the track that the finding is about, or of the whole file. */
std::vector<Reason>& concerned(const Finding& finding, CheckedFile& file) {
    const auto track = std::find_if(
            file.tracks.begin(), file.tracks.end(), [&finding](const CheckedTrack& candidate) {
                return finding.track ? candidate.index == finding.track
                                     : finding.serial && candidate.serial == finding.serial &&
                                               !candidate.index;
            });
    return track == file.tracks.end() ? file.reasons : track->reasons;
}

/** Unsupported codecs are counted separately for each kind and codec. */
void addSubjects(CheckedFile& file) {
    for (CheckedTrack& track : file.tracks) {
        for (Reason& reason : track.reasons) {
            if (reason.id == "codec-not-supported") {
                reason.subject = track.kind + " " + track.codec;
            }
        }
    }
}

/** If the file has pages, findings give the reason. */
void judgeDuration(CheckedFile& file) {
    const auto isFound =
            std::any_of(file.reasons.begin(), file.reasons.end(),
                        [](const Reason& reason) { return reason.id.starts_with("duration-"); });
    if (file.durationUs.value_or(0) <= 0 && !isFound) {
        file.reasons.push_back(reasonOf(
                "duration-unknown", "The duration is unknown: the format of the file says none.",
                static_cast<double>(file.durationUs.value_or(0)), 1));
    }
}

}  // namespace

void judge(const Evidence& evidence, CheckedFile& file) {
    const Explanation& explanation = evidence.explanation;
    const PluginTrace& trace = explanation.trace();
    if (trace.opened()) {
        file.durationUs = trace.opened()->durationUs;
        if (trace.opened()->trackCount == 0) {
            file.reasons.push_back(reasonOf("no-tracks", "The file has no track.", 0));
        }
        addStreamsWithoutTrack(evidence, file);
    }
    std::vector<CheckedTrack> tracks;
    for (const auto& [index, played] : trace.tracks()) {
        tracks.push_back(judgeTrack(evidence, index, played));
    }
    file.tracks.insert(file.tracks.begin(), tracks.begin(), tracks.end());
    for (const Finding& finding : explanation.findings()) {
        if (!finding.usual) {
            addFinding(finding, concerned(finding, file));
        }
    }
    if (trace.opened()) {
        judgeDuration(file);
    }
    judgeSync(explanation, file);
    nameNumbers(file.reasons);
    for (CheckedTrack& track : file.tracks) {
        nameNumbers(track.reasons);
    }
    addSubjects(file);
}

}  // namespace ogmprobe::check
