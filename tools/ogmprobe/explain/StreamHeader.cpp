// SPDX-License-Identifier: Apache-2.0
#include "explain/StreamHeader.h"

#include <cctype>
#include <string_view>

#include "codecs/Fields.h"
#include "text/TimeUnits.h"

namespace ogmprobe {
namespace {

constexpr std::string_view kVideo = "\1video";
constexpr std::string_view kAudio = "\1audio";
constexpr std::string_view kText = "\1text";

// Offsets of the fields in an OGM stream header.
constexpr size_t kCodecName = 1;
constexpr size_t kSubtype = 9;
constexpr size_t kSubtypeSize = 4;
constexpr size_t kTimeUnit = 17;
constexpr size_t kSamplesPerUnit = 25;
constexpr size_t kSampleBits = 41;
constexpr size_t kChannels = 45;

// Vorbis I specification, 4.2.2: audio_sample_rate.
constexpr size_t kVorbisRate = 12;

StreamKind kindOf(std::span<const uint8_t> packet) {
    if (holdsAt(packet, kCodecName, "vorbis")) {
        return StreamKind::kVorbis;
    }
    if (holdsAt(packet, 0, kVideo)) {
        return StreamKind::kVideo;
    }
    if (holdsAt(packet, 0, kAudio)) {
        return StreamKind::kAudio;
    }
    if (holdsAt(packet, 0, kText)) {
        return StreamKind::kText;
    }
    return holdsAt(packet, kCodecName, "theora") ? StreamKind::kTheora : StreamKind::kOther;
}

std::string codecOf(std::span<const uint8_t> packet) {
    std::string text;
    for (size_t i = kSubtype; i < kSubtype + kSubtypeSize && i < packet.size(); ++i) {
        text.push_back(std::isprint(packet[i]) != 0 ? static_cast<char>(packet[i]) : '.');
    }
    return text;
}

}  // namespace

StreamHeader::StreamHeader(std::span<const uint8_t> packet) : kind(kindOf(packet)) {
    if (kind == StreamKind::kVideo || kind == StreamKind::kAudio) {
        codec = codecOf(packet);
        bitsPerSample = static_cast<uint16_t>(numberAt(packet, kSampleBits, 2));
    }
    if (kind == StreamKind::kAudio) {
        channels = static_cast<uint16_t>(numberAt(packet, kChannels, 2));
    }
    if (kind != StreamKind::kVorbis && kind != StreamKind::kTheora && kind != StreamKind::kOther) {
        timeUnit = numberAt(packet, kTimeUnit, 8);
        samplesPerUnit = numberAt(packet, kSamplesPerUnit, 8);
    }
    if (kind == StreamKind::kVorbis) {
        vorbisRate = static_cast<uint32_t>(numberAt(packet, kVorbisRate, 4));
    }
}

// Wraps like the plug-in, so that times can be compared with the plug-in's.
std::optional<int64_t> StreamHeader::timeUs(uint64_t granule) const {
    if (kind == StreamKind::kVideo && timeUnit != 0) {
        return static_cast<int64_t>(granule * timeUnit / kUnitsPerUs);
    }
    if (kind == StreamKind::kAudio && timeUnit != 0) {
        const uint64_t rate = samplesPerUnit * kUnitsPerSecond / timeUnit;
        if (rate != 0) {
            return static_cast<int64_t>(granule * kUsPerSecond / rate);
        }
    }
    if (vorbisRate != 0) {
        return static_cast<int64_t>(granule * kUsPerSecond / vorbisRate);
    }
    return std::nullopt;
}

std::string StreamHeader::name() const {
    const bool hasCodec = kind == StreamKind::kVideo || kind == StreamKind::kAudio;
    return hasCodec ? kindName(kind) + (" " + codec) : kindName(kind);
}

const char* kindName(StreamKind kind) {
    switch (kind) {
        case StreamKind::kVideo:
            return "video";
        case StreamKind::kAudio:
            return "audio";
        case StreamKind::kText:
            return "text";
        case StreamKind::kVorbis:
            return "Vorbis";
        case StreamKind::kTheora:
            return "Theora";
        case StreamKind::kOther:
            break;
    }
    return "unknown";
}

}  // namespace ogmprobe
