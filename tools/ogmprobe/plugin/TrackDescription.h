// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "codecs/Codec.h"
#include "plugin/FormatEntries.h"

namespace ogmprobe {

class Format;

enum class TrackKind { kVideo, kAudio, kOther };

/**
 * The contents of a track's format. Values are as the plug-in returns them; nothing if they are
 * missing.
 */
struct TrackDescription {
    size_t index = 0;
    /** Empty if absent. */
    std::string mime;
    TrackKind kind = TrackKind::kOther;
    Codec codec;
    std::optional<int64_t> durationUs;
    std::optional<int32_t> width;
    std::optional<int32_t> height;
    std::optional<int32_t> frameRate;
    std::optional<int32_t> sampleRate;
    std::optional<int32_t> channelCount;
    std::optional<int32_t> mpegAudioLayer;
    std::optional<std::vector<uint8_t>> esds;
    /** All entries of the format, including these. */
    std::vector<FormatEntry> entries;
};

TrackDescription describeTrack(size_t index, const Format& format);
/** Sets kind and codec, which follow from the rest. */
void classify(TrackDescription& track);

/** "video", "audio" or "other". */
std::string kindName(TrackKind kind);
/** "176x144, 25 fps" or "44100 Hz, 2 channels"; "-" for other tracks. */
std::string formatText(const TrackDescription& track);
/** Returns the decoded ESDS, line by line; a single line if it is damaged. */
std::vector<std::string> esdsLines(const std::vector<uint8_t>& esds);

/** Returns sentences that say why a player could not use the format; empty if it could. */
std::vector<std::string> complaints(const TrackDescription& track);

}  // namespace ogmprobe
